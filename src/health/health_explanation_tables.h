// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include "health/health_explanation.h"

namespace lumenscribe {

/// The fixed explanations, one per situation the "Inspect Further" sheet can face.
enum class ExplanationId {
  imageDecodeFailed,
  imageTruncated,
  imageInvalidData,
  pdfLocked,
  pdfUnusable,
  zipEncrypted,
  zipIntegrityFailed,
  emptyFile,
  unreadable,
  uncertain,
};

HealthExplanation explanationText(ExplanationId id);

}  // namespace lumenscribe
