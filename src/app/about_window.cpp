// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/about_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QGraphicsDropShadowEffect>
#include <QHBoxLayout>
#include <QLabel>
#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QShortcut>
#include <QUrl>
#include <QVBoxLayout>
#include <QWindow>

#include "app/card.h"
#include "app/focus_ring.h"
#include "app/icons.h"
#include "app/pills.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "lumenscribe/product.h"

namespace lumenscribe::app {

namespace {

QFont pixelFont(const QFont& base, qreal pixels, int weight = -1) {
  QFont font = base;
  font.setPixelSize(qRound(pixels));
  if (weight >= 0) font.setWeight(static_cast<QFont::Weight>(weight));
  return font;
}

QString makerDomain() {
  QString host = QUrl(QString::fromUtf8(product::makerUrl)).host();
  if (host.startsWith(QLatin1String("www."))) host.remove(0, 4);
  return host.isEmpty() ? QString::fromUtf8(product::makerUrl) : host;
}

/// The application icon on a softly tinted rounded square.
class IconPlate final : public QWidget {
 public:
  explicit IconPlate(QWidget* parent) : QWidget(parent) {
    setFixedSize(124, 124);
    auto* icon = new QLabel(this);
    icon->setGeometry(13, 13, 98, 98);
    icon->setPixmap(QApplication::windowIcon().pixmap(QSize(98, 98), devicePixelRatioF()));
    auto* shadow = new QGraphicsDropShadowEffect(icon);
    shadow->setColor(QColor(0, 0, 0, qRound(255 * 0.16)));
    shadow->setBlurRadius(24);
    shadow->setOffset(0, 7);
    icon->setGraphicsEffect(shadow);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = accentColor(Accent::system, palette());
    QLinearGradient gradient(rect().topLeft(), rect().bottomRight());
    gradient.setColorAt(0, withAlpha(accent, 0.14));
    gradient.setColorAt(1, withAlpha(accent, 0.045));
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), 28, 28);
    painter.fillPath(path, gradient);
  }
};

/// Globe, the maker's domain and an outward arrow, on a faint accent plate.
class MakerLink final : public QAbstractButton {
 public:
  explicit MakerLink(QWidget* parent) : QAbstractButton(parent) {
    setText(makerDomain());
    setFont(pixelFont(font(), 12.5, QFont::DemiBold));
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  }

  QSize sizeHint() const override {
    return {13 * 2 + 14 + 7 + fontMetrics().horizontalAdvance(text()) + 7 + 12,
            qMax(fontMetrics().height(), 14) + 8 * 2};
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor accent = accentColor(Accent::system, palette());
    QPainterPath path;
    path.addRoundedRect(QRectF(rect()), 10, 10);
    painter.fillPath(path, withAlpha(accent, isDown() ? 0.16 : (underMouse() ? 0.12 : 0.08)));
    qreal x = 13;
    paintSymbol(painter, QRectF(x, (height() - 14) / 2.0, 14, 14), "globe", accent);
    x += 14 + 7;
    const int textWidth = fontMetrics().horizontalAdvance(text());
    painter.setPen(accent);
    painter.drawText(QRectF(x, 0, textWidth + 1, height()), Qt::AlignVCenter | Qt::AlignLeft,
                     text());
    x += textWidth + 7;
    paintSymbol(painter, QRectF(x, (height() - 12) / 2.0, 12, 12), "arrow.up.right", accent);
    if (hasFocus()) paintFocusRing(painter, QRectF(rect()), 10, palette());
  }
};

QLabel* centredLabel(const QString& text, const QFont& font, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setFont(font);
  label->setAlignment(Qt::AlignCenter);
  return label;
}

}  // namespace

QString versionText(std::optional<std::string_view> shortVersion,
                    std::optional<std::string_view> build) {
  const std::string_view shown = shortVersion.value_or("1.0");
  const std::string_view number = build.value_or("1");
  return QStringLiteral("Version %1 (%2)").arg(qText(shown), qText(number));
}

QString versionText() {
  const auto given = [](const char* text) -> std::optional<std::string_view> {
    if (text == nullptr || *text == '\0') return std::nullopt;
    return std::string_view(text);
  };
  return versionText(given(product::version), given(product::buildNumber));
}

