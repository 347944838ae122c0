// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT

// The text report and the JSON form, fed results made of any text: bytes that are not
// UTF-8, empty and very long strings, and the labels that the reports treat specially.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/path_text.h"
#include "fuzz_check.h"
#include "report/json_report.h"
#include "report/text_report.h"

namespace {

using namespace lumenscribe;
using nlohmann::json;

// What the reports look for, by where they look for it, so that their branches are reached
// without the fuzzer having to guess the words.
constexpr std::array<std::string_view, 2> kTitles = {"File Health", "Identity & Integrity"};
constexpr std::array<std::string_view, 8> kLabels = {
    "SHA-256",       "Assessment",    "Readable",        "Image Structure",
    "PDF Structure", "ZIP Structure", "Basic Read Test", "Structure"};
constexpr std::array<std::string_view, 13> kValues = {
    "Looks intact",           "Decode failed",     "Incomplete",
    "Unexpected end of file", "Invalid data",      "Locked / encrypted",
    "Could not open",         "No readable pages", "Encrypted / password required",
    "Integrity test failed",  "Empty file",        "Unreadable",
    "Possible read problem"};

bool isUtf8(std::string_view text) { return validUtf8(text) == text; }

class ResultMaker {
 public:
  explicit ResultMaker(FuzzedDataProvider& input) : input_(input) {}

  // The shape comes first, so that even a short input has sections, findings and raw entries.
  LumenscribeResult result() {
    const int sectionCount = count(8);
    const int findingCount = count(8);
    const int rawCount = count(16);
    std::vector<std::string> summaryItems(count(8));

    std::vector<InsightSection> sections;
    for (int n = 0; n < sectionCount; ++n) {
      std::string title = text(kTitles);
      std::string systemImage = text();
      std::vector<InsightRow> rows;
      for (int m = count(12); m > 0; --m) {
        std::string label = text(kLabels);
        rows.emplace_back(std::move(label), text(kValues));
      }
      sections.emplace_back(std::move(title), std::move(systemImage), std::move(rows));
    }
    std::vector<PrivacyFinding> findings;
    for (int n = 0; n < findingCount; ++n) {
      const auto level = input_.PickValueInArray(
          {PrivacyLevel::neutral, PrivacyLevel::notice, PrivacyLevel::sensitive});
      std::string title = text();
      findings.emplace_back(std::move(title), text(), level);
    }
    RawMetadata raw;
    for (int n = 0; n < rawCount; ++n) {
      std::string key = text();
      raw.insert_or_assign(std::move(key), text());
    }
    for (auto& item : summaryItems) item = text();
    std::filesystem::path url = "/" + bytes(255);
    std::string displayName = text();
    std::string typeDescription = text();
    return LumenscribeResult(std::move(url), std::move(displayName), std::move(typeDescription),
                             input_.ConsumeIntegral<std::int64_t>(), std::move(summaryItems),
                             std::move(sections), std::move(findings), std::move(raw));
  }

  // Any bytes, a long run of them, or half of the time one of `words` when there are any.
  std::string text(std::span<const std::string_view> words = {}) {
    std::string text;
    switch (input_.ConsumeIntegralInRange(0, 3)) {
      case 0: {
        // A short fragment repeated up to 4 KiB: as long as the longest input libFuzzer makes.
        const std::string fragment = bytes(8);
        for (auto n = input_.ConsumeIntegralInRange(0, 512); n > 0; --n) text += fragment;
        break;
      }
      case 1:
      case 2:
        if (!words.empty()) {
          text = words[input_.ConsumeIntegralInRange<std::size_t>(0, words.size() - 1)];
          break;
        }
        [[fallthrough]];
      default: text = bytes(255);
    }
    allUtf8_ = allUtf8_ && isUtf8(text);
    return text;
  }

  // Whether every text made so far, the path aside, was valid UTF-8.
  bool allUtf8() const { return allUtf8_; }

 private:
  int count(int most) { return input_.ConsumeIntegralInRange(0, most); }
  // Lengths come from the input's end and bytes from its start, so that a mutation of one
  // text leaves the shape of the rest alone.
  std::string bytes(std::size_t most) {
    return input_.ConsumeBytesAsString(input_.ConsumeIntegralInRange<std::size_t>(0, most));
  }

