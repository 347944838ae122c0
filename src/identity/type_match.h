// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "core/content_type.h"
#include "identity/content_signature.h"

namespace lumenscribe {

/// What a name claims: every type the MIME database's globs give it, the one Qt would pick
/// first, and whether its extension is also used for text the database does not list.
struct NameClaim {
  std::vector<ContentType> types;
  /// The type a file manager shows for the name alone; nothing when the name claims nothing.
  std::optional<ContentType> primary;
  bool mayBeText = false;
};

/// The claim of a file name (its last component); no claim for a name without an extension
/// or one that the database knows only as a folder type.
NameClaim claimOfName(std::string_view fileName);

/// Whether content with this signature may honestly carry a name of type `claimed`:
///  - a program fits only a program's name, and a binary one no text name;
///  - text fits any name of a text-based format, also one the database files elsewhere;
///  - otherwise types related by inheritance or a common container family fit, and so
///    does any type of the same category, except that two unrelated image or audio types
///    never fit each other (a JPEG named .png).
bool contentFitsType(const ContentSignature& content, const ContentType& claimed);

/// Whether the content fits at least one of the name's types.
bool contentFitsName(const ContentSignature& content, const NameClaim& claim);

}  // namespace lumenscribe
