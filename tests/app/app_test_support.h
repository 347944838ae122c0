// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QSignalSpy>
#include <QString>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "app/content_view.h"

namespace lumenscribe::app::testing {

/// A fixture made by data/make-fixtures.sh.
inline std::filesystem::path fixture(const char* name) {
  return std::filesystem::path(LUMENSCRIBE_APP_FIXTURES_DIR) / name;
}

/// Writes `content` to `path`; whether it could.
inline bool writeFile(const std::filesystem::path& path, std::string_view content) {
  std::ofstream out(path, std::ios::binary);
  out.write(content.data(), static_cast<std::streamsize>(content.size()));
  return static_cast<bool>(out.flush());
}

/// Starts an inspection and waits until its outcome is on screen.
inline bool inspectAndWait(ContentView& view, const std::filesystem::path& path) {
  QSignalSpy finished(&view, &ContentView::inspectionFinished);
  view.startInspection(path);
  return finished.wait(20000);
}

/// A section built by hand, for drawing cases that no fixture produces.
inline InsightSection section(std::string title, std::string symbol,
                              std::vector<std::pair<std::string, std::string>> rows) {
  std::vector<InsightRow> made;
  for (auto& [label, value] : rows) made.emplace_back(std::move(label), std::move(value));
  return InsightSection(std::move(title), std::move(symbol), std::move(made));
}

}  // namespace lumenscribe::app::testing
