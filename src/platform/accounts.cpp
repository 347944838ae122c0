// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/accounts.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace lumenscribe::platform {

namespace {

// The reentrant lookups want a caller's buffer; grow it while they answer ERANGE (a group
// with many members can need more than sysconf suggests).
template <class Entry, class Lookup>
std::optional<std::string> lookUpName(int sizeHint, Lookup lookup, char* Entry::*name) {
  const long suggested = ::sysconf(sizeHint);
  std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 4096);
  for (int attempt = 0; attempt < 8; ++attempt) {
    Entry entry{};
    Entry* found = nullptr;
    const int error = lookup(&entry, buffer.data(), buffer.size(), &found);
    if (error == ERANGE) {
      buffer.resize(buffer.size() * 4);
      continue;
    }
    if (error != 0 || found == nullptr || found->*name == nullptr) return std::nullopt;
    return std::string(found->*name);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> userName(uid_t uid) {
  return lookUpName<passwd>(
      _SC_GETPW_R_SIZE_MAX,
      [uid](passwd* entry, char* buffer, std::size_t size, passwd** found) {
        return ::getpwuid_r(uid, entry, buffer, size, found);
      },
      &passwd::pw_name);
}

std::optional<std::string> groupName(gid_t gid) {
  return lookUpName<group>(
      _SC_GETGR_R_SIZE_MAX,
      [gid](group* entry, char* buffer, std::size_t size, group** found) {
        return ::getgrgid_r(gid, entry, buffer, size, found);
      },
      &group::gr_name);
}

}  // namespace lumenscribe::platform
