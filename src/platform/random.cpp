// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/random.h"

#include <openssl/rand.h>

#include <random>

namespace lumenscribe::platform {

void fillRandom(std::span<std::byte> out) {
  if (RAND_bytes(reinterpret_cast<unsigned char*>(out.data()), static_cast<int>(out.size())) == 1) {
    return;
  }
  // OpenSSL's generator failed to seed (no entropy source at all): fall back to the
  // kernel's through random_device rather than hand out zeros.
  std::random_device device;
  for (auto& byte : out) byte = static_cast<std::byte>(device());
}

}  // namespace lumenscribe::platform