  FuzzedDataProvider& input_;
  bool allUtf8_ = true;
};

// A JSON string carries valid UTF-8 text exactly; other text only has to come out as a string.
void checkText(const json& value, const std::string& text) {
  FUZZ_CHECK(value.is_string());
  if (isUtf8(text)) FUZZ_CHECK(value.get<std::string>() == text);
}

// The bytes of a file URL's path: every name, UTF-8 or not, must survive the round trip.
std::string percentDecoded(std::string_view text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes.push_back(text[i]);
      continue;
    }
    FUZZ_CHECK(i + 2 < text.size());
    unsigned value = 0;
    const char* digits = text.data() + i + 1;
    const auto [end, error] = std::from_chars(digits, digits + 2, value, 16);
    FUZZ_CHECK(error == std::errc() && end == digits + 2);
    bytes.push_back(static_cast<char>(value));
    i += 2;
  }
  return bytes;
}

void checkJson(const json& object, const LumenscribeResult& result) {
  const std::string url = object.at("url").get<std::string>();
  FUZZ_CHECK(url.starts_with("file://"));
  FUZZ_CHECK(percentDecoded(std::string_view(url).substr(7)) == result.url.string());
  checkText(object.at("path"), result.url.string());
  checkText(object.at("displayName"), result.displayName);
  checkText(object.at("typeDescription"), result.typeDescription);
  FUZZ_CHECK(object.at("summaryCount") == result.summaryCount);

  const json& items = object.at("summaryItems");
  FUZZ_CHECK(items.size() == result.summaryItems.size());
  for (std::size_t i = 0; i < items.size(); ++i) checkText(items[i], result.summaryItems[i]);

  const json& sections = object.at("sections");
  FUZZ_CHECK(sections.size() == result.sections.size());
  for (std::size_t i = 0; i < sections.size(); ++i) {
    const InsightSection& section = result.sections[i];
    checkText(sections[i].at("title"), section.title);
    checkText(sections[i].at("systemImage"), section.systemImage);
    const json& rows = sections[i].at("rows");
    FUZZ_CHECK(rows.size() == section.rows.size());
    for (std::size_t j = 0; j < rows.size(); ++j) {
      checkText(rows[j].at("label"), section.rows[j].label);
      checkText(rows[j].at("value"), section.rows[j].value);
    }
  }

  const json& findings = object.at("privacyFindings");
  FUZZ_CHECK(findings.size() == result.privacyFindings.size());
  for (std::size_t i = 0; i < findings.size(); ++i) {
    const PrivacyFinding& finding = result.privacyFindings[i];
    checkText(findings[i].at("title"), finding.title);
    checkText(findings[i].at("detail"), finding.detail);
    FUZZ_CHECK(findings[i].at("level") == rawValue(finding.level));
  }
  const auto countOf = [&](PrivacyLevel level) {
    return std::count_if(result.privacyFindings.begin(), result.privacyFindings.end(),
                         [level](const PrivacyFinding& finding) { return finding.level == level; });
  };
  FUZZ_CHECK(object.at("counts") == json({{"info", countOf(PrivacyLevel::neutral)},
                                          {"caution", countOf(PrivacyLevel::notice)},
                                          {"warning", countOf(PrivacyLevel::sensitive)}}));

  // Keys that are not UTF-8 may come out alike once their bad bytes are replaced, and the
  // parser keeps one of them.
  const json& raw = object.at("rawMetadata");
  const bool keysUtf8 = std::all_of(result.rawMetadata.begin(), result.rawMetadata.end(),
                                    [](const auto& entry) { return isUtf8(entry.first); });
  if (!keysUtf8) {
    FUZZ_CHECK(raw.size() <= result.rawMetadata.size());
    return;
  }
  FUZZ_CHECK(raw.size() == result.rawMetadata.size());
  for (const auto& [key, value] : result.rawMetadata) checkText(raw.at(key), value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  ResultMaker maker(input);
  const LumenscribeResult result = maker.result();

  const std::string report = buildTextReport(result);
  if (maker.allUtf8()) FUZZ_CHECK(isUtf8(report));

  // One object per line, whatever the text holds.
  const std::string line = resultJson(result);
  FUZZ_CHECK(line.find('\n') == std::string::npos);
  const json parsed = json::parse(line, nullptr, false);
  FUZZ_CHECK(parsed.is_object());
  checkJson(parsed, result);

  const std::string message = maker.text();
  const json failure = json::parse(failureJson(result.url, message), nullptr, false);
  FUZZ_CHECK(failure.is_object() && failure.size() == 2);
  checkText(failure.at("path"), result.url.string());
  checkText(failure.at("error"), message);
  return 0;
}
