// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/item_facts.h"
#include "lumenscribe/result.h"

namespace lumenscribe {

/// A value that a decoder left loosely typed: text, integer, floating point, array, map,
/// date, or anything else with a description of its own.
class MetadataValue {
 public:
  using Array = std::vector<MetadataValue>;
  using Map = std::map<std::string, MetadataValue>;
  /// A value of no other kind; `description` is how it reads.
  struct Other {
    std::string description;
    friend bool operator==(const Other&, const Other&) = default;
  };
  using Variant = std::variant<std::string, std::int64_t, double, Array, Map, Timestamp, Other>;

  MetadataValue(std::string text) : value_(std::move(text)) {}
  MetadataValue(const char* text) : value_(std::string(text)) {}
  MetadataValue(std::int64_t number) : value_(number) {}
  MetadataValue(int number) : value_(static_cast<std::int64_t>(number)) {}
  MetadataValue(double number) : value_(number) {}
  MetadataValue(Array array) : value_(std::move(array)) {}
  MetadataValue(Map map) : value_(std::move(map)) {}
  MetadataValue(Timestamp date) : value_(date) {}
  MetadataValue(Other other) : value_(std::move(other)) {}

  const Variant& variant() const { return value_; }
  template <class T>
  const T* get() const {
    return std::get_if<T>(&value_);
  }

  friend bool operator==(const MetadataValue&, const MetadataValue&) = default;

 private:
  Variant value_;
};

/// Display text: text unchanged; integral numbers as integers ("12"); other numbers with
/// four decimals and trailing zeros trimmed ("2.8"); arrays joined by ", ".
std::string metadataValueText(const MetadataValue& value);
/// A number with two decimals at most, trailing zeros trimmed ("0.33", "1.5", "44100").
std::string compactNumberText(double number);
std::optional<double> metadataDouble(const MetadataValue& value);
/// Numbers truncated toward zero; text only when it is an optional sign and digits.
std::optional<std::int64_t> metadataInt(const MetadataValue& value);
/// Appends a row unless one with the same label and value is already there.
void appendRowIfNew(std::vector<InsightRow>& rows, std::string label, std::string value);
/// "m:ss" below an hour, "h:mm:ss" from an hour on; "Unknown" when negative or not finite.
std::string durationText(double seconds);
/// The four ASCII characters of a format code ("lpcm"), or its decimal value.
std::string fourCharCodeText(std::uint32_t code);

}  // namespace lumenscribe
