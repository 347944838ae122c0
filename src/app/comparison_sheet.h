// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

#include "compare/file_comparison.h"

class QPushButton;
class QVBoxLayout;

namespace lumenscribe::app {

/// What comparing the inspected file with a second one found: the verdict, both names,
/// sizes, types and fingerprints, and where they apply the pixel, fingerprint and text
/// cards. "Done" (also Return) closes it.
class ComparisonSheet : public QDialog {
  Q_OBJECT

 public:
  explicit ComparisonSheet(const FileComparison& comparison, QWidget* parent = nullptr);

  const FileComparison& comparison() const { return comparison_; }
  /// The cards present for this comparison ("pixelCard", "fingerprintCard", "textCard"),
  /// or null.
  QWidget* card(const QString& name) const;
  QPushButton* doneButton() const { return done_; }
  /// Every text the sheet shows, top to bottom.
  QStringList texts() const;

 private:
  void addHeader(QVBoxLayout* layout, QWidget* content);
  void addRows(QVBoxLayout* layout, QWidget* content);
  void addPixelCard(QVBoxLayout* layout, QWidget* content);
  void addFingerprintCard(QVBoxLayout* layout, QWidget* content);
  void addTextCard(QVBoxLayout* layout, QWidget* content);

  FileComparison comparison_;
  QPushButton* done_ = nullptr;
};

}  // namespace lumenscribe::app
