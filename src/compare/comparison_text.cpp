// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "compare/comparison_text.h"

#include <nlohmann/json.hpp>

#include "core/path_text.h"

namespace lumenscribe {

namespace comparison_text {

Headline header(const FileComparison& comparison) {
  if (comparison.identical()) {
    return {"checkmark.seal.fill", "Exact Match", "These files are byte-for-byte identical."};
  }
  return {"arrow.triangle.branch", "Files Are Different",
          "Lumenscribe found a difference between these files."};
}

std::optional<Headline> pixelCard(const FileComparison& comparison) {
  if (!comparison.pixelMatch) return std::nullopt;
  if (!*comparison.pixelMatch) {
    return Headline{"photo.badge.exclamationmark", "Picture Pixels Differ",
                    "Lumenscribe decoded both images and found that the pixel content is not "
                    "identical."};
  }
  if (comparison.identical()) {
    return Headline{"photo.badge.checkmark", "Picture Pixels Match",
                    "Lumenscribe decoded both images and found the same pixel content."};
  }
  return Headline{"photo.badge.checkmark", "Picture Pixels Match",
                  "The files themselves differ, but Lumenscribe decoded both images and found "
                  "the same pixel content."};
}

std::string sizeRow(const FileComparison& comparison) {
  if (comparison.firstSize == comparison.secondSize) {
    return std::to_string(comparison.firstSize) + " bytes — match";
  }
  return std::to_string(comparison.firstSize) + " vs " + std::to_string(comparison.secondSize) +
         " bytes";
}

std::string typeRow(const FileComparison& comparison) {
  if (comparison.firstType == comparison.secondType) return comparison.firstType + " — match";
  return comparison.firstType + " vs " + comparison.secondType;
}

std::string_view fingerprintRow(const FileComparison& comparison) {
  return comparison.firstHash == comparison.secondHash ? "Match (SHA-256)" : "Different (SHA-256)";
}

std::string changedLinesText(std::int64_t total) {
  return std::to_string(total) + " changed line" + (total == 1 ? "" : "s");
}

std::string shownDifferencesText(std::size_t stored, std::int64_t total) {
  if (static_cast<std::int64_t>(stored) < total) {
    return "Showing the first " + std::to_string(stored) + " differences.";
  }
  return "Showing all detected line differences.";
}

std::string lineText(const std::optional<std::string>& line) {
  if (!line) return "⟨no line⟩";
  if (line->empty()) return "⟨blank line⟩";
  return *line;
}

}  // namespace comparison_text

namespace {

using namespace comparison_text;

// Wide enough for the longest label, "Digital Fingerprint", and two spaces.
constexpr std::size_t kLabelColumn = 21;

std::string row(std::string_view label, std::string_view value) {
  std::string line(label);
  line.resize(std::max(kLabelColumn, label.size() + 2), ' ');
  return line.append(value);
}

std::string fileName(const std::filesystem::path& url) { return validUtf8(lastPathComponent(url)); }

}  // namespace

std::string comparisonReport(const FileComparison& comparison) {
  std::vector<std::string> lines;
  const Headline head = header(comparison);
  lines.emplace_back(head.title);
  lines.emplace_back(head.message);
  lines.emplace_back();
  lines.push_back(row("First", fileName(comparison.firstURL)));
  lines.push_back(row("Second", fileName(comparison.secondURL)));
  lines.emplace_back();
  lines.push_back(row("Size", sizeRow(comparison)));
  lines.push_back(row("Type", typeRow(comparison)));
  lines.push_back(row("Digital Fingerprint", fingerprintRow(comparison)));
  lines.emplace_back(kCaption);

  if (const auto pixels = pixelCard(comparison)) {
    lines.emplace_back();
    lines.push_back(std::string(pixels->title) + "  " + *comparison.pixelDimensions);
    lines.emplace_back(pixels->message);
  }
  if (!comparison.identical()) {
    lines.emplace_back();
    lines.emplace_back(kFirstFingerprintLabel);
    lines.push_back(comparison.firstHash);
    lines.emplace_back(kSecondFingerprintLabel);
    lines.push_back(comparison.secondHash);
  }
  if (comparison.textDifferences && comparison.totalChangedLines.value_or(0) >= 1) {
    const auto& differences = *comparison.textDifferences;
    lines.emplace_back();
    lines.push_back(std::string(kTextCardTitle) + "  " +
                    changedLinesText(*comparison.totalChangedLines));
    lines.push_back(shownDifferencesText(differences.size(), *comparison.totalChangedLines));
    for (const TextDifference& difference : differences) {
      lines.push_back("Line " + std::to_string(difference.lineNumber));
      lines.push_back("  A  " + lineText(difference.first));
      lines.push_back("  B  " + lineText(difference.second));
    }
  }

  std::string text;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i > 0) text.push_back('\n');
    text += lines[i];
  }
  return text;
}

std::string comparisonJson(const FileComparison& comparison) {
  using nlohmann::ordered_json;
  const auto optionalText = [](const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json(nullptr);
  };
  ordered_json differences = nullptr;
  if (comparison.textDifferences) {
    differences = ordered_json::array();
    for (const TextDifference& difference : *comparison.textDifferences) {
      differences.push_back({{"lineNumber", difference.lineNumber},
                             {"first", optionalText(difference.first)},
                             {"second", optionalText(difference.second)}});
    }
  }
  const ordered_json json = {
      {"firstPath", validUtf8(comparison.firstURL.string())},
      {"secondPath", validUtf8(comparison.secondURL.string())},
      {"firstSize", comparison.firstSize},
      {"secondSize", comparison.secondSize},
      {"firstType", comparison.firstType},
      {"secondType", comparison.secondType},
      {"firstHash", comparison.firstHash},
      {"secondHash", comparison.secondHash},
      {"identical", comparison.identical()},
      {"textDifferences", std::move(differences)},
      {"totalChangedLines", comparison.totalChangedLines
                                ? ordered_json(*comparison.totalChangedLines)
                                : ordered_json(nullptr)},
      {"pixelMatch",
       comparison.pixelMatch ? ordered_json(*comparison.pixelMatch) : ordered_json(nullptr)},
      {"pixelDimensions", optionalText(comparison.pixelDimensions)},
  };
  // Lines are decoded text and types come from the MIME database, so everything is UTF-8
  // already; replacing is a guard, never a throw.
  return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

}  // namespace lumenscribe
