// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "report/report_file.h"

#include <exception>
#include <span>

#include "cleancopy/pending_file.h"
#include "core/path_text.h"
#include "report/text_report.h"

namespace lumenscribe {

std::string proposedReportName(const std::filesystem::path& url) {
  const std::string name = lastPathComponent(url);
  const std::string extension = pathExtension(url);
  std::string base = extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
  // The root folder's component is "/", which no file name may hold.
  if (base.empty() || base == "/") base = "Lumenscribe-Report";
  return base + "-Lumenscribe-Report.txt";
}

std::error_code writeTextReport(const LumenscribeResult& result,
                                const std::filesystem::path& destination) {
  try {
    const std::string report = buildTextReport(result);
    auto file = PendingFile::create(destination);
    if (!file) return file.error();
    if (!file->append(std::as_bytes(std::span(report)))) return file->error();
    return file->commit();
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  }
}

std::string reportSaveFailureMessage(std::error_code error) {
  return "Lumenscribe could not save the report: " + error.message();
}

}  // namespace lumenscribe
