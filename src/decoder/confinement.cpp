// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "decoder/confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_descriptor.h"

namespace lumenscribe::decoder {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kAddressSanitizer = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kAddressSanitizer = true;
#else
constexpr bool kAddressSanitizer = false;
#endif
#else
constexpr bool kAddressSanitizer = false;
#endif

// Enough for a 100-megapixel image in flight; a decode that wants more is stopped.
constexpr rlim_t kAddressSpace = rlim_t{4} << 30;
constexpr rlim_t kOpenFiles = 64;

bool setLimit(int resource, rlim_t value) {
  const rlimit limit{value, value};
  return ::setrlimit(resource, &limit) == 0;
}

bool applyLimits() {
  bool ok = setLimit(RLIMIT_FSIZE, 0);  // no file grows by a byte
  ok = setLimit(RLIMIT_CORE, 0) && ok;  // a crash leaves nothing behind
  ok = setLimit(RLIMIT_NOFILE, kOpenFiles) && ok;
  // AddressSanitizer reserves terabytes of shadow memory up front; its own checks stand in.
  if (!kAddressSanitizer) ok = setLimit(RLIMIT_AS, kAddressSpace) && ok;
  return ok;
}

// ---- Landlock ------------------------------------------------------------------------

#ifndef LANDLOCK_ACCESS_FS_TRUNCATE
#define LANDLOCK_ACCESS_FS_TRUNCATE (1ULL << 14)
#endif

constexpr std::uint64_t kReadAccess = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;

// Where the libraries may read: their own code and data, the loader's cache, the processor
// count their thread pools size themselves by, and the fonts that poppler renders with
// (fontconfig's configuration and caches).
std::vector<std::string> readableFolders() {
  std::vector<std::string> folders = {"/usr", "/etc/ld.so.cache", "/sys/devices/system/cpu",
                                      "/etc/fonts", "/var/cache/fontconfig"};
  if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && *cache == '/') {
    folders.push_back(std::string(cache) + "/fontconfig");
  }
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') {
    folders.push_back(std::string(home) + "/.cache/fontconfig");
  }
  return folders;
}

