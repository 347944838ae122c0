// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "core/metadata_value.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>

namespace lumenscribe {

namespace {

// Trailing zeros go first, then a point left bare: "2.8000" -> "2.8", "0.0000" -> "0". A
// negative number too small for the decimals keeps its sign ("-0.0000" -> "-0").
std::string trimmedFixed(double number, int decimals) {
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*f", decimals, number);
  std::string text(buffer);
  if (text.find('.') != std::string::npos) {
    while (!text.empty() && text.back() == '0') text.pop_back();
    if (!text.empty() && text.back() == '.') text.pop_back();
  }
  return text;
}

// Integral values as integers, others with `decimals` places, trimmed.
std::string numberText(double number, int decimals) {
  if (std::isnan(number)) return "nan";
  if (std::isinf(number)) return number > 0 ? "inf" : "-inf";
  if (std::round(number) == number) {
    // Past the 64-bit range there is no integer to print; %.0f still writes every digit.
    if (number >= -9.2e18 && number <= 9.2e18) {
      return std::to_string(static_cast<std::int64_t>(number));
    }
    return trimmedFixed(number, 0);
  }
  return trimmedFixed(number, decimals);
}

// How a date describes itself: "2026-11-22 22:39:28 +0000".
std::string dateDescription(Timestamp date) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm utc{};
  if (!gmtime_r(&seconds, &utc)) return "Unknown date";
  char buffer[64];
  std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S +0000", &utc);
  return buffer;
}

struct TextVisitor {
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(double number) const { return numberText(number, 4); }
  std::string operator()(const MetadataValue::Array& array) const {
    std::string text;
    for (std::size_t i = 0; i < array.size(); ++i) {
      if (i > 0) text += ", ";
      text += metadataValueText(array[i]);
    }
    return text;
  }
  std::string operator()(const MetadataValue::Map& map) const {
    std::string text = "{";
    bool first = true;
    for (const auto& [key, value] : map) {
      if (!first) text += ", ";
      first = false;
      text += key + ": " + metadataValueText(value);
    }
    return text + "}";
  }
  std::string operator()(Timestamp date) const { return dateDescription(date); }
  std::string operator()(const MetadataValue::Other& other) const { return other.description; }
};

}  // namespace

std::string metadataValueText(const MetadataValue& value) {
  return std::visit(TextVisitor{}, value.variant());
}

std::string compactNumberText(double number) { return numberText(number, 2); }

std::optional<double> metadataDouble(const MetadataValue& value) {
  if (const auto* number = value.get<double>()) return *number;
  if (const auto* number = value.get<std::int64_t>()) return static_cast<double>(*number);
  if (const auto* text = value.get<std::string>()) {
    std::string_view digits = *text;
    // from_chars takes a "-" but not a "+"; one sign at most either way ("+-2" is no number).
    if (digits.starts_with('+') && !digits.substr(1).starts_with('-')) digits.remove_prefix(1);
    double parsed = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), parsed);
    if (digits.empty() || error != std::errc{} || end != digits.data() + digits.size()) {
      return std::nullopt;
    }
    return parsed;
  }
  return std::nullopt;
}

std::optional<std::int64_t> metadataInt(const MetadataValue& value) {
  if (const auto* number = value.get<std::int64_t>()) return *number;
  if (const auto* number = value.get<double>()) {
    const double truncated = std::trunc(*number);
    // 2^63 is exactly representable; anything at or past it does not fit.
    if (!std::isfinite(truncated) || truncated >= 9223372036854775808.0 ||
        truncated < -9223372036854775808.0) {
      return std::nullopt;
    }
    return static_cast<std::int64_t>(truncated);
  }
  if (const auto* text = value.get<std::string>()) {
    std::string_view digits = *text;
    bool negative = false;
    if (!digits.empty() && (digits.front() == '+' || digits.front() == '-')) {
      negative = digits.front() == '-';
      digits.remove_prefix(1);
    }
    if (digits.empty()) return std::nullopt;
    // Accumulate downwards so that the most negative value still fits.
    std::int64_t result = 0;
    for (char c : digits) {
      if (c < '0' || c > '9') return std::nullopt;
      const int digit = c - '0';
      if (result < (std::numeric_limits<std::int64_t>::min() + digit) / 10) return std::nullopt;
      result = result * 10 - digit;
    }
    if (!negative) {
      if (result == std::numeric_limits<std::int64_t>::min()) return std::nullopt;
      result = -result;
    }
    return result;
  }
  return std::nullopt;
}

void appendRowIfNew(std::vector<InsightRow>& rows, std::string label, std::string value) {
  for (const auto& row : rows) {
    if (row.label == label && row.value == value) return;
  }
  rows.emplace_back(std::move(label), std::move(value));
}

std::string durationText(double seconds) {
  // Past the 64-bit range there are no whole seconds to count.
  if (!std::isfinite(seconds) || seconds < 0 || seconds >= 9.2e18) return "Unknown";
  const auto total = static_cast<long long>(std::round(seconds));
  char buffer[64];
  if (total < 3600) {
    std::snprintf(buffer, sizeof buffer, "%lld:%02lld", total / 60, total % 60);
  } else {
    std::snprintf(buffer, sizeof buffer, "%lld:%02lld:%02lld", total / 3600, total / 60 % 60,
                  total % 60);
  }
  return buffer;
}

std::string fourCharCodeText(std::uint32_t code) {
  std::string text;
  for (int shift = 24; shift >= 0; shift -= 8) {
    const auto byte = static_cast<unsigned char>((code >> shift) & 0xFF);
    if (byte < 0x20 || byte > 0x7E) return std::to_string(code);
    text.push_back(static_cast<char>(byte));
  }
  return text;
}

}  // namespace lumenscribe
