// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>
#include <QTextEdit>
#include <string_view>

namespace lumenscribe::app {

/// The engine's UTF-8 text as a QString.
inline QString qText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Selectable plain text that wraps anywhere when it must, for values with long unbroken runs
/// (fingerprints, paths, encoded blobs) that a label could only show by widening the window.
/// Its height follows its text at the width the layout gives it.
class WrappedText : public QTextEdit {
  Q_OBJECT

 public:
  explicit WrappedText(const QString& text, QWidget* parent = nullptr);

  QString text() const { return toPlainText(); }
  void setText(const QString& text);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void fitHeight();
};

/// Wrapping plain text in the quieter secondary colour (row labels, captions, details).
QLabel* quietLabel(const QString& text, QWidget* parent);

/// Wrapping plain text the user can select and copy (row values, finding titles): a label, or
/// WrappedText when the text has a run too long to wrap at word boundaries.
QWidget* valueLabel(const QString& text, QWidget* parent);

/// Gives a value widget (a label or WrappedText) the menu of a right-click: "Copy" (the
/// selection, or the whole value when nothing is selected) and "Select All".
void offerCopy(QWidget* value);

/// The text of a widget made by valueLabel.
QString valueText(const QWidget* widget);

/// `label` drawn in `color`, kept when the label's palette is otherwise inherited.
void setTextColor(QLabel* label, const QColor& color);

}  // namespace lumenscribe::app
