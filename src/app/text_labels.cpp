// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/text_labels.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
#include <QTextDocument>

#include "app/theme.h"

namespace lumenscribe::app {

namespace {

// A run this long (about 350 pixels) could outgrow the value column of a narrow window.
constexpr qsizetype kLongestWrappableRun = 48;

bool hasLongRun(const QString& text) {
  qsizetype run = 0;
  for (const QChar c : text) {
    run = c.isSpace() ? 0 : run + 1;
    if (run > kLongestWrappableRun) return true;
  }
  return false;
}

QString selectedText(const QWidget* widget) {
  if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->selectedText();
  if (const auto* text = qobject_cast<const QTextEdit*>(widget)) {
    return text->textCursor().selectedText().replace(QChar::ParagraphSeparator, '\n');
  }
  return {};
}

void selectAll(QWidget* widget) {
  if (auto* label = qobject_cast<QLabel*>(widget)) label->setSelection(0, label->text().size());
  if (auto* text = qobject_cast<QTextEdit*>(widget)) text->selectAll();
}

QLabel* plainLabel(const QString& text, QWidget* parent) {
  auto* label = new QLabel(parent);
  label->setTextFormat(Qt::PlainText);  // file data is never markup
  label->setText(text);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  return label;
}

}  // namespace

WrappedText::WrappedText(const QString& text, QWidget* parent) : QTextEdit(parent) {
  setReadOnly(true);
  setAcceptRichText(false);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setLineWrapMode(QTextEdit::WidgetWidth);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setFocusPolicy(Qt::ClickFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  document()->setDocumentMargin(0);
  // Transparent: the card underneath shows through, in whatever palette is current.
  setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  // Drops belong to the window, not to a text field.
  setAcceptDrops(false);
  viewport()->setAcceptDrops(false);
  offerCopy(this);
  setText(text);
}

void WrappedText::setText(const QString& text) {
  setPlainText(text);
  fitHeight();
}

QSize WrappedText::sizeHint() const {
  return {QTextEdit::sizeHint().width(), qCeil(document()->size().height())};
}

QSize WrappedText::minimumSizeHint() const { return {40, qCeil(document()->size().height())}; }

void WrappedText::resizeEvent(QResizeEvent* event) {
  QTextEdit::resizeEvent(event);
  fitHeight();
}

void WrappedText::fitHeight() {
  document()->setTextWidth(viewport()->width());
  const int height = qCeil(document()->size().height());
  if (height != this->height()) setFixedHeight(height);
}

QLabel* quietLabel(const QString& text, QWidget* parent) {
  QLabel* label = plainLabel(text, parent);
  // A palette role rather than a fixed colour, so a theme change recolours it by itself.
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

QWidget* valueLabel(const QString& text, QWidget* parent) {
  if (hasLongRun(text)) return new WrappedText(text, parent);
  QLabel* label = plainLabel(text, parent);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setCursor(Qt::IBeamCursor);
  offerCopy(label);
  return label;
}

void offerCopy(QWidget* value) {
  value->setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(value, &QWidget::customContextMenuRequested, value, [value](QPoint at) {
    auto* menu = new QMenu(value);
    menu->setObjectName(QStringLiteral("valueMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(QStringLiteral("Copy"), value, [value] {
      const QString selection = selectedText(value);
      QApplication::clipboard()->setText(selection.isEmpty() ? valueText(value) : selection);
    });
    menu->addAction(QStringLiteral("Select All"), value, [value] { selectAll(value); });
    menu->popup(value->mapToGlobal(at));
  });
}

QString valueText(const QWidget* widget) {
  if (const auto* label = qobject_cast<const QLabel*>(widget)) return label->text();
  if (const auto* text = qobject_cast<const WrappedText*>(widget)) return text->text();
  return {};
}

void setTextColor(QLabel* label, const QColor& color) {
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, color);
  label->setPalette(palette);
}

}  // namespace lumenscribe::app
