// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "lumenscribe/expected.h"

namespace lumenscribe::platform {

/// A started child process. Destroying it kills (SIGKILL) and reaps a child that has not
/// been waited for, so that no early return leaves a process running or a zombie behind.
class ChildProcess {
 public:
  ChildProcess() = default;
  explicit ChildProcess(pid_t pid) : pid_(pid) {}
  ChildProcess(ChildProcess&& other) noexcept : pid_(other.pid_) { other.pid_ = -1; }
  ChildProcess& operator=(ChildProcess&& other) noexcept;
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess();

  pid_t pid() const { return pid_; }
  explicit operator bool() const { return pid_ > 0; }

  /// Waits for the child to end; its wait status, or nothing when waitpid failed.
  std::optional<int> wait();
  /// Kills the child and waits for it.
  void kill();

 private:
  pid_t pid_ = -1;
};

/// A descriptor of ours that the child gets under another number.
struct InheritedDescriptor {
  int ours;
  int theirs;
};

/// Starts `executable` (an absolute path; no shell, no PATH search) with `arguments`, stdin
/// from /dev/null, stdout and stderr onto `stdoutFd` and `stderrFd` (-1: /dev/null), the
/// `inherited` descriptors under their numbers, and in a session of its own without a
/// controlling terminal (so a tool that prompts on /dev/tty fails instead of waiting).
/// Nothing when the child cannot be started; errno then says why.
std::optional<ChildProcess> spawnChild(const std::filesystem::path& executable,
                                       const std::vector<std::string>& arguments, int stdoutFd,
                                       int stderrFd,
                                       std::span<const InheritedDescriptor> inherited = {});

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
  /// True when a stop request killed the child before it finished.
  bool stopped = false;
};

/// Runs a child as spawnChild does and waits for it, collecting its output. The pipe is
/// drained with poll while it runs, so a child with megabytes of output never blocks; output
/// past `outputCap` bytes is read and dropped. Nothing when the child cannot be started.
std::optional<ChildResult> runChildProcess(const std::filesystem::path& executable,
                                           const std::vector<std::string>& arguments,
                                           ChildOutput mode = ChildOutput::merged,
                                           std::size_t outputCap = 64 * 1024 * 1024,
                                           std::span<const InheritedDescriptor> inherited = {});

/// Runs a child as runChildProcess does, but hands its output to `onOutput` piece by piece
/// as it arrives instead of keeping it (the result's `output` stays empty), so that output
/// of any length is read in bounded memory while the child runs. Pieces come in batches a
/// few milliseconds apart, so that a child writing line by line does not wake the reader for
/// every line. A stop requested through `stop` kills the child at once (within a tenth of a
/// second). Fails with the error that kept the child from starting.
Expected<ChildResult> streamChildProcess(const std::filesystem::path& executable,
                                         const std::vector<std::string>& arguments,
                                         ChildOutput mode,
                                         const std::function<void(std::string_view)>& onOutput,
                                         std::span<const InheritedDescriptor> inherited = {},
                                         std::stop_token stop = {});

}  // namespace lumenscribe::platform
