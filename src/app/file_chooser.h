// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <filesystem>
#include <functional>
#include <optional>

class QWidget;

namespace lumenscribe::app {

/// What the window asks a file dialog for.
struct FileRequest {
  enum class Mode {
    openFile,  // one existing file; folders cannot be chosen
    saveFile,  // a new or existing file's location
  };
  Mode mode = Mode::openFile;
  QString title;
  /// The confirm button's text ("Compare", "Save Report").
  QString prompt;
  /// The folder it opens in.
  std::filesystem::path folder;
  /// The name proposed for a file to save.
  QString proposedName;
  /// The only content types offered ("text/plain"); none: any file.
  QStringList mimeTypes;
};

/// Called once with the chosen location, or with nothing when the user cancelled.
using FileChosen = std::function<void(std::optional<std::filesystem::path>)>;

/// Asks the user for a location as `request` says, over `parent`, and calls `chosen` once,
/// later or at once, with the answer (never once `parent` is gone). The window's dialogs go
/// through one of these, so tests can answer them without a modal dialog.
using FileChooser =
    std::function<void(const FileRequest& request, QWidget* parent, FileChosen chosen)>;

/// Qt's file dialog, window-modal over `parent` (the desktop's own dialog where there is one).
void chooseWithFileDialog(const FileRequest& request, QWidget* parent, FileChosen chosen);

}  // namespace lumenscribe::app
