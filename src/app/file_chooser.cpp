// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/file_chooser.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

namespace lumenscribe::app {

void chooseWithFileDialog(const FileRequest& request, QWidget* parent, FileChosen chosen) {
  auto* dialog = new QFileDialog(parent, request.title);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setLabelText(QFileDialog::Accept, request.prompt);
  if (!request.folder.empty()) dialog->setDirectory(QFile::decodeName(request.folder.c_str()));
  if (request.mode == FileRequest::Mode::saveFile) {
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    // New folders may be made from the dialog; replacing a file is asked about by the dialog.
    if (!request.mimeTypes.isEmpty()) dialog->setMimeTypeFilters(request.mimeTypes);
    dialog->selectFile(request.proposedName);
    // A name typed without an extension gets the proposed one.
    dialog->setDefaultSuffix(QFileInfo(request.proposedName).suffix());
  } else {
    dialog->setAcceptMode(QFileDialog::AcceptOpen);
    dialog->setFileMode(QFileDialog::ExistingFile);
  }
  // The dialog is the callback's context: it is deleted with the window, and the callback
  // with it.
  QObject::connect(
      dialog, &QDialog::finished, dialog, [dialog, chosen = std::move(chosen)](int answer) {
        const QStringList files = dialog->selectedFiles();
        if (answer != QDialog::Accepted || files.isEmpty() || files.front().isEmpty()) {
          chosen(std::nullopt);
          return;
        }
        chosen(std::filesystem::path(QFile::encodeName(files.front()).toStdString()));
      });
  dialog->open();
}

}  // namespace lumenscribe::app
