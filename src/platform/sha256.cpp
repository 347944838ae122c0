// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/sha256.h"

#include <openssl/evp.h>

namespace lumenscribe::platform {

void Sha256::ContextDeleter::operator()(void* context) const noexcept {
  EVP_MD_CTX_free(static_cast<EVP_MD_CTX*>(context));
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
  if (context_ &&
      EVP_DigestInit_ex(static_cast<EVP_MD_CTX*>(context_.get()), EVP_sha256(), nullptr) != 1) {
    context_.reset();
  }
}

Sha256::~Sha256() = default;

bool Sha256::update(std::span<const std::byte> bytes) {
  if (!context_ || failed_) return false;
  if (EVP_DigestUpdate(static_cast<EVP_MD_CTX*>(context_.get()), bytes.data(), bytes.size()) != 1) {
    failed_ = true;
  }
  return !failed_;
}

std::optional<Sha256::Digest> Sha256::finish() {
  if (!context_ || failed_) return std::nullopt;
  Digest digest{};
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(static_cast<EVP_MD_CTX*>(context_.get()), digest.data(), &length) != 1 ||
      length != digest.size()) {
    failed_ = true;
    return std::nullopt;
  }
  failed_ = true;  // a finished context takes no more input
  return digest;
}

}  // namespace lumenscribe::platform
