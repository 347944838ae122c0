// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/mime_database.h"

#include <QByteArray>
#include <QFile>
#include <QMimeDatabase>
#include <QMimeType>
#include <QString>

#include "core/path_text.h"
#include "platform/file_descriptor.h"

namespace lumenscribe::platform {

namespace {

std::optional<ContentType> toContentType(const QMimeType& type) {
  // The database answers "application/octet-stream" when it knows nothing.
  if (!type.isValid() || type.isDefault()) return std::nullopt;
  std::vector<std::string> ancestors;
  for (const QString& name : type.allAncestors()) ancestors.push_back(name.toStdString());
  const QString comment = type.comment();
  return ContentType(type.name().toStdString(),
                     comment.isEmpty() ? std::nullopt : std::optional(comment.toStdString()),
                     std::move(ancestors));
}

QString qtFileName(const std::filesystem::path& path) {
  // The file name's bytes as Qt decodes names, so that globs see what a file manager sees.
  return QFile::decodeName(QByteArray::fromStdString(lastPathComponent(path)));
}

}  // namespace

std::optional<ContentType> contentTypeForFile(const std::filesystem::path& path) {
  QMimeDatabase database;
  // The content is read through our own descriptor (O_NOATIME) and only when the name
  // alone does not decide the type.
  QFile file;
  UniqueFd fd = openForReading(path);
  if (!fd || !file.open(fd.get(), QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) {
    return toContentType(database.mimeTypeForFile(qtFileName(path), QMimeDatabase::MatchExtension));
  }
  return toContentType(database.mimeTypeForFileNameAndData(qtFileName(path), &file));
}

ContentType directoryContentType() {
  QMimeDatabase database;
  if (auto type = toContentType(database.mimeTypeForName(QStringLiteral("inode/directory")))) {
    return *type;
  }
  return ContentType("inode/directory", "folder");
}

std::optional<ContentType> contentTypeForExtension(std::string_view extension) {
  if (extension.empty()) return std::nullopt;
  QMimeDatabase database;
  const QString name =
      QStringLiteral("x.") +
      QString::fromUtf8(extension.data(), static_cast<qsizetype>(extension.size()));
  return toContentType(database.mimeTypeForFile(name, QMimeDatabase::MatchExtension));
}

std::optional<ContentType> contentTypeForData(std::span<const std::byte> bytes) {
  QMimeDatabase database;
  return toContentType(database.mimeTypeForData(QByteArray::fromRawData(
      reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size()))));
}

std::optional<ContentType> contentTypeForName(std::string_view identifier) {
  QMimeDatabase database;
  return toContentType(database.mimeTypeForName(
      QString::fromUtf8(identifier.data(), static_cast<qsizetype>(identifier.size()))));
}

}  // namespace lumenscribe::platform
