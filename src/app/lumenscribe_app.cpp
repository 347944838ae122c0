// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/lumenscribe_app.h"

#include <QAction>
#include <QApplication>
#include <QIcon>
#include <QMenuBar>
#include <QScreen>
#include <QTimer>
#include <QtConcurrent/QtConcurrentRun>

#include "app/about_window.h"
#include "app/content_view.h"
#include "app/focus_ring.h"
#include "platform/decoder_client.h"

namespace lumenscribe::app {

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent) {
  setObjectName(QStringLiteral("mainWindow"));
  setWindowTitle(QStringLiteral("Lumenscribe"));
  content_ = new ContentView(this);
  content_->setMinimumSize(kMinimumContentSize);
  setCentralWidget(content_);

  QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
  QAction* open = file->addAction(QStringLiteral("Open…"), content_,
                                  [this] { content_->chooseItemToOpen(false); });
  open->setShortcut(QKeySequence::Open);
  QAction* openFolder = file->addAction(QStringLiteral("Open Folder…"), content_,
                                        [this] { content_->chooseItemToOpen(true); });
  openFolder->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_O));
  QAction* close =
      file->addAction(QStringLiteral("Close"), content_, [this] { content_->closeResult(); });
  // Ctrl+W wherever the platform's closing keys are others too.
  QList<QKeySequence> closeKeys = QKeySequence::keyBindings(QKeySequence::Close);
  if (!closeKeys.contains(QKeySequence(Qt::CTRL | Qt::Key_W))) {
    closeKeys << QKeySequence(Qt::CTRL | Qt::Key_W);
  }
  close->setShortcuts(closeKeys);
  close->setToolTip(QStringLiteral("Back to the drop screen"));
  file->addSeparator();
  QAction* quit = file->addAction(QStringLiteral("Quit"), this, &QWidget::close);
  quit->setShortcut(QKeySequence::Quit);
  quit->setMenuRole(QAction::QuitRole);

  QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
  QAction* about =
      help->addAction(QStringLiteral("About Lumenscribe"), this, &MainWindow::aboutRequested);
  about->setMenuRole(QAction::AboutRole);

  setMinimumSize(minimumSizeHint());
  fitToScreen(QGuiApplication::primaryScreen());
}

void MainWindow::fitToScreen(const QScreen* screen) {
  if (!screen) {
    resize(kPreferredSize);
    return;
  }
  // The frame is not known before the window is shown: leave room for a title bar.
  const QRect available = screen->availableGeometry();
  const QSize room = available.size() - kFrameAllowance;
  const QSize size = kPreferredSize.boundedTo(room).expandedTo(minimumSize());
  resize(size);
  const QSize framed = size + kFrameAllowance;
  move(available.left() + qMax(0, (available.width() - framed.width()) / 2),
       available.top() + qMax(0, (available.height() - framed.height()) / 2));
}

LumenscribeApp::LumenscribeApp() {
  installFocusRingStyle();
  QApplication::setApplicationName(QStringLiteral("Lumenscribe"));
  QApplication::setDesktopFileName(QStringLiteral("lumenscribe"));
  QApplication::setWindowIcon(QIcon(QStringLiteral(":/lumenscribe/lumenscribe.svg")));
  window_ = std::make_unique<MainWindow>();
  connect(window_.get(), &MainWindow::aboutRequested, this, &LumenscribeApp::showAboutWindow);
}

LumenscribeApp::~LumenscribeApp() = default;

void LumenscribeApp::warmUpDecoders() {
  // The decoder worker starts on first use, which would otherwise fall on the first drop.
  // Starting it in the background once the window is up takes that wait off the user;
  // nobody waits for the outcome (an inspection that needs it waits its turn for the same
  // worker). The task shares the worker's client, which may outlive the window.
  QTimer::singleShot(0, this, [decoder = window_->contentView()->inspector().decoder()] {
    [[maybe_unused]] const QFuture<void> starting =
        QtConcurrent::run([decoder] { decoder->warmUp(); });
  });
}

void LumenscribeApp::showAboutWindow() {
  if (!about_) {
    // Deleted when closed, so the pointer empties and the next request makes a fresh one.
    about_ = new AboutWindow(window_.get());
    // Over the main window when it is up, else in the middle of the screen; always within
    // the screen.
    const QScreen* screen =
        window_->screen() ? window_->screen() : QGuiApplication::primaryScreen();
    QRect frame = about_->frameGeometry();
    if (window_->isVisible()) {
      frame.moveCenter(window_->frameGeometry().center());
    } else if (screen) {
      frame.moveCenter(screen->availableGeometry().center());
    }
    if (screen) {
      const QRect available = screen->availableGeometry();
      frame.moveLeft(qBound(available.left(), frame.left(),
                            qMax(available.left(), available.right() - frame.width() + 1)));
      frame.moveTop(qBound(available.top(), frame.top(),
                           qMax(available.top(), available.bottom() - frame.height() + 1)));
    }
    about_->move(frame.topLeft());
  }
  about_->show();
  about_->raise();
  about_->activateWindow();
}

}  // namespace lumenscribe::app
