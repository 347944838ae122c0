// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

#include "lumenscribe/expected.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

/// The inspection engine. Stateless: one inspector may serve any number of threads.
///
///     lumenscribe::FileInspector inspector;
///     auto result = inspector.inspect("/home/me/Pictures/IMG_0042.jpg");
///     if (!result) std::cerr << result.error().message() << '\n';
///
/// The item is only read, never written; special files (FIFOs, sockets, devices) are
/// refused from their status alone, before anything opens them.
class FileInspector {
 public:
  /// Fails with the system's error when the item cannot be stat'ed (the message is the
  /// strerror text), or with FileInspectionError::unsupportedFile for anything that is
  /// neither a regular file nor a directory. An analyzer's failure never fails it.
  Expected<LumenscribeResult> inspect(const std::filesystem::path& url) const;
};

}  // namespace lumenscribe
