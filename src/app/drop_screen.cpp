// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/drop_screen.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/card.h"
#include "app/icons.h"
#include "app/text_labels.h"
#include "app/theme.h"

namespace lumenscribe::app {

/// The dashed area that invites the drop; solid and tinted while a drag is over the window.
/// Its icon and "Drop it here" are drawn in the room its layout keeps above the buttons, so
/// that the area can shrink with the window.
class DropArea final : public QWidget {
 public:
  explicit DropArea(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("dropArea"));
    setMinimumWidth(360);
    setMaximumSize(620, 210);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  /// The room for the icon and the words: its layout's spacer.
  void setArtworkItem(QSpacerItem* item) { artwork_ = item; }

  void setTargeted(bool targeted) {
    targeted_ = targeted;
    update();
  }
  bool isTargeted() const { return targeted_; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = accentColor(Accent::system, palette());
    const QRectF bounds = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QPainterPath path;
    path.addRoundedRect(bounds, 20, 20);
    painter.fillPath(path,
                     targeted_ ? withAlpha(accent, 0.14) : withAlpha(cardFill(palette()), 0.7));
    QPen pen(targeted_ ? accent : withAlpha(palette().color(QPalette::WindowText), 0.28),
             targeted_ ? 2.5 : 1.6);
    if (!targeted_) pen.setDashPattern({5, 4});
    painter.setPen(pen);
    painter.drawPath(path);
    if (!artwork_) return;

    const QRect room = artwork_->geometry();
    const QFont words = scaledFont(font(), 1.3, QFont::DemiBold);
    const int wordsHeight = QFontMetrics(words).height();
    const qreal side = qBound(24, room.height() - wordsHeight - 6, 46);
    const qreal top = room.top() + (room.height() - side - 6 - wordsHeight) / 2.0;
    const QColor tone = targeted_ ? accent : secondaryText(palette());
    paintSymbol(painter, QRectF((width() - side) / 2.0, top, side, side), "tray.and.arrow.down",
                tone);
    painter.setFont(words);
    painter.setPen(targeted_ ? accent : palette().color(QPalette::WindowText));
    painter.drawText(QRectF(0, top + side + 6, width(), wordsHeight), Qt::AlignCenter,
                     QStringLiteral("Drop it here"));
  }

 private:
  QSpacerItem* artwork_ = nullptr;
  bool targeted_ = false;
};

namespace {

QLabel* centred(QLabel* label) {
  label->setAlignment(Qt::AlignCenter);
  return label;
}

QWidget* kindIcons(QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(22);
  layout->addStretch(1);
  const struct {
    const char* symbol;
    const char* name;
    Accent accent;
  } kinds[] = {{"photo.fill", "Photos", Accent::blue},
               {"doc.richtext.fill", "Documents", Accent::teal},
               {"waveform", "Audio", Accent::indigo},
               {"film.fill", "Video", Accent::purple},
               {"archivebox.fill", "Archives", Accent::orange},
               {"folder.fill", "Folders", Accent::mint}};
  for (const auto& kind : kinds) {
    auto* icon = new SymbolView(kind.symbol, kind.accent, 24, row);
    icon->setToolTip(QString::fromLatin1(kind.name));
    layout->addWidget(icon);
  }
  layout->addStretch(1);
  return row;
}

QWidget* reassurance(QWidget* parent) {
  auto* row = new QWidget(parent);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(6);
  layout->addStretch(1);
  layout->addWidget(new SymbolView("lock.fill", std::nullopt, 13, row), 0, Qt::AlignVCenter);
  auto* text = quietLabel(QStringLiteral("Local  •  Private  •  Nothing uploaded"), row);
  text->setObjectName(QStringLiteral("reassurance"));
  text->setWordWrap(false);
  layout->addWidget(text);
  layout->addStretch(1);
  return row;
}

}  // namespace

DropScreen::DropScreen(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 16, 24, 20);
  layout->setSpacing(0);
  layout->addStretch(3);

  auto* invitation = centred(new QLabel(QStringLiteral("Drop a file. See what it knows."), this));
  invitation->setObjectName(QStringLiteral("invitation"));
  invitation->setFont(scaledFont(font(), 2.0, QFont::Bold));
  layout->addWidget(invitation);
  layout->addSpacing(8);
  auto* kinds = centred(quietLabel(
      QStringLiteral("Photos, documents, audio, video, folders, archives, and more."), this));
  kinds->setFont(scaledFont(font(), 1.1));
  layout->addWidget(kinds);
  layout->addSpacing(20);

  area_ = new DropArea(this);
  auto* areaLayout = new QVBoxLayout(area_);
  areaLayout->setContentsMargins(16, 14, 16, 20);
  areaLayout->setSpacing(10);
  auto* artwork = new QSpacerItem(10, 64, QSizePolicy::Minimum, QSizePolicy::MinimumExpanding);
  areaLayout->addSpacerItem(artwork);
  area_->setArtworkItem(artwork);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(10);
  buttons->addStretch(1);
  open_ = new QPushButton(QStringLiteral("Open…"), area_);
  setButtonSymbol(open_, "doc.fill");
  open_->setObjectName(QStringLiteral("openButton"));
  open_->setToolTip(QStringLiteral("Choose a file to inspect (Ctrl+O)"));
  openFolder_ = new QPushButton(QStringLiteral("Open Folder…"), area_);
  setButtonSymbol(openFolder_, "folder.badge.plus");
  openFolder_->setObjectName(QStringLiteral("openFolderButton"));
  openFolder_->setToolTip(QStringLiteral("Choose a folder to inspect (Ctrl+Shift+O)"));
  for (QPushButton* button : {open_, openFolder_}) {
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(30);
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  connect(open_, &QPushButton::clicked, this, [this] { emit openRequested(false); });
  connect(openFolder_, &QPushButton::clicked, this, [this] { emit openRequested(true); });
  areaLayout->addLayout(buttons);
  layout->addWidget(area_, 6, Qt::AlignHCenter);
  layout->addSpacing(18);

  layout->addWidget(reassurance(this));
  layout->addSpacing(8);
  auto* flow = centred(quietLabel(QStringLiteral("Drop → Inspect → Decide"), this));
  flow->setObjectName(QStringLiteral("flowLine"));
  layout->addWidget(flow);
  layout->addSpacing(16);
  layout->addWidget(kindIcons(this));
  layout->addStretch(4);
}

void DropScreen::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) refreshButtonSymbols(this);
}

void DropScreen::setTargeted(bool targeted) { area_->setTargeted(targeted); }

bool DropScreen::isTargeted() const { return area_->isTargeted(); }

}  // namespace lumenscribe::app
