// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "analyzers/text_analysis.h"

#include <array>
#include <exception>
#include <string_view>
#include <utility>

#include "analyzers/content_patterns.h"
#include "analyzers/text_encoding.h"
#include "analyzers/text_statistics.h"
#include "core/path_text.h"
#include "platform/item_content.h"
#include "platform/unicode_text.h"

namespace lumenscribe {

namespace {

struct SourceType {
  std::string_view extension;
  std::string_view language;
};

// extension -> language shown under "Source Type"
constexpr SourceType kSourceTypes[] = {
    {"swift", "Swift"},
    {"m", "Objective-C / Objective-C++"},
    {"mm", "Objective-C / Objective-C++"},
    {"c", "C"},
    {"cc", "C / C++"},
    {"cpp", "C / C++"},
    {"cxx", "C / C++"},
    {"hpp", "C / C++"},
    {"h", "C / C++"},
    {"py", "Python"},
    {"js", "JavaScript"},
    {"ts", "TypeScript"},
    {"html", "HTML"},
    {"htm", "HTML"},
    {"css", "CSS"},
    {"json", "JSON"},
    {"xml", "XML"},
    {"yaml", "YAML"},
    {"yml", "YAML"},
    {"md", "Markdown"},
    {"markdown", "Markdown"},
    {"sh", "Shell Script"},
    {"bash", "Shell Script"},
    {"zsh", "Shell Script"},
    {"rb", "Ruby"},
    {"pl", "Perl"},
    {"php", "PHP"},
    {"java", "Java"},
    {"kt", "Kotlin"},
    {"kts", "Kotlin"},
    {"rs", "Rust"},
    {"go", "Go"},
    {"sql", "SQL"},
};

struct ContactKind {
  std::int64_t ContentCounts::*count;
  std::string_view title;
  std::string_view detailBefore;  // the count goes between the two halves
  std::string_view detailAfter;
  PrivacyLevel level;
};

// In the order the findings are raised.
constexpr std::array<ContactKind, 4> kContactFindings = {{
    {&ContentCounts::emailAddresses, "Email addresses are present", "This text contains ",
     " email address reference(s). Review before sharing if the file was not intended to expose "
     "contact information.",
     PrivacyLevel::notice},
    {&ContentCounts::ipAddresses, "IP addresses are present", "This text contains ",
     " IP address reference(s). Lumenscribe counts them without exposing the actual values in "
     "the summary.",
     PrivacyLevel::notice},
    {&ContentCounts::phoneNumbers, "Phone-like numbers are present", "This text contains ",
     " phone-number-like reference(s). Review before sharing if the file may contain personal "
     "contact information.",
     PrivacyLevel::notice},
    {&ContentCounts::webLinks, "Web links are present", "This text contains ",
     " web link(s). Lumenscribe has counted them but has not opened or visited them.",
     PrivacyLevel::neutral},
}};

struct Analysis {
  std::string encoding;
  TextStatistics statistics;
  ContentCounts counts;
};

std::optional<Analysis> analyze(const platform::OpenedItem& item) {
  if (!item.isReadable()) return std::nullopt;
  const auto file = platform::ItemContent::read(item.descriptor(), item.size());
  if (!file) return std::nullopt;
  const auto decoded = detectTextEncoding(file->text());
  if (!decoded) return std::nullopt;
  return Analysis{std::string(decoded->encodingName()), computeTextStatistics(decoded->text()),
                  countContentPatterns(decoded->text())};
}

}  // namespace

std::optional<std::string> sourceLanguage(const std::filesystem::path& url) {
  const std::string extension = platform::lowerCased(validUtf8(pathExtension(url)));
  for (const SourceType& type : kSourceTypes) {
    if (type.extension == extension) return std::string(type.language);
  }
  return std::nullopt;
}

void analyzeText(const platform::OpenedItem& item, Accumulators& accumulators) {
  std::optional<Analysis> analysis;
  try {
    analysis = analyze(item);
  } catch (const std::exception&) {
    // Out of memory for a decoded copy: nothing is reported rather than a part of it.
    return;
  }
  if (!analysis) return;
  const TextStatistics& statistics = analysis->statistics;
  const ContentCounts& counts = analysis->counts;
  const std::string lineEndings(lineEndingLabel(statistics.lineEndings));
  const auto text = [](std::int64_t number) { return std::to_string(number); };

  std::vector<InsightRow> rows;
  rows.emplace_back("Encoding", analysis->encoding);
  rows.emplace_back("Lines", text(statistics.lines));
  rows.emplace_back("Words", text(statistics.words));
  rows.emplace_back("Characters", text(statistics.characters));
  rows.emplace_back("Blank Lines", text(statistics.blankLines));
  rows.emplace_back("Line Endings", lineEndings);
  if (const auto language = sourceLanguage(item.url())) {
    rows.emplace_back("Source Type", *language);
    accumulators.setRaw("Text Source Type", *language);
  }
  const std::pair<const char*, std::int64_t> countRows[] = {
      {"URLs", counts.webLinks},
      {"Email Addresses", counts.emailAddresses},
      {"IP Addresses", counts.ipAddresses},
      {"Phone-like Numbers", counts.phoneNumbers},
  };
  for (const auto& [label, count] : countRows) {
    if (count > 0) rows.emplace_back(label, text(count));
  }
  if (statistics.longestLine > 0) {
    rows.emplace_back("Longest Line", text(statistics.longestLine) + " characters");
  }
  accumulators.sections.emplace_back("Text Analysis", "text.alignleft", std::move(rows));

  accumulators.setRaw("Text Encoding", analysis->encoding);
  accumulators.setRaw("Text Lines", text(statistics.lines));
  accumulators.setRaw("Text Words", text(statistics.words));
  accumulators.setRaw("Text Characters", text(statistics.characters));
  accumulators.setRaw("Text Blank Lines", text(statistics.blankLines));
  accumulators.setRaw("Text Line Endings", lineEndings);
  accumulators.setRaw("Text URLs", text(counts.webLinks));
  accumulators.setRaw("Text Email Addresses", text(counts.emailAddresses));
  accumulators.setRaw("Text IP Addresses", text(counts.ipAddresses));
  accumulators.setRaw("Text Phone-like Numbers", text(counts.phoneNumbers));
  accumulators.summaryItems.emplace_back("Text Analysis");

  for (const ContactKind& kind : kContactFindings) {
    const std::int64_t count = counts.*kind.count;
    if (count <= 0) continue;
    accumulators.findings.emplace_back(
        std::string(kind.title),
        std::string(kind.detailBefore) + text(count) + std::string(kind.detailAfter), kind.level);
  }
}

}  // namespace lumenscribe
