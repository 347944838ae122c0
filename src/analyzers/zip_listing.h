// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "analyzers/container_summary.h"

namespace lumenscribe {

/// One entry line of `unzip -l`: "     1234  2024-05-01 12:00   docs/read me.txt".
struct ZipListingEntry {
  std::int64_t length = 0;
  /// The path inside the archive as listed; a folder's ends in "/".
  std::string_view name;

  friend bool operator==(const ZipListingEntry&, const ZipListingEntry&) = default;
};

/// The entry that one line of the listing (already cut at newlines) describes, or nothing
/// for the "Archive:" and "Length" headers, the dashed rules, the footer and every line that
/// is not four pieces led by a decimal length. The line is trimmed of blanks and tabs; the
/// name is the rest after length, date and time, less the three blanks that pad its column,
/// so blanks inside it and in front of it stay. Any line containing "files" is taken for the
/// footer ("  2 files"), an entry named myfiles/a.txt included.
std::optional<ZipListingEntry> parseZipListingLine(std::string_view line);

/// Counts one listed entry: a folder when its name ends in "/", otherwise a file, hidden
/// when its name or a folder on its path begins with ".", an executable or nested archive
/// by its extension alone, classified by its last path component.
void addZipEntry(const ZipListingEntry& entry, ContainerSummary& summary);

/// Reads `unzip -l` output in pieces of any size as unzip writes it, counting each entry as
/// its line completes, so that no listing is ever held whole. Lines end at any newline
/// character (LF, CR, VT, FF, NEL, LS, PS).
///
///     ZipListingReader reader;
///     reader.feed(piece);  // as often as output arrives
///     reader.finish();
///     if (reader.isValidUtf8()) publish(reader.summary());
class ZipListingReader {
 public:
  void feed(std::string_view bytes);
  /// Takes the last line when the output did not end with a newline.
  void finish();

  /// False as soon as any byte of the output is not UTF-8; counting stops there.
  bool isValidUtf8() const { return validUtf8_; }
  /// False when nothing but the "Archive:" line came: the listing of an empty archive.
  bool listedMoreThanArchiveLine() const { return listedMore_; }
  std::int64_t entryCount() const { return entries_; }
  const ContainerSummary& summary() const { return summary_; }

 private:
  void takeLine(std::string_view bytes);
  void takeTextLine(std::string_view line);

  std::string partial_;  // the start of a line whose end has not arrived yet
  ContainerSummary summary_;
  std::int64_t entries_ = 0;
  bool validUtf8_ = true;
  bool listedMore_ = false;
};

}  // namespace lumenscribe
