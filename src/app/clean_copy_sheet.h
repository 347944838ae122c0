// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <filesystem>

#include "cleancopy/clean_copy.h"

class QPushButton;

namespace lumenscribe::app {

/// Shown once a clean copy is saved: where it is, how it was made and what reading it back
/// found; it offers to inspect the copy.
class CleanCopySheet : public QDialog {
  Q_OBJECT

 public:
  CleanCopySheet(std::filesystem::path copy, CleanCopyKind kind, const CleanCopyCheck& check,
                 QWidget* parent = nullptr);

  const std::filesystem::path& copy() const { return copy_; }
  QPushButton* inspectButton() const { return inspect_; }
  QPushButton* doneButton() const { return done_; }
  /// The findings of the check, as listed.
  QStringList findings() const { return findings_; }

 signals:
  /// "Inspect Copy": the window inspects the copy.
  void inspectRequested(const std::filesystem::path& copy);

 private:
  std::filesystem::path copy_;
  QStringList findings_;
  QPushButton* inspect_ = nullptr;
  QPushButton* done_ = nullptr;
};

}  // namespace lumenscribe::app
