// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

#include "platform/file_descriptor.h"

extern char** environ;

namespace lumenscribe::platform {

namespace {

struct SpawnActions {
  posix_spawn_file_actions_t actions;
  bool ready = posix_spawn_file_actions_init(&actions) == 0;
  ~SpawnActions() {
    if (ready) posix_spawn_file_actions_destroy(&actions);
  }
};

struct SpawnAttributes {
  posix_spawnattr_t attributes;
  bool ready = posix_spawnattr_init(&attributes) == 0;
  ~SpawnAttributes() {
    if (ready) posix_spawnattr_destroy(&attributes);
  }
};

// Reaps the child on every path, so that an early return never leaves a zombie.
class ChildProcess {
 public:
  explicit ChildProcess(pid_t pid) : pid_(pid) {}
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;
  ~ChildProcess() {
    if (pid_ > 0) {
      ::kill(pid_, SIGKILL);
      wait();
    }
  }

  // The wait status, or nothing when waitpid failed.
  std::optional<int> wait() {
    int status = 0;
    pid_t waited;
    do {
      waited = ::waitpid(pid_, &status, 0);
    } while (waited < 0 && errno == EINTR);
    pid_ = -1;
    if (waited < 0) return std::nullopt;
    return status;
  }

 private:
  pid_t pid_;
};

// Reads the pipe to its end, keeping at most `cap` bytes.
void drain(int fd, std::size_t cap, ChildResult& result) {
  char buffer[65536];
  pollfd watched{fd, POLLIN, 0};
  for (;;) {
    const int ready = ::poll(&watched, 1, -1);
    if (ready < 0) {
      if (errno == EINTR) continue;
      return;
    }
    const ssize_t count = ::read(fd, buffer, sizeof buffer);
    if (count < 0) {
      if (errno == EINTR || errno == EAGAIN) continue;
      return;
    }
    if (count == 0) return;  // every writer has closed its end: the child is done writing
    const std::size_t room = cap - std::min(cap, result.output.size());
    const std::size_t kept = std::min(room, static_cast<std::size_t>(count));
    result.output.append(buffer, kept);
    if (kept < static_cast<std::size_t>(count)) result.outputTruncated = true;
  }
}

}  // namespace

std::optional<ChildResult> runChildProcess(const std::filesystem::path& executable,
                                           const std::vector<std::string>& arguments,
                                           ChildOutput mode, std::size_t outputCap) {
  if (!executable.is_absolute()) return std::nullopt;

  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return std::nullopt;
  UniqueFd readEnd(ends[0]);
  UniqueFd writeEnd(ends[1]);

  SpawnActions files;
  SpawnAttributes attributes;
  if (!files.ready || !attributes.ready) return std::nullopt;
  auto* actions = &files.actions;
  if (posix_spawn_file_actions_addopen(actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0) != 0 ||
      posix_spawn_file_actions_adddup2(actions, writeEnd.get(), STDOUT_FILENO) != 0) {
    return std::nullopt;
  }
  if (mode == ChildOutput::merged) {
    if (posix_spawn_file_actions_adddup2(actions, writeEnd.get(), STDERR_FILENO) != 0) {
      return std::nullopt;
    }
  } else if (posix_spawn_file_actions_addopen(actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0) !=
             0) {
    return std::nullopt;
  }
  // A session of its own: no controlling terminal, so a password prompt on /dev/tty fails
  // at once instead of waiting for a user who is not looking at a terminal.
  if (posix_spawnattr_setflags(&attributes.attributes, POSIX_SPAWN_SETSID) != 0) {
    return std::nullopt;
  }

  std::vector<char*> argv;
  std::string program = executable.string();
  argv.push_back(program.data());
  std::vector<std::string> copies(arguments);
  for (auto& argument : copies) argv.push_back(argument.data());
  argv.push_back(nullptr);

  pid_t pid = 0;
  if (posix_spawn(&pid, program.c_str(), actions, &attributes.attributes, argv.data(), environ) !=
      0) {
    return std::nullopt;
  }
  ChildProcess child(pid);
  writeEnd = UniqueFd();  // only the child writes now; its exit closes the pipe

  ChildResult result;
  drain(readEnd.get(), outputCap, result);
  // Closed before waiting: should draining have stopped early, a child still writing gets
  // SIGPIPE instead of blocking on a full pipe while we wait for it.
  readEnd = UniqueFd();
  const auto status = child.wait();
  if (!status) return std::nullopt;
  if (WIFEXITED(*status)) result.exitStatus = WEXITSTATUS(*status);
  return result;
}

}  // namespace lumenscribe::platform
