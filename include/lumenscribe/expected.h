// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <system_error>
#include <utility>
#include <variant>

namespace lumenscribe {

/// A value or the error that prevented it (std::expected is C++23).
template <class T>
class Expected {
 public:
  Expected(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Expected(std::error_code error) : state_(std::in_place_index<1>, error) {}

  bool hasValue() const { return state_.index() == 0; }
  explicit operator bool() const { return hasValue(); }

  const T& value() const& { return std::get<0>(state_); }
  T& value() & { return std::get<0>(state_); }
  T&& value() && { return std::get<0>(std::move(state_)); }
  const T& operator*() const& { return value(); }
  T& operator*() & { return value(); }
  const T* operator->() const { return &value(); }
  T* operator->() { return &value(); }

  /// The error; empty (false) when there is a value.
  std::error_code error() const { return hasValue() ? std::error_code{} : std::get<1>(state_); }

 private:
  std::variant<T, std::error_code> state_;
};

}  // namespace lumenscribe
