// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumenscribe/result.h"
#include "platform/decoder_client.h"
#include "platform/opened_item.h"

namespace lumenscribe::test {

/// The fixtures under tests/data.
inline const std::filesystem::path kData = LUMENSCRIBE_TEST_DATA_DIR;

inline std::string fileBytes(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

using Rows = std::vector<std::pair<std::string, std::string>>;

/// The rows of the sections titled `title` as label/value pairs; empty when there is none.
inline Rows rowsOf(const std::vector<InsightSection>& sections, std::string_view title) {
  Rows rows;
  for (const auto& section : sections) {
    if (section.title != title) continue;
    for (const auto& row : section.rows) rows.emplace_back(row.label, row.value);
  }
  return rows;
}

/// The value of the row labelled `label` in section `title`; "<missing>" when there is none.
inline std::string rowValue(const std::vector<InsightSection>& sections, std::string_view title,
                            std::string_view label) {
  for (const auto& [rowLabel, value] : rowsOf(sections, title)) {
    if (rowLabel == label) return value;
  }
  return "<missing>";
}

/// Rows or raw entries as "Label: value" lines, the way the text report writes them.
using Lines = std::vector<std::string>;

inline Lines lines(const std::vector<InsightRow>& rows) {
  Lines out;
  for (const auto& row : rows) out.push_back(row.label + ": " + row.value);
  return out;
}

inline Lines lines(const std::vector<InsightSection>& sections, std::string_view title) {
  Lines out;
  for (const auto& [label, value] : rowsOf(sections, title)) out.push_back(label + ": " + value);
  return out;
}

inline Lines lines(const RawMetadata& raw) {
  Lines out;
  for (const auto& [key, value] : raw) out.push_back(key + ": " + value);
  return out;
}

/// Lines as one text, each ended by a line feed: one comparison, and a line-by-line diff
/// when it fails.
inline std::string block(const Lines& lines) {
  std::string text;
  for (const auto& line : lines) text += line + "\n";
  return text;
}
inline std::string block(const std::vector<InsightSection>& sections, std::string_view title) {
  return block(lines(sections, title));
}
inline std::string block(const RawMetadata& raw) { return block(lines(raw)); }
inline std::string block(const std::vector<InsightRow>& rows) { return block(lines(rows)); }

inline std::vector<std::string> titlesOf(const std::vector<InsightSection>& sections) {
  std::vector<std::string> titles;
  for (const auto& section : sections) titles.push_back(section.title);
  return titles;
}

inline std::vector<std::string> titlesOf(const std::vector<PrivacyFinding>& findings) {
  std::vector<std::string> titles;
  for (const auto& finding : findings) titles.push_back(finding.title);
  return titles;
}

/// A fresh directory under the system's temp folder, removed with everything in it.
class TempDir {
 public:
  TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "lumenscribe-test-XXXXXX");
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                 std::filesystem::perm_options::add, ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// Writes `content` to a file named `name` inside the directory and returns its path.
  std::filesystem::path write(std::string_view name, std::string_view content) const {
    const auto file = path_ / std::string(name);
    std::ofstream(file, std::ios::binary)
        .write(content.data(), static_cast<std::streamsize>(content.size()));
    return file;
  }

 private:
  std::filesystem::path path_;
};

/// Root reads everything, so permission tests only mean something for other users.
inline bool runningAsRoot() { return ::geteuid() == 0; }

/// The item at `path`, opened as the driver opens it; aborts the test program when it
/// cannot be (tests open only what they made).
inline platform::OpenedItem openedItem(const std::filesystem::path& path) {
  auto item = platform::openItem(path);
  if (!item) std::abort();
  return std::move(item).value();
}

/// One decoder worker for the whole test program, started on first use.
inline platform::DecoderClient& sharedDecoder() {
  static platform::DecoderClient decoder;
  return decoder;
}

}  // namespace lumenscribe::test