bool applyLandlock() {
  const long abi =
      ::syscall(__NR_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (abi < 1) return false;  // not built into this kernel, or switched off
  std::uint64_t handled = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1) - 1;  // every right of ABI 1
  if (abi >= 2) handled |= LANDLOCK_ACCESS_FS_REFER;
  if (abi >= 3) handled |= LANDLOCK_ACCESS_FS_TRUNCATE;

  landlock_ruleset_attr attributes{};
  attributes.handled_access_fs = handled;
  const platform::UniqueFd ruleset(
      static_cast<int>(::syscall(__NR_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
  if (!ruleset) return false;
  for (const std::string& folder : readableFolders()) {
    const platform::UniqueFd beneath(::open(folder.c_str(), O_PATH | O_CLOEXEC));
    struct stat status {};
    if (!beneath || ::fstat(beneath.get(), &status) != 0) continue;  // not on this system
    landlock_path_beneath_attr rule{};
    // A file may be granted only what applies to files.
    rule.allowed_access = S_ISDIR(status.st_mode) ? kReadAccess : LANDLOCK_ACCESS_FS_READ_FILE;
    rule.parent_fd = beneath.get();
    if (::syscall(__NR_landlock_add_rule, ruleset.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) !=
        0) {
      return false;
    }
  }
  return ::syscall(__NR_landlock_restrict_self, ruleset.get(), 0) == 0;
}

// ---- seccomp -------------------------------------------------------------------------

struct FilterRelease {
  void operator()(void* filter) const noexcept { seccomp_release(filter); }
};

// What decoding needs: reading, memory, threads, time and the socket it was given. Names
// this architecture lacks are skipped.
constexpr std::array kAllowed = {
    "read",
    "readv",
    "pread64",
    "preadv",
    "preadv2",
    "write",
    "writev",
    "lseek",
    "close",
    "close_range",
    "fstat",
    "newfstatat",
    "stat",
    "lstat",
    "statx",
    "fstatfs",
    "statfs",
    "getdents64",
    "getdents",
    "readlink",
    "readlinkat",
    "access",
    "faccessat",
    "faccessat2",
    "getcwd",
    "fcntl",
    "dup",
    "dup2",
    "dup3",
    "pipe2",
    "eventfd2",
    "poll",
    "ppoll",
    "select",
    "pselect6",
    "epoll_create1",
    "epoll_ctl",
    "epoll_wait",
    "epoll_pwait",
    "mmap",
    "munmap",
    "mremap",
    "mprotect",
    "madvise",
    "brk",
    "mincore",
    "futex",
    "futex_waitv",
    "set_robust_list",
    "get_robust_list",
    "rseq",
    "set_tid_address",
    "membarrier",
    "sched_yield",
    "sched_getaffinity",
    "sched_getparam",
    "sched_getscheduler",
    "sched_get_priority_max",
    "sched_get_priority_min",
    "getpriority",
    "rt_sigaction",
    "rt_sigprocmask",
    "rt_sigreturn",
    "sigaltstack",
    "restart_syscall",
    "exit",
    "exit_group",
    "getpid",
    "getppid",
    "gettid",
    "getuid",
    "geteuid",
    "getgid",
    "getegid",
    "getresuid",
    "getresgid",
    "getgroups",
    "clock_gettime",
    "clock_getres",
    "clock_nanosleep",
    "gettimeofday",
    "time",
    "nanosleep",
    "getrandom",
    "getrusage",
    "times",
    "sysinfo",
    "uname",
    "recvmsg",
    "sendmsg",
    "recvfrom",
    "sendto",
    "shutdown",
    "arch_prctl",
    "fadvise64",
    "getrlimit",
    "umask",
    "getcpu",
};

// One condition on argument `index`; spelled out because libseccomp's SCMP_A* macros leave a
// field to its default, which some compilers warn about.
constexpr scmp_arg_cmp argument(unsigned index, scmp_compare op, scmp_datum_t value,
                                scmp_datum_t other = 0) {
  return scmp_arg_cmp{index, op, value, other};
}

bool allow(scmp_filter_ctx filter, const char* name, std::initializer_list<scmp_arg_cmp> args) {
  const int number = seccomp_syscall_resolve_name(name);
  if (number == __NR_SCMP_ERROR) return true;
  return seccomp_rule_add_array(filter, SCMP_ACT_ALLOW, number, static_cast<unsigned>(args.size()),
                                args.begin()) == 0;
}

bool answer(scmp_filter_ctx filter, const char* name, int error) {
  const int number = seccomp_syscall_resolve_name(name);
  if (number == __NR_SCMP_ERROR) return true;
  return seccomp_rule_add(filter, SCMP_ACT_ERRNO(static_cast<std::uint16_t>(error)), number, 0) ==
         0;
}

bool applySeccomp() {
  // Everything not allowed below fails with EPERM rather than killing the worker: a library
  // that probes for a feature carries on without it.
  const std::unique_ptr<void, FilterRelease> filter(seccomp_init(SCMP_ACT_ERRNO(EPERM)));
  if (!filter) return false;
  scmp_filter_ctx f = filter.get();
  // Threads started by the libraries before this point must be shut in too.
  if (seccomp_attr_set(f, SCMP_FLTATR_CTL_TSYNC, 1) != 0) return false;

  bool ok = true;
  for (const char* name : kAllowed) ok = allow(f, name, {}) && ok;

  constexpr scmp_datum_t writeFlags = O_WRONLY | O_RDWR | O_CREAT | O_TRUNC | O_APPEND;
  ok = allow(f, "openat", {argument(2, SCMP_CMP_MASKED_EQ, writeFlags, 0)}) && ok;
  ok = allow(f, "open", {argument(1, SCMP_CMP_MASKED_EQ, writeFlags, 0)}) && ok;
  // glibc falls back to openat and to clone (whose flags a filter can see) on ENOSYS.
  ok = answer(f, "openat2", ENOSYS) && ok;
  ok = answer(f, "clone3", ENOSYS) && ok;
  ok = allow(f, "clone", {argument(0, SCMP_CMP_MASKED_EQ, CLONE_THREAD, CLONE_THREAD)}) && ok;

  // Signals to itself only: abort() and a thread's own signals still work.
  const auto self = static_cast<scmp_datum_t>(::getpid());
  for (const char* name : {"kill", "tgkill", "rt_sigqueueinfo", "rt_tgsigqueueinfo"}) {
    ok = allow(f, name, {argument(0, SCMP_CMP_EQ, self)}) && ok;
  }
  // Limits may be read; only the processor-time budget may change (see limitProcessorTime).
  ok = allow(f, "prlimit64", {argument(0, SCMP_CMP_EQ, 0), argument(2, SCMP_CMP_EQ, 0)}) && ok;
  ok = allow(f, "prlimit64", {argument(0, SCMP_CMP_EQ, 0), argument(1, SCMP_CMP_EQ, RLIMIT_CPU)}) &&
       ok;
  ok = allow(f, "setrlimit", {argument(0, SCMP_CMP_EQ, RLIMIT_CPU)}) && ok;
  for (const unsigned long request : {TCGETS, FIONREAD, FIONBIO, FIOCLEX}) {
    ok = allow(f, "ioctl", {argument(1, SCMP_CMP_EQ, request)}) && ok;
  }
  for (const int option : {PR_SET_NAME, PR_GET_NAME, PR_GET_DUMPABLE}) {
    ok = allow(f, "prctl", {argument(0, SCMP_CMP_EQ, static_cast<scmp_datum_t>(option))}) && ok;
  }
  return ok && seccomp_load(f) == 0;
}

}  // namespace

void confineFileSystem(platform::decoder::Confinement& confinement) {
  confinement.limits = applyLimits();
  confinement.noNewPrivileges = ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
  if (confinement.noNewPrivileges) confinement.landlock = applyLandlock();
}

void filterSystemCalls(platform::decoder::Confinement& confinement) {
  confinement.seccomp = confinement.noNewPrivileges && applySeccomp();
}

void limitProcessorTime(int seconds) {
  rusage usage{};
  rlimit limit{};
  if (::getrusage(RUSAGE_SELF, &usage) != 0 || ::getrlimit(RLIMIT_CPU, &limit) != 0) return;
  const rlim_t used = static_cast<rlim_t>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) + 1;
  limit.rlim_cur = used + static_cast<rlim_t>(seconds);
  if (limit.rlim_max != RLIM_INFINITY && limit.rlim_cur > limit.rlim_max) {
    limit.rlim_cur = limit.rlim_max;
  }
  ::setrlimit(RLIMIT_CPU, &limit);
}

}  // namespace lumenscribe::decoder
