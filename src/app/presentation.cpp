// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/presentation.h"

#include <QString>
#include <algorithm>
#include <array>
#include <utility>

namespace lumenscribe::app {

namespace {

constexpr std::array<std::pair<std::string_view, Accent>, 17> kSectionAccents{{
    {"Camera", Accent::blue},
    {"Image", Accent::blue},
    {"Location", Accent::blue},
    {"Software & Ownership", Accent::blue},
    {"Video", Accent::purple},
    {"Audio", Accent::indigo},
    {"Audio Tags", Accent::indigo},
    {"Document", Accent::teal},
    {"Document Structure", Accent::teal},
    {"PDF Content Analysis", Accent::teal},
    {"Text Analysis", Accent::teal},
    {"Type Verification", Accent::orange},
    {"File Health", Accent::green},
    {"Identity & Integrity", Accent::cyan},
    {"System Metadata", Accent::mint},
    {"File Origin", Accent::mint},
    {"Safe Inspection", Accent::red},
}};

constexpr std::array<std::string_view, 8> kCameraEssentials{
    "Camera", "Make", "Lens", "Focal Length", "Shutter", "Aperture", "ISO", "Captured"};
constexpr std::array<std::string_view, 7> kVideoEssentials{
    "Duration", "Dimensions", "Orientation", "Frame Rate", "Codec", "Video Tracks", "Audio Tracks"};

constexpr std::array<std::string_view, 9> kContainerHighlightLabels{"Images",
                                                                    "Videos",
                                                                    "Audio",
                                                                    "Documents",
                                                                    "Hidden Items",
                                                                    "Nested Archives",
                                                                    "Executable Content",
                                                                    "Double Extensions",
                                                                    "Flagged Names"};

template <std::size_t N>
bool contains(const std::array<std::string_view, N>& list, std::string_view text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

}  // namespace

Accent accentForSection(std::string_view title) {
  for (const auto& [name, accent] : kSectionAccents) {
    if (name == title) return accent;
  }
  return Accent::system;
}

Accent accentForCard(const InsightSection& section) {
  if (section.title != "File Health") return accentForSection(section.title);
  const auto assessment =
      std::find_if(section.rows.begin(), section.rows.end(),
                   [](const InsightRow& row) { return row.label == "Assessment"; });
  if (assessment == section.rows.end() || assessment->value == "Looks intact") {
    return accentForSection(section.title);
  }
  // Doubt is orange; damage and unreadable files are red.
  if (assessment->value == "Verification limited" || assessment->value == "Empty file") {
    return Accent::orange;
  }
  return Accent::red;
}

std::string_view pillTarget(const std::vector<InsightSection>& sections, std::string_view item) {
  for (const InsightSection& section : sections) {
    if (section.title == item) return section.title;
  }
  return sections.empty() ? item : std::string_view(sections.front().title);
}

std::string sectionAnchor(std::string_view title) {
  QString anchor = QString::fromUtf8(title.data(), static_cast<qsizetype>(title.size())).toLower();
  anchor.replace(QLatin1String("&"), QLatin1String("and"));
  anchor.replace(QLatin1Char('/'), QLatin1Char('-'));
  anchor.replace(QLatin1Char(' '), QLatin1Char('-'));
  return "section-" + anchor.toStdString();
}

std::optional<DetailKind> detailKindFor(std::string_view title) {
  if (title == "Camera") return DetailKind::camera;
  if (title == "Video") return DetailKind::video;
  return std::nullopt;
}

bool isEssentialRow(DetailKind kind, std::string_view label) {
  return kind == DetailKind::camera ? contains(kCameraEssentials, label)
                                    : contains(kVideoEssentials, label);
}

SplitRows splitRows(const InsightSection& section, DetailKind kind) {
  SplitRows split;
  for (const InsightRow& row : section.rows) {
    (isEssentialRow(kind, row.label) ? split.essentials : split.remaining).push_back(&row);
  }
  return split;
}

DetailTexts detailTexts(DetailKind kind, bool expanded) {
  if (kind == DetailKind::camera) {
    return expanded
               ? DetailTexts{"Full EXIF view", "Show Less", "Hide deeper camera metadata"}
               : DetailTexts{"Camera essentials", "Dive Deeper", "Reveal deeper camera metadata"};
  }
  return expanded ? DetailTexts{"Full stream view", "Show Less", "Hide deeper video metadata"}
                  : DetailTexts{"Video essentials", "Dive Deeper", "Reveal deeper video metadata"};
}

std::vector<const InsightRow*> containerHighlights(const InsightSection& section) {
  std::vector<const InsightRow*> rows;
  for (const InsightRow& row : section.rows) {
    if (contains(kContainerHighlightLabels, row.label)) rows.push_back(&row);
  }
  return rows;
}

std::string severityHelpText(PrivacyLevel level, std::int64_t count) {
  if (count > 0) return "Jump to Sharing & Privacy";
  return "No " + QString::fromUtf8(countLabel(level).data()).toLower().toStdString() + " findings";
}

std::string_view previewSymbolFor(const PreviewKindFacts& facts) {
  const std::string extension = QString::fromStdString(facts.extension).toLower().toStdString();
  const auto conforms = [&](AbstractType type) {
    return facts.contentType && facts.contentType->conformsTo(type);
  };
  if (facts.isDirectory && facts.isPackage) return "shippingbox.fill";
  if (facts.isDirectory) return "folder.fill";
  if (extension == "zip" || conforms(AbstractType::archive)) return "archivebox.fill";
  if (conforms(AbstractType::audio)) return "waveform";
  if (conforms(AbstractType::movie) || conforms(AbstractType::video)) return "film.fill";
  if (conforms(AbstractType::plainText) || conforms(AbstractType::text)) return "doc.text.fill";
  if (conforms(AbstractType::sourceCode)) return "chevron.left.forwardslash.chevron.right";
  // An application bundle is a directory, so for anything that got here only the name counts.
  if (extension == "app") return "app.fill";
  if (extension == "dmg" || extension == "pkg") return "shippingbox.fill";
  if (conforms(AbstractType::image)) return "photo.fill";
  if (conforms(AbstractType::pdf)) return "doc.richtext.fill";
  return "doc.fill";
}

}  // namespace lumenscribe::app
