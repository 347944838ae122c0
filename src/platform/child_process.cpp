// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

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

// Reads the pipe to its end, handing every piece to `sink`. With `batching`, each time the
// pipe has been emptied it waits that long before looking again: a child that writes line by
// line (unzip -l makes three writes per entry) then fills the pipe for one wake-up instead of
// waking us for every write, which costs it more than the writing. False when a stop
// request ended it first.
bool drain(int fd, const std::function<void(std::string_view)>& sink, const std::stop_token& stop,
           std::chrono::milliseconds batching = {}) {
  std::vector<char> buffer(batching.count() > 0 ? 256 * 1024 : 64 * 1024);
  pollfd watched{fd, POLLIN, 0};
  // Without a way to be stopped there is no reason to wake up before the child writes.
  const int timeout = stop.stop_possible() ? 100 : -1;
  for (;;) {
    if (stop.stop_requested()) return false;
    const int ready = ::poll(&watched, 1, timeout);
    if (ready == 0) continue;
    if (ready < 0) {
      if (errno == EINTR) continue;
      return true;
    }
    const ssize_t count = ::read(fd, buffer.data(), buffer.size());
    if (count < 0) {
      if (errno == EINTR || errno == EAGAIN) continue;
      return true;
    }
    if (count == 0) return true;  // every writer has closed its end: the child is done writing
    sink(std::string_view(buffer.data(), static_cast<std::size_t>(count)));
    if (batching.count() > 0 && static_cast<std::size_t>(count) < buffer.size()) {
      std::this_thread::sleep_for(batching);
    }
  }
}

// Descriptors below this are moved up before the child's are arranged, so that placing one
// (stdin from /dev/null, say) can never overwrite another that is still to be placed.
constexpr int kFirstFreeDescriptor = 10;

}  // namespace

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept {
  if (this != &other) {
    kill();
    pid_ = other.pid_;
    other.pid_ = -1;
  }
  return *this;
}

ChildProcess::~ChildProcess() { kill(); }

void ChildProcess::kill() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  wait();
}

std::optional<int> ChildProcess::wait() {
  if (pid_ <= 0) return std::nullopt;
  int status = 0;
  pid_t waited;
  do {
    waited = ::waitpid(pid_, &status, 0);
  } while (waited < 0 && errno == EINTR);
  pid_ = -1;
  if (waited < 0) return std::nullopt;
  return status;
}

std::optional<ChildProcess> spawnChild(const std::filesystem::path& executable,
                                       const std::vector<std::string>& arguments, int stdoutFd,
                                       int stderrFd,
                                       std::span<const InheritedDescriptor> inherited) {
  if (!executable.is_absolute()) return std::nullopt;
  std::vector<UniqueFd> lifted;
  const auto lift = [&](int fd) {
    if (fd < 0) return fd;
    lifted.emplace_back(::fcntl(fd, F_DUPFD_CLOEXEC, kFirstFreeDescriptor));
    return lifted.back().get();
  };

  SpawnActions files;
  SpawnAttributes attributes;
  if (!files.ready || !attributes.ready) return std::nullopt;
  auto* actions = &files.actions;
  const auto place = [&](int fd, int target) {
    if (fd < 0) {
      return posix_spawn_file_actions_addopen(actions, target, "/dev/null",
                                              target == STDIN_FILENO ? O_RDONLY : O_WRONLY, 0) == 0;
    }
    return posix_spawn_file_actions_adddup2(actions, fd, target) == 0;
  };
  std::vector<InheritedDescriptor> placed;
  for (const auto& descriptor : inherited)
    placed.push_back({lift(descriptor.ours), descriptor.theirs});
  const int out = lift(stdoutFd);
  const int err = lift(stderrFd);
  if (out == -1 && stdoutFd >= 0) return std::nullopt;
  if (err == -1 && stderrFd >= 0) return std::nullopt;
  if (!place(-1, STDIN_FILENO) || !place(out, STDOUT_FILENO) || !place(err, STDERR_FILENO)) {
    return std::nullopt;
  }
  for (const auto& descriptor : placed) {
    if (descriptor.ours < 0 || !place(descriptor.ours, descriptor.theirs)) return std::nullopt;
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
  if (const int error =
          posix_spawn(&pid, program.c_str(), actions, &attributes.attributes, argv.data(), environ);
      error != 0) {
    errno = error;
    return std::nullopt;
  }
  return ChildProcess(pid);
}

namespace {

Expected<ChildResult> runDrained(const std::filesystem::path& executable,
                                 const std::vector<std::string>& arguments, ChildOutput mode,
                                 const std::function<void(std::string_view)>& onOutput,
                                 std::span<const InheritedDescriptor> inherited,
                                 const std::stop_token& stop, std::chrono::milliseconds batching) {
  const auto lastError = [] { return std::error_code(errno, std::system_category()); };
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return lastError();
  UniqueFd readEnd(ends[0]);
  UniqueFd writeEnd(ends[1]);
  // Room for what the child writes while we wait between batches (the default limit for
  // unprivileged processes; on refusal the pipe keeps its 64 KiB and the child waits more).
  if (batching.count() > 0) ::fcntl(readEnd.get(), F_SETPIPE_SZ, 1024 * 1024);
  auto child = spawnChild(executable, arguments, writeEnd.get(),
                          mode == ChildOutput::merged ? writeEnd.get() : -1, inherited);
  if (!child) return lastError();
  writeEnd = UniqueFd();  // only the child writes now; its exit closes the pipe

  ChildResult result;
  if (!drain(readEnd.get(), onOutput, stop, batching)) {
    child->kill();
    result.stopped = true;
    return result;
  }
  // Closed before waiting: should draining have stopped early, a child still writing gets
  // SIGPIPE instead of blocking on a full pipe while we wait for it.
  readEnd = UniqueFd();
  const auto status = child->wait();
  if (!status) return lastError();
  if (WIFEXITED(*status)) result.exitStatus = WEXITSTATUS(*status);
  return result;
}

}  // namespace

Expected<ChildResult> streamChildProcess(const std::filesystem::path& executable,
                                         const std::vector<std::string>& arguments,
                                         ChildOutput mode,
                                         const std::function<void(std::string_view)>& onOutput,
                                         std::span<const InheritedDescriptor> inherited,
                                         std::stop_token stop) {
  return runDrained(executable, arguments, mode, onOutput, inherited, stop,
                    std::chrono::milliseconds(5));
}

std::optional<ChildResult> runChildProcess(const std::filesystem::path& executable,
                                           const std::vector<std::string>& arguments,
                                           ChildOutput mode, std::size_t outputCap,
                                           std::span<const InheritedDescriptor> inherited) {
  std::string output;
  bool truncated = false;
  // Past the cap the output is read and dropped, so that the child can finish.
  const auto keep = [&](std::string_view piece) {
    const std::size_t room = outputCap - std::min(outputCap, output.size());
    if (piece.size() > room) truncated = true;
    output.append(piece.substr(0, room));
  };
  auto run = runDrained(executable, arguments, mode, keep, inherited, {}, {});
  if (!run) return std::nullopt;
  run->output = std::move(output);
  run->outputTruncated = truncated;
  return std::move(run).value();
}

}  // namespace lumenscribe::platform
