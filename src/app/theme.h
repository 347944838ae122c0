// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

#include "app/presentation.h"
#include "privacy/privacy_summary.h"

class QFont;
class QWidget;

namespace lumenscribe::app {

/// True when the palette draws light text on a dark window.
bool isDark(const QPalette& palette);

/// The colour of an accent family, a lighter variant on dark palettes.
QColor accentColor(Accent accent, const QPalette& palette);

/// `color` with the given opacity (0..1).
QColor withAlpha(QColor color, qreal alpha);

/// Blue for info, orange for caution, red for warning.
Accent accentForVerdict(VerdictLevel level);
Accent accentForLevel(PrivacyLevel level);

/// Text that should read quieter than the body (labels, captions).
QColor secondaryText(const QPalette& palette);
QColor tertiaryText(const QPalette& palette);

/// Card fill and outline, derived from the palette so dark themes follow.
QColor cardFill(const QPalette& palette);
QColor cardOutline(const QPalette& palette);

/// `base` scaled by `factor` in point size, optionally bold.
QFont scaledFont(const QFont& base, qreal factor, int weight = -1);

}  // namespace lumenscribe::app
