// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/icon_map.h"

#include <algorithm>
#include <array>

namespace lumenscribe::app {

namespace {

// The build reads this table to choose which icons to compile in: keep one entry per line,
// written as {"symbol", "lucide"}.
constexpr std::array kIconMappings{
    // symbol name                                 Lucide icon
    IconMapping{"doc.fill", "file"},
    IconMapping{"doc.text.fill", "file-text"},
    IconMapping{"doc.richtext.fill", "file-type"},
    IconMapping{"doc.text.magnifyingglass", "file-search"},
    IconMapping{"arrow.down.doc.fill", "file-down"},
    IconMapping{"folder.fill", "folder"},
    IconMapping{"folder.badge.gearshape", "folder-cog"},
    IconMapping{"archivebox.fill", "archive"},
    IconMapping{"shippingbox.fill", "package"},
    IconMapping{"app.fill", "app-window"},
    IconMapping{"photo.fill", "image"},
    IconMapping{"photo.badge.checkmark", "image-plus"},
    IconMapping{"photo.badge.exclamationmark", "image-off"},
    IconMapping{"camera.fill", "camera"},
    IconMapping{"location.fill", "map-pin"},
    IconMapping{"person.text.rectangle.fill", "contact"},
    IconMapping{"film.fill", "film"},
    IconMapping{"waveform", "audio-waveform"},
    IconMapping{"music.note.list", "list-music"},
    IconMapping{"text.alignleft", "text-align-start"},
    IconMapping{"text.badge.minus", "list-minus"},
    IconMapping{"text.bubble", "message-square-text"},
    IconMapping{"list.bullet.indent", "list-indent-increase"},
    IconMapping{"rectangle.stack.fill", "layers"},
    IconMapping{"chevron.left.forwardslash.chevron.right", "code-xml"},
    IconMapping{"fingerprint", "fingerprint-pattern"},
    IconMapping{"checkmark.seal.fill", "badge-check"},
    IconMapping{"checkmark.shield.fill", "shield-check"},
    IconMapping{"lock.shield", "shield-ellipsis"},
    IconMapping{"lock.fill", "lock"},
    IconMapping{"hand.raised.fill", "hand"},
    IconMapping{"stethoscope", "stethoscope"},
    IconMapping{"info.square.fill", "badge-info"},
    IconMapping{"info.circle.fill", "info"},
    IconMapping{"checkmark.circle.fill", "circle-check"},
    IconMapping{"checkmark.circle", "circle-check-big"},
    IconMapping{"questionmark.circle.fill", "circle-question-mark"},
    IconMapping{"exclamationmark.triangle.fill", "triangle-alert"},
    IconMapping{"arrow.right.circle", "circle-arrow-right"},
    IconMapping{"arrow.left.arrow.right", "arrow-left-right"},
    IconMapping{"arrow.triangle.branch", "git-branch"},
    IconMapping{"arrow.counterclockwise", "rotate-ccw"},
    IconMapping{"arrow.up", "arrow-up"},
    IconMapping{"arrow.up.right", "arrow-up-right"},
    IconMapping{"square.and.arrow.down", "download"},
    IconMapping{"tray.and.arrow.down", "inbox"},
    IconMapping{"folder.badge.plus", "folder-open"},
    IconMapping{"sparkles", "sparkles"},
    IconMapping{"chevron.right", "chevron-right"},
    IconMapping{"chevron.down", "chevron-down"},
    IconMapping{"chevron.up", "chevron-up"},
    IconMapping{"globe", "globe"},
    IconMapping{"macbook", "laptop"},
    IconMapping{"key", "key"},
};

constexpr std::string_view kFallbackLucideName = "file";

}  // namespace

std::span<const IconMapping> iconMappings() { return kIconMappings; }

std::string_view lucideNameFor(std::string_view symbolName) {
  const auto found = std::find_if(kIconMappings.begin(), kIconMappings.end(),
                                  [&](const IconMapping& m) { return m.symbolName == symbolName; });
  return found == kIconMappings.end() ? kFallbackLucideName : found->lucideName;
}

const char* lucideResourcePrefix() { return ":/lucide/"; }

}  // namespace lumenscribe::app
