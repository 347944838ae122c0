// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "identity/formatters.h"

#include <array>
#include <cstdlib>

#include "platform/date_format.h"

namespace lumenscribe {

namespace {

struct Unit {
  const char* name;
  int decimals;
};

constexpr std::array<Unit, 5> kUnits = {{{"KB", 0}, {"MB", 1}, {"GB", 2}, {"TB", 2}, {"PB", 2}}};

constexpr std::int64_t power10(int exponent) {
  std::int64_t value = 1;
  while (exponent-- > 0) value *= 10;
  return value;
}

}  // namespace

std::string byteCountText(std::int64_t bytes) {
  if (bytes == 0) return "Zero KB";
  const bool negative = bytes < 0;
  // Integer arithmetic throughout, so that 999,500 bytes rounds to exactly 1000 KB.
  const unsigned __int128 magnitude =
      negative ? static_cast<unsigned __int128>(-(static_cast<__int128>(bytes)))
               : static_cast<unsigned __int128>(bytes);
  const std::string sign = negative ? "-" : "";
  if (magnitude == 1) return sign + "1 byte";
  if (magnitude < 1000) return sign + std::to_string(static_cast<int>(magnitude)) + " bytes";

  unsigned __int128 divisor = 1000;
  for (std::size_t index = 0; index < kUnits.size(); ++index, divisor *= 1000) {
    const Unit& unit = kUnits[index];
    const auto scale = static_cast<unsigned __int128>(power10(unit.decimals));
    // Half away from zero, on the magnitude.
    const unsigned __int128 scaled = (magnitude * scale + divisor / 2) / divisor;
    if (scaled >= 1000 * scale && index + 1 < kUnits.size()) continue;
    auto whole = static_cast<std::uint64_t>(scaled / scale);
    auto fraction = static_cast<std::uint64_t>(scaled % scale);
    std::string text = sign + std::to_string(whole);
    if (fraction != 0) {
      std::string digits = std::to_string(fraction);
      digits.insert(0, static_cast<std::size_t>(unit.decimals) - digits.size(), '0');
      while (digits.back() == '0') digits.pop_back();
      text += "." + digits;
    }
    return text + " " + unit.name;
  }
  return sign + std::to_string(static_cast<std::uint64_t>(magnitude)) + " bytes";
}

std::string mediumDateText(Timestamp date) { return platform::mediumDateText(date); }

}  // namespace lumenscribe
