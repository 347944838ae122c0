// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QThreadPool>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <vector>

#include "app/content_view.h"
#include "app/lumenscribe_app.h"
#include "lumenscribe/product.h"

namespace {

constexpr const char* kUsage =
    "Usage: lumenscribe [OPTION]... [FILE]\n"
    "Opens the Lumenscribe window; given FILE (a file or folder), inspects it at once.\n"
    "\n"
    "Options:\n"
    "  -h, --help     show this help and exit\n"
    "      --version  show the version and exit\n"
    "  --             end of options (for files whose names start with '-')\n"
    "Qt's own options, such as -platform NAME, are understood too.\n";

// Help and version need no display, so they are answered before Qt starts.
bool answeredWithoutWindow(int argc, char** argv) {
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    if (std::strcmp(argv[i], "-h") == 0 || std::strcmp(argv[i], "--help") == 0) {
      std::fputs(kUsage, stdout);
      return true;
    }
    if (std::strcmp(argv[i], "--version") == 0) {
      std::printf("%s %s\n", lumenscribe::product::name, lumenscribe::product::version);
      return true;
    }
  }
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  if (answeredWithoutWindow(argc, argv)) return 0;
  // Qt's own options (-platform, ...) are taken out of argv here.
  QApplication application(argc, argv);
  QApplication::setApplicationVersion(QString::fromUtf8(lumenscribe::product::version));

  // Paths stay bytes: a name that is not UTF-8 must reach the engine unchanged.
  std::vector<std::filesystem::path> items;
  bool optionsDone = false;
  for (int i = 1; i < argc; ++i) {
    const char* argument = argv[i];
    if (!optionsDone && std::strcmp(argument, "--") == 0) {
      optionsDone = true;
    } else if (!optionsDone && argument[0] == '-' && argument[1] != '\0') {
      std::fprintf(stderr, "lumenscribe: unknown option %s\n%s", argument, kUsage);
      return 2;
    } else {
      items.emplace_back(argument);
    }
  }

  lumenscribe::app::LumenscribeApp app;
  lumenscribe::app::MainWindow* window = app.mainWindow();
  window->show();
  app.warmUpDecoders();
  window->contentView()->openItems(items);
  const int status = QApplication::exec();
  // An inspection or a comparison only reads, so one still running (a fingerprint of a huge
  // file, say, or a cancelled inspection's last decoder request) has nothing to finish:
  // leave at once rather than wait for it behind a closed window. A report or clean copy
  // being written is waited for.
  const lumenscribe::app::ContentView& view = *window->contentView();
  if (QThreadPool::globalInstance()->activeThreadCount() > 0 && view.onlyReading()) {
    std::fflush(nullptr);
    std::_Exit(status);
  }
  return status;
}
