// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/item_bytes.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/file_descriptor.h"

namespace lumenscribe::decoder {

namespace {

// What a custom source reads from: the item and the position of this source alone.
struct SourceState {
  ItemBytes item;
  std::int64_t position = 0;
};

gint64 onRead(VipsSourceCustom* /*source*/, void* buffer, gint64 length, gpointer data) {
  auto* state = static_cast<SourceState*>(data);
  if (length <= 0 || state->position >= state->item.size) return 0;
  const auto wanted =
      static_cast<std::size_t>(std::min(length, state->item.size - state->position));
  for (;;) {
    const ssize_t count = ::pread(state->item.fd, buffer, wanted, state->position);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return -1;
    state->position += count;
    return count;
  }
}

gint64 onSeek(VipsSourceCustom* /*source*/, gint64 offset, int whence, gpointer data) {
  auto* state = static_cast<SourceState*>(data);
  std::int64_t base = 0;
  switch (whence) {
    case SEEK_SET: base = 0; break;
    case SEEK_CUR: base = state->position; break;
    case SEEK_END: base = state->item.size; break;
    default: return -1;
  }
  // Offsets come from file data: refuse any that would overflow or point before the start.
  if ((offset > 0 && base > INT64_MAX - offset) || base + offset < 0) return -1;
  state->position = base + offset;
  return state->position;
}

}  // namespace

std::optional<std::vector<std::byte>> ItemBytes::read(std::int64_t offset,
                                                      std::size_t count) const {
  if (offset < 0) return std::nullopt;
  const auto available = static_cast<std::size_t>(std::max<std::int64_t>(0, size - offset));
  std::vector<std::byte> bytes(std::min(count, available));
  const auto done = platform::readFullyAt(fd, bytes, offset);
  if (!done) return std::nullopt;
  bytes.resize(*done);
  return bytes;
}

SourcePtr vipsSourceFor(const ItemBytes& item) {
  SourcePtr source(VIPS_SOURCE(vips_source_custom_new()));
  if (!source) return nullptr;
  // The state lives as long as the source: freed by the source's own destruction.
  auto* state = new SourceState{item, 0};
  g_object_set_data_full(G_OBJECT(source.get()), "lumenscribe-item", state,
                         [](gpointer data) { delete static_cast<SourceState*>(data); });
  g_signal_connect(source.get(), "read", G_CALLBACK(onRead), state);
  g_signal_connect(source.get(), "seek", G_CALLBACK(onSeek), state);
  return source;
}

std::optional<MappedItem> MappedItem::map(const ItemBytes& item) {
  if (item.size <= 0 || static_cast<std::uint64_t>(item.size) > SIZE_MAX) return std::nullopt;
  const auto length = static_cast<std::size_t>(item.size);
  void* start = ::mmap(nullptr, length, PROT_READ, MAP_PRIVATE, item.fd, 0);
  if (start == MAP_FAILED) return std::nullopt;
  return MappedItem(std::span(static_cast<const char*>(start), length));
}

MappedItem& MappedItem::operator=(MappedItem&& other) noexcept {
  if (this != &other) {
    if (!bytes_.empty()) ::munmap(const_cast<char*>(bytes_.data()), bytes_.size());
    bytes_ = std::exchange(other.bytes_, {});
  }
  return *this;
}

MappedItem::~MappedItem() {
  if (!bytes_.empty()) ::munmap(const_cast<char*>(bytes_.data()), bytes_.size());
}

}  // namespace lumenscribe::decoder
