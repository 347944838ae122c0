// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/decoder_channel.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace lumenscribe::platform::decoder {

namespace {

// Payloads are read in pieces of this size, so a header that claims a large length costs
// memory only as its bytes really arrive.
constexpr std::size_t kReadPiece = 1024 * 1024;

enum class Wait { ready, timedOut, failed };

Wait waitReadable(int fd, const std::optional<Deadline>& deadline) {
  for (;;) {
    int timeout = -1;
    if (deadline) {
      const auto left = std::chrono::ceil<std::chrono::milliseconds>(
          *deadline - std::chrono::steady_clock::now());
      if (left.count() <= 0) return Wait::timedOut;
      timeout = static_cast<int>(std::min<std::int64_t>(left.count(), 60'000));
    }
    pollfd watched{fd, POLLIN, 0};
    const int ready = ::poll(&watched, 1, timeout);
    if (ready > 0) return Wait::ready;  // data, or a hang-up that the read will see
    if (ready < 0 && errno != EINTR) return Wait::failed;
  }
}

// Keeps the first descriptor that arrives when one is wanted; closes every other one.
void collectDescriptors(msghdr& message, bool accept, UniqueFd& kept) {
  for (cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr;
       header = CMSG_NXTHDR(&message, header)) {
    if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS) continue;
    const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
    for (std::size_t i = 0; i < count; ++i) {
      int fd = -1;
      std::memcpy(&fd, CMSG_DATA(header) + i * sizeof(int), sizeof fd);
      UniqueFd received(fd);
      if (accept && !kept) kept = std::move(received);
    }
  }
}

// Reads exactly `buffer.size()` bytes, collecting a descriptor on the way.
std::optional<ReceiveFailure> readExactly(int fd, std::span<std::byte> buffer,
                                          const std::optional<Deadline>& deadline, bool accept,
                                          UniqueFd& descriptor) {
  std::size_t done = 0;
  while (done < buffer.size()) {
    switch (waitReadable(fd, deadline)) {
      case Wait::timedOut: return ReceiveFailure::timedOut;
      case Wait::failed: return ReceiveFailure::failed;
      case Wait::ready: break;
    }
    iovec part{buffer.data() + done, buffer.size() - done};
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int) * 4)];
    msghdr message{};
    message.msg_iov = &part;
    message.msg_iovlen = 1;
    message.msg_control = control;
    message.msg_controllen = sizeof control;
    const ssize_t count = ::recvmsg(fd, &message, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
    if (count < 0) {
      if (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK) continue;
      return errno == ECONNRESET ? ReceiveFailure::closed : ReceiveFailure::failed;
    }
    collectDescriptors(message, accept, descriptor);
    if (count == 0) return ReceiveFailure::closed;
    done += static_cast<std::size_t>(count);
  }
  return std::nullopt;
}

}  // namespace

bool Channel::send(std::uint16_t kind, std::span<const std::byte> payload, int descriptor) {
  FrameHeader header;
  header.kind = kind;
  header.length = static_cast<std::uint32_t>(payload.size());
  const auto head = encodeHeader(header);

  iovec parts[2] = {{const_cast<std::byte*>(head.data()), head.size()},
                    {const_cast<std::byte*>(payload.data()), payload.size()}};
  std::size_t partIndex = 0;
  bool descriptorSent = descriptor < 0;
  while (partIndex < 2) {
    if (parts[partIndex].iov_len == 0) {
      ++partIndex;
      continue;
    }
    alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
    msghdr message{};
    message.msg_iov = &parts[partIndex];
    message.msg_iovlen = 2 - partIndex;
    if (!descriptorSent) {
      message.msg_control = control;
      message.msg_controllen = sizeof control;
      cmsghdr* attached = CMSG_FIRSTHDR(&message);
      attached->cmsg_level = SOL_SOCKET;
      attached->cmsg_type = SCM_RIGHTS;
      attached->cmsg_len = CMSG_LEN(sizeof(int));
      std::memcpy(CMSG_DATA(attached), &descriptor, sizeof descriptor);
    }
    const ssize_t sent = ::sendmsg(socket_.get(), &message, MSG_NOSIGNAL);
    if (sent < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    descriptorSent = true;
    auto left = static_cast<std::size_t>(sent);
    while (partIndex < 2 && left >= parts[partIndex].iov_len) {
      left -= parts[partIndex].iov_len;
      ++partIndex;
    }
    if (partIndex < 2) {
      parts[partIndex].iov_base = static_cast<std::byte*>(parts[partIndex].iov_base) + left;
      parts[partIndex].iov_len -= left;
    }
  }
  return true;
}

std::variant<Frame, ReceiveFailure> Channel::receive(std::uint32_t maxPayload,
                                                     std::optional<Deadline> deadline,
                                                     bool acceptDescriptor) {
  Frame frame;
  std::array<std::byte, kHeaderSize> head{};
  if (auto failure =
          readExactly(socket_.get(), head, deadline, acceptDescriptor, frame.descriptor)) {
    return *failure;
  }
  const auto header = decodeHeader(head, maxPayload);
  if (!header) return ReceiveFailure::malformed;
  frame.header = *header;
  while (frame.payload.size() < header->length) {
    const std::size_t from = frame.payload.size();
    frame.payload.resize(std::min<std::size_t>(header->length, from + kReadPiece));
    if (auto failure = readExactly(socket_.get(), std::span(frame.payload).subspan(from), deadline,
                                   acceptDescriptor, frame.descriptor)) {
      return *failure;
    }
  }
  return frame;
}

bool Channel::peerClosed() const {
  if (!socket_) return true;
  pollfd watched{socket_.get(), POLLIN | POLLRDHUP, 0};
  int ready;
  do {
    ready = ::poll(&watched, 1, 0);
  } while (ready < 0 && errno == EINTR);
  // Nothing is due between requests: unasked-for bytes mean the stream is out of step.
  return ready != 0;
}

}  // namespace lumenscribe::platform::decoder
