// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace lumenscribe::platform {

/// Incremental SHA-256 (OpenSSL EVP, which uses the CPU's SHA extensions when present).
class Sha256 {
 public:
  using Digest = std::array<std::uint8_t, 32>;

  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  /// False when the library refused to start a digest; update and finish then fail too.
  bool valid() const { return context_ != nullptr; }
  bool update(std::span<const std::byte> bytes);
  /// The digest; nothing when the library failed at any step.
  std::optional<Digest> finish();

 private:
  struct ContextDeleter {
    void operator()(void* context) const noexcept;
  };
  std::unique_ptr<void, ContextDeleter> context_;
  bool failed_ = false;
};

}  // namespace lumenscribe::platform