LumenscribeAboutView::LumenscribeAboutView(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);

  auto* header = new QVBoxLayout;
  header->setContentsMargins(0, 24, 0, 18);
  header->setSpacing(0);
  header->addWidget(new IconPlate(this), 0, Qt::AlignHCenter);
  header->addSpacing(14);
  header->addWidget(
      centredLabel(QString::fromUtf8(product::name), pixelFont(font(), 29, QFont::Bold), this));
  header->addSpacing(5);
  auto* tagline = centredLabel(QStringLiteral("See what’s really inside a file."),
                               pixelFont(font(), 15, QFont::DemiBold), this);
  tagline->setForegroundRole(QPalette::PlaceholderText);
  header->addWidget(tagline);
  header->addSpacing(5);
  auto* version = centredLabel(versionText(), pixelFont(font(), 12), this);
  version->setObjectName(QStringLiteral("versionLine"));
  version->setForegroundRole(QPalette::PlaceholderText);
  header->addWidget(version);
  layout->addLayout(header);
  layout->addWidget(new Divider(this));

  auto* body = new QVBoxLayout;
  body->setContentsMargins(34, 18, 34, 18);
  body->setSpacing(15);
  auto* description = centredLabel(
      QStringLiteral("Lumenscribe reveals useful details hiding inside your files — including file "
                     "health, actual type, dimensions, software and creator information, metadata, "
                     "and more."),
      pixelFont(font(), 13.5), this);
  description->setWordWrap(true);
  description->setFixedWidth(430);
  description->setForegroundRole(QPalette::PlaceholderText);
  body->addWidget(description, 0, Qt::AlignHCenter);
  auto* pills = new QHBoxLayout;
  pills->setSpacing(10);
  pills->addStretch(1);
  const std::pair<const char*, const char*> features[] = {
      {"Local", "macbook"}, {"Private", "lock.shield"}, {"Plain English", "text.bubble"}};
  for (const auto& [title, symbol] : features) {
    auto* pill = new FeaturePill(QString::fromUtf8(title), symbol, this);
    pill->setFont(pixelFont(font(), 12, QFont::Medium));
    pills->addWidget(pill);
  }
  pills->addStretch(1);
  body->addLayout(pills);
  auto* link = new MakerLink(this);
  link->setObjectName(QStringLiteral("makerLink"));
  link->setToolTip(
      QStringLiteral("Visit %1 on the web").arg(QString::fromUtf8(product::makerName)));
  connect(link, &QAbstractButton::clicked, this,
          [] { QDesktopServices::openUrl(QUrl(QString::fromUtf8(product::makerUrl))); });
  body->addWidget(link, 0, Qt::AlignHCenter);
  layout->addLayout(body);
  layout->addStretch(1);
  layout->addWidget(new Divider(this));

  auto* footer = new QHBoxLayout;
  footer->setContentsMargins(22, 13, 22, 13);
  auto* credit = new QVBoxLayout;
  credit->setSpacing(3);
  auto* maker = new QLabel(QString::fromUtf8(product::makerName), this);
  maker->setFont(pixelFont(font(), 12.5, QFont::DemiBold));
  credit->addWidget(maker);
  auto* notice = new QLabel(QStringLiteral("© %1 %2").arg(QStringLiteral(LUMENSCRIBE_BUILD_YEAR),
                                                          QString::fromUtf8(product::makerName)),
                            this);
  notice->setFont(pixelFont(font(), 11));
  notice->setForegroundRole(QPalette::PlaceholderText);
  credit->addWidget(notice);
  footer->addLayout(credit);
  footer->addStretch(1);
  done_ = new QPushButton(QStringLiteral("Done"), this);
  done_->setDefault(true);
  done_->setAutoDefault(true);
  connect(done_, &QPushButton::clicked, this, &LumenscribeAboutView::doneRequested);
  footer->addWidget(done_);
  layout->addLayout(footer);
}

AboutWindow::AboutWindow(QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                          Qt::WindowCloseButtonHint) {
  setObjectName(QStringLiteral("aboutWindow"));
  setWindowTitle(QStringLiteral("About Lumenscribe"));
  setAttribute(Qt::WA_DeleteOnClose);
  setFixedSize(540, 500);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  view_ = new LumenscribeAboutView(this);
  layout->addWidget(view_);
  connect(view_, &LumenscribeAboutView::doneRequested, this, &QWidget::close);
  // A plain window has no default button of its own: Return (and Escape) reach "Done" here.
  for (const QKeySequence& key :
       {QKeySequence(Qt::Key_Return), QKeySequence(Qt::Key_Enter), QKeySequence(Qt::Key_Escape)}) {
    connect(new QShortcut(key, this), &QShortcut::activated, view_->doneButton(),
            &QPushButton::click);
  }
  view_->doneButton()->setFocus();
}

void AboutWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && windowHandle()) {
    windowHandle()->startSystemMove();
    event->accept();
    return;
  }
  QWidget::mousePressEvent(event);
}

}  // namespace lumenscribe::app
