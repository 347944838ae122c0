// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/content_type.h"
#include "lumenscribe/result.h"

namespace lumenscribe::app {

/// Colour families of the result screen; `system` is the desktop's own accent.
enum class Accent { blue, purple, indigo, teal, orange, green, cyan, mint, red, system };

/// The accent of a section card, chosen by its title.
Accent accentForSection(std::string_view title);

/// The accent of a section's card: its title's, except that "File Health" takes the colour
/// of its verdict (green only when it "Looks intact").
Accent accentForCard(const InsightSection& section);

/// The title of the section a summary pill jumps to: the section of that title, else the
/// first section (the "File" pill of a folder, whose first section is "Container").
std::string_view pillTarget(const std::vector<InsightSection>& sections, std::string_view item);

/// The scroll anchor of a section card: "Identity & Integrity" gives
/// "section-identity-and-integrity".
std::string sectionAnchor(std::string_view title);

inline constexpr std::string_view kPageTopAnchor = "pageTop";
inline constexpr std::string_view kSharingPrivacyAnchor = "sharingPrivacy";

/// The sections that show only their essential rows until the user dives deeper.
enum class DetailKind { camera, video };

/// Which collapsible kind a section is, from its title; nothing for ordinary sections.
std::optional<DetailKind> detailKindFor(std::string_view title);

/// Whether a row belongs to the essentials of a collapsible section.
bool isEssentialRow(DetailKind kind, std::string_view label);

/// A section's rows split into essentials and the rest, each keeping the section's order.
struct SplitRows {
  std::vector<const InsightRow*> essentials;
  std::vector<const InsightRow*> remaining;
};
SplitRows splitRows(const InsightSection& section, DetailKind kind);

/// Texts of a collapsible section for its current state.
struct DetailTexts {
  std::string_view caption;
  std::string_view button;
  std::string_view help;
};
DetailTexts detailTexts(DetailKind kind, bool expanded);

/// Rows of a container inventory that are also shown as highlight tiles, in row order.
std::vector<const InsightRow*> containerHighlights(const InsightSection& section);

/// Tooltip of a severity pill: "Jump to Sharing & Privacy" when there is something to see,
/// otherwise e.g. "No caution findings".
std::string severityHelpText(PrivacyLevel level, std::int64_t count);

/// What the top card needs to pick an icon when there is no thumbnail.
struct PreviewKindFacts {
  bool isDirectory = false;
  bool isPackage = false;
  std::string extension;  // as written; compared lower-cased
  std::optional<ContentType> contentType;
};

/// The icon by kind for the top card (first matching rule wins).
std::string_view previewSymbolFor(const PreviewKindFacts& facts);

}  // namespace lumenscribe::app
