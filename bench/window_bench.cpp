// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
// Times the window where a person waits for it (bench/window_bench.sh runs it):
//   window-bench start NANOS       time from NANOS (the wall clock before exec) to the first
//                                  painted frame of the main window
//   window-bench drop PHOTO...     time from a drop to the painted result screen, once per
//                                  photo (each a different path, so no preview is reused)
//   window-bench scroll            paint time per frame while scrolling a result with 150 raw
//                                  entries expanded, and the layout requests it caused
#include <QApplication>
#include <QElapsedTimer>
#include <QMimeData>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

#include "app/content_view.h"
#include "app/lumenscribe_app.h"
#include "app/preview_loader.h"
#include "app/result_screen.h"

using namespace lumenscribe;
using namespace lumenscribe::app;

namespace {

std::int64_t wallNanos() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

/// Counts events of one type reaching a widget and its children.
class EventCounter final : public QObject {
 public:
  explicit EventCounter(QEvent::Type type) : type_(type) {}
  int count = 0;
  std::int64_t lastNanos = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == type_) {
      ++count;
      lastNanos = wallNanos();
    }
    return false;
  }

 private:
  QEvent::Type type_;
};

void waitUntil(const std::function<bool()>& done, int timeoutMs = 30000) {
  QElapsedTimer timer;
  timer.start();
  while (!done() && timer.elapsed() < timeoutMs) {
    QApplication::processEvents(QEventLoop::AllEvents, 5);
  }
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values.empty() ? 0 : values[values.size() / 2];
}

int startBench(std::int64_t execNanos) {
  LumenscribeApp app;
  MainWindow* window = app.mainWindow();
  EventCounter paints(QEvent::Paint);
  window->installEventFilter(&paints);
  window->show();
  waitUntil([&] { return paints.count > 0; });
  // The frame is on screen once the event loop has flushed the painted backing store.
  QApplication::processEvents();
  std::printf("start-to-drawn-window-ms %.1f\n", (wallNanos() - execNanos) / 1e6);
  return 0;
}

int dropBench(int count, char** photos) {
  LumenscribeApp app;
  MainWindow* window = app.mainWindow();
  window->show();
  app.warmUpDecoders();
  waitUntil([&] { return window->isVisible(); });
  // A person takes longer than this to drop the first file after the window appears.
  QElapsedTimer settle;
  settle.start();
  while (settle.elapsed() < 500) QApplication::processEvents(QEventLoop::AllEvents, 20);
  ContentView* view = window->contentView();
  ResultScreen* screen = view->resultScreen();
  std::vector<double> drawn;
  std::vector<double> inspected;
  std::vector<double> withPreview;
  for (int i = 0; i < count; ++i) {
    view->inspectAnotherFile();
    QApplication::processEvents();
    EventCounter paints(QEvent::Paint);
    screen->scrollArea()->viewport()->installEventFilter(&paints);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromLocal8Bit(photos[i]))});
    bool finished = false;
    const QMetaObject::Connection connection = QObject::connect(
        view, &ContentView::inspectionFinished, view, [&finished] { finished = true; });
    const std::int64_t start = wallNanos();
    view->handleDrop(data);
    waitUntil([&] { return finished; });
    inspected.push_back((wallNanos() - start) / 1e6);
    QObject::disconnect(connection);
    const int paintsBefore = paints.count;
    waitUntil([&] { return paints.count > paintsBefore; });
    drawn.push_back((paints.lastNanos - start) / 1e6);
    waitUntil([&] { return screen->preview()->renderedPreview().has_value(); });
    QApplication::processEvents();
    withPreview.push_back((wallNanos() - start) / 1e6);
    screen->scrollArea()->viewport()->removeEventFilter(&paints);
  }
  std::printf("drop-to-drawn-result-ms median %.1f (runs:", median(drawn));
  for (const double value : drawn) std::printf(" %.1f", value);
  std::printf(")\n  of which the inspection (runs:");
  for (const double value : inspected) std::printf(" %.1f", value);
  std::printf(")\ndrop-to-drawn-preview-ms median %.1f\n", median(withPreview));
  return 0;
}

int scrollBench() {
  std::vector<InsightRow> rows;
  for (int i = 0; i < 12; ++i)
    rows.emplace_back("Row " + std::to_string(i), "Value " + std::to_string(i));
  RawMetadata raw;
  for (int i = 0; i < 150; ++i) {
    raw["EXIF Key " + std::to_string(1000 + i)] =
        i % 10 == 0 ? std::string(300, 'x') : "value of entry number " + std::to_string(i);
  }
  LumenscribeResult result(
      "/tmp/bench.jpg", "bench.jpg", "JPEG image", 12, {"File"},
      {InsightSection("File", "doc.fill", rows)},
      {PrivacyFinding("No obvious high-interest metadata found", "None.", PrivacyLevel::neutral)},
      raw);
  ResultScreen screen;
  screen.resize(1040, 780);
  screen.show();
  screen.showResult(result, {});
  screen.setRawMetadataShown(true);
  waitUntil([&] { return screen.isVisible(); });
  for (int i = 0; i < 20; ++i) QApplication::processEvents();

  QScrollBar* bar = screen.scrollArea()->verticalScrollBar();
  EventCounter layouts(QEvent::LayoutRequest);
  QWidget* content = screen.scrollArea()->widget();
  for (QWidget* child : content->findChildren<QWidget*>()) child->installEventFilter(&layouts);
  content->installEventFilter(&layouts);
  std::vector<double> frames;
  QElapsedTimer frame;
  for (int value = 0; value <= bar->maximum(); value += 24) {
    frame.start();
    bar->setValue(value);
    screen.scrollArea()->viewport()->repaint();
    QApplication::processEvents();
    frames.push_back(frame.nsecsElapsed() / 1e6);
  }
  const double worst = *std::max_element(frames.begin(), frames.end());
  std::printf("scroll-150-raw-entries frames %zu median-ms %.2f worst-ms %.2f layout-requests %d\n",
              frames.size(), median(frames), worst, layouts.count);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  if (argc >= 3 && std::strcmp(argv[1], "start") == 0) return startBench(std::atoll(argv[2]));
  if (argc >= 3 && std::strcmp(argv[1], "drop") == 0) return dropBench(argc - 2, argv + 2);
  if (argc == 2 && std::strcmp(argv[1], "scroll") == 0) return scrollBench();
  std::fputs("usage: window-bench start NANOS | drop PHOTO... | scroll\n", stderr);
  return 2;
}
