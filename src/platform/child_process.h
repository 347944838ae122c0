// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace lumenscribe::platform {

enum class ChildOutput {
  merged,      // stdout and stderr into one pipe, in the order the child wrote them
  stdoutOnly,  // stdout kept, stderr discarded
};

struct ChildResult {
  /// The exit status when the child exited normally; nothing when a signal ended it.
  std::optional<int> exitStatus;
  std::string output;
  /// True when the output went past the cap and the rest was read and dropped.
  bool outputTruncated = false;
};

/// Runs `executable` (an absolute path; no shell, no PATH search) with `arguments`, stdin
/// from /dev/null, in a session of its own without a controlling terminal (so a tool that
/// prompts on /dev/tty fails instead of waiting), and waits for it. The pipes are drained
/// with poll while it runs, so a child with megabytes of output never blocks; output past
/// `outputCap` bytes is read and dropped. Nothing when the child cannot be started.
std::optional<ChildResult> runChildProcess(const std::filesystem::path& executable,
                                           const std::vector<std::string>& arguments,
                                           ChildOutput mode = ChildOutput::merged,
                                           std::size_t outputCap = 64 * 1024 * 1024);

}  // namespace lumenscribe::platform
