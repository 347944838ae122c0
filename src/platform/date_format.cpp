// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "platform/date_format.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <ctime>
#include <memory>
#include <mutex>
#include <string_view>

namespace lumenscribe::platform {

namespace {

// ICU takes its default locale from LC_ALL, LC_MESSAGES and LANG; dates follow LC_TIME.
std::string timeLocaleName() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == '\0') continue;
    std::string_view name(value);
    name = name.substr(0, name.find_first_of(".@"));  // "de_DE.UTF-8@euro" -> "de_DE"
    if (name.empty() || name == "C" || name == "POSIX") break;
    return std::string(name);
  }
  return "en_US";
}

struct SharedFormatter {
  std::mutex mutex;  // ICU formatters are not safe for concurrent use
  std::unique_ptr<icu::DateFormat> formatter{icu::DateFormat::createDateTimeInstance(
      icu::DateFormat::kMedium, icu::DateFormat::kMedium,
      icu::Locale::createCanonical(timeLocaleName().c_str()))};
};

SharedFormatter& sharedFormatter() {
  static SharedFormatter shared;
  return shared;
}

}  // namespace

std::string mediumDateText(Timestamp date) {
  const auto milliseconds =
      std::chrono::duration_cast<std::chrono::milliseconds>(date.time_since_epoch()).count();
  auto& shared = sharedFormatter();
  if (shared.formatter) {
    icu::UnicodeString text;
    {
      std::lock_guard lock(shared.mutex);
      shared.formatter->format(static_cast<UDate>(milliseconds), text);
    }
    std::string utf8;
    return text.toUTF8String(utf8);
  }
  // Without ICU's locale data there is still a readable, unambiguous date.
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm local{};
  char buffer[64] = "";
  if (localtime_r(&seconds, &local))
    std::strftime(buffer, sizeof buffer, "%Y-%m-%d %H:%M:%S", &local);
  return buffer;
}

}  // namespace lumenscribe::platform
