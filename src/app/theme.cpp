// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/theme.h"

#include <QFont>

namespace lumenscribe::app {

namespace {

struct AccentPair {
  QRgb light;
  QRgb dark;
};

// Saturated on light windows, brighter on dark ones so they keep their contrast.
AccentPair accentPair(Accent accent) {
  switch (accent) {
    case Accent::blue: return {0x007aff, 0x0a84ff};
    case Accent::purple: return {0xaf52de, 0xbf5af2};
    case Accent::indigo: return {0x5856d6, 0x7d7aff};
    case Accent::teal: return {0x1e9bb0, 0x40c8e0};
    case Accent::orange: return {0xf08a00, 0xff9f0a};
    case Accent::green: return {0x28a745, 0x30d158};
    case Accent::cyan: return {0x1f9ed6, 0x64d2ff};
    case Accent::mint: return {0x00a89f, 0x63e6e2};
    case Accent::red: return {0xe5352b, 0xff453a};
    case Accent::system: break;
  }
  return {0, 0};
}

}  // namespace

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightness() <
         palette.color(QPalette::WindowText).lightness();
}

QColor accentColor(Accent accent, const QPalette& palette) {
  if (accent == Accent::system) return palette.color(QPalette::Highlight);
  const AccentPair pair = accentPair(accent);
  return QColor::fromRgb(isDark(palette) ? pair.dark : pair.light);
}

QColor withAlpha(QColor color, qreal alpha) {
  color.setAlphaF(static_cast<float>(alpha));
  return color;
}

Accent accentForVerdict(VerdictLevel level) {
  switch (level) {
    case VerdictLevel::info: return Accent::blue;
    case VerdictLevel::caution: return Accent::orange;
    case VerdictLevel::warning: return Accent::red;
  }
  return Accent::blue;
}

Accent accentForLevel(PrivacyLevel level) {
  switch (level) {
    case PrivacyLevel::neutral: return Accent::blue;
    case PrivacyLevel::notice: return Accent::orange;
    case PrivacyLevel::sensitive: return Accent::red;
  }
  return Accent::blue;
}

QColor secondaryText(const QPalette& palette) {
  return withAlpha(palette.color(QPalette::WindowText), 0.66);
}

QColor tertiaryText(const QPalette& palette) {
  return withAlpha(palette.color(QPalette::WindowText), 0.45);
}

QColor cardFill(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  return isDark(palette) ? window.lighter(118) : palette.color(QPalette::Base);
}

QColor cardOutline(const QPalette& palette) {
  return withAlpha(palette.color(QPalette::WindowText), isDark(palette) ? 0.14 : 0.10);
}

QFont scaledFont(const QFont& base, qreal factor, int weight) {
  QFont font = base;
  if (font.pointSizeF() > 0) {
    font.setPointSizeF(font.pointSizeF() * factor);
  } else if (font.pixelSize() > 0) {
    font.setPixelSize(qRound(font.pixelSize() * factor));
  }
  if (weight >= 0) font.setWeight(static_cast<QFont::Weight>(weight));
  return font;
}

}  // namespace lumenscribe::app
