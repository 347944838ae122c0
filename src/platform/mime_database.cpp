// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/mime_database.h"

#include <QByteArray>
#include <QFile>
#include <QMimeDatabase>
#include <QMimeType>
#include <QString>

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

QString qtFileName(std::string_view name) {
  // The file name's bytes as Qt decodes names, so that globs see what a file manager sees.
  return QFile::decodeName(QByteArray(name.data(), static_cast<qsizetype>(name.size())));
}

QByteArray viewOf(std::span<const std::byte> bytes) {
  return QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()),
                                 static_cast<qsizetype>(bytes.size()));
}

}  // namespace

std::optional<ContentType> contentTypeForFile(std::string_view fileName,
                                              std::span<const std::byte> head) {
  QMimeDatabase database;
  return toContentType(database.mimeTypeForFileNameAndData(qtFileName(fileName), viewOf(head)));
}

std::optional<ContentType> contentTypeForFileName(std::string_view fileName) {
  QMimeDatabase database;
  return toContentType(
      database.mimeTypeForFile(qtFileName(fileName), QMimeDatabase::MatchExtension));
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

std::vector<ContentType> contentTypesForFileName(std::string_view fileName) {
  QMimeDatabase database;
  std::vector<ContentType> types;
  for (const QMimeType& type : database.mimeTypesForFileName(qtFileName(fileName))) {
    if (auto known = toContentType(type)) types.push_back(std::move(*known));
  }
  return types;
}

std::optional<ContentType> contentTypeForData(std::span<const std::byte> bytes) {
  QMimeDatabase database;
  return toContentType(database.mimeTypeForData(viewOf(bytes)));
}

std::optional<ContentType> contentTypeForName(std::string_view identifier) {
  QMimeDatabase database;
  return toContentType(database.mimeTypeForName(
      QString::fromUtf8(identifier.data(), static_cast<qsizetype>(identifier.size()))));
}

std::optional<std::string> preferredExtension(std::string_view identifier) {
  QMimeDatabase database;
  const QMimeType type = database.mimeTypeForName(
      QString::fromUtf8(identifier.data(), static_cast<qsizetype>(identifier.size())));
  const QString suffix = type.isValid() ? type.preferredSuffix() : QString();
  if (suffix.isEmpty()) return std::nullopt;
  return suffix.toStdString();
}

}  // namespace lumenscribe::platform
