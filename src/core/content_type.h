// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumenscribe {

/// The abstract types that analyzers dispatch on. On Linux a content type is a MIME type;
/// these are the families that the desktop's type tree does not name by itself.
enum class AbstractType {
  data,                // every type but inode/*
  image,               // image/*
  pdf,                 // application/pdf
  audio,               // audio/*
  movie,               // video/* and the few video containers filed under application/
  video,               // same family as movie on Linux
  audiovisualContent,  // same family as movie on Linux
  archive,             // zip, tar, gzip, 7z, rar, ... and what inherits them
  text,                // text/plain and everything that inherits it
  plainText,           // text/plain exactly
  sourceCode,          // program sources
};

/// A content type: a MIME type name, its description and the names of all its ancestors.
/// Conformance is reflexive and transitive, like a type tree should be.
class ContentType {
 public:
  ContentType(std::string identifier, std::optional<std::string> localizedDescription,
              std::vector<std::string> ancestors = {});

  /// "image/jpeg".
  const std::string& identifier() const { return identifier_; }
  /// "JPEG image"; absent when the database has no comment for the type.
  const std::optional<std::string>& localizedDescription() const { return description_; }
  /// The description, or the identifier when there is none.
  const std::string& describe() const { return description_ ? *description_ : identifier_; }
  const std::vector<std::string>& ancestors() const { return ancestors_; }

  bool conformsTo(std::string_view identifier) const;
  bool conformsTo(AbstractType type) const;

  friend bool operator==(const ContentType&, const ContentType&) = default;

 private:
  std::string identifier_;
  std::optional<std::string> description_;
  std::vector<std::string> ancestors_;
};

}  // namespace lumenscribe
