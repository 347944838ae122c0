// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/comparison_sheet.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <algorithm>

#include "app/card.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "compare/comparison_text.h"
#include "core/path_text.h"

namespace lumenscribe::app {

namespace {

namespace text = comparison_text;

constexpr int kLabelColumn = 80;
// A line longer than this (a minified script, a data dump) is cut for the sheet: laying out
// megabytes of one line would stall the window.
constexpr qsizetype kLongestShownLine = 2000;

QFont captionFont(const QFont& base, int weight = -1) { return scaledFont(base, 0.88, weight); }

QFont monospaceCaption(const QFont& base) {
  QFont mono = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  mono.setPointSizeF(captionFont(base).pointSizeF());
  return mono;
}

QString fileName(const std::filesystem::path& url) {
  return qText(validUtf8(lastPathComponent(url)));
}

QLabel* captionLabel(const QString& content, QWidget* parent, int weight = -1) {
  QLabel* label = quietLabel(content, parent);
  label->setFont(captionFont(parent->font(), weight));
  return label;
}

// Selectable monospaced text that wraps anywhere (fingerprints, file lines).
WrappedText* monospaceText(const QString& content, QWidget* parent) {
  auto* field = new WrappedText(QString(), parent);
  field->setFont(monospaceCaption(parent->font()));
  field->setText(content);
  return field;
}

// A headline with its icon on the left and a quiet caption on the right.
QHBoxLayout* cardHeading(std::string_view symbol, const QString& title, const QString& caption,
                         Accent accent, QWidget* card) {
  auto* heading = new QHBoxLayout;
  heading->setSpacing(8);
  heading->addWidget(new SymbolView(std::string(symbol), accent, 18, card));
  auto* label = new QLabel(title, card);
  label->setObjectName(QStringLiteral("cardTitle"));
  label->setFont(scaledFont(card->font(), 1.05, QFont::DemiBold));
  heading->addWidget(label);
  heading->addStretch(1);
  if (!caption.isEmpty()) {
    QLabel* quiet = captionLabel(caption, card, QFont::DemiBold);
    quiet->setObjectName(QStringLiteral("cardCaption"));
    quiet->setWordWrap(false);
    heading->addWidget(quiet);
  }
  return heading;
}

Card* newCard(const QString& name, QWidget* parent) {
  auto* card = new Card(parent);
  card->setObjectName(name);
  return card;
}

QString shownLine(const std::optional<std::string>& line) {
  QString shown = qText(text::lineText(line));
  if (shown.size() > kLongestShownLine)
    shown = shown.left(kLongestShownLine) + QStringLiteral(" …");
  return shown;
}

}  // namespace

ComparisonSheet::ComparisonSheet(const FileComparison& comparison, QWidget* parent)
    : QDialog(parent), comparison_(comparison) {
  setObjectName(QStringLiteral("comparisonSheet"));
  setWindowTitle(QStringLiteral("Compare"));
  setMinimumSize(480, 360);
  resize(620, 680);

  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  outer->setSpacing(0);
  auto* scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* content = new QWidget;
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(28, 24, 28, 16);
  layout->setSpacing(12);
  addHeader(layout, content);
  addRows(layout, content);
  addPixelCard(layout, content);
  addFingerprintCard(layout, content);
  addTextCard(layout, content);
  layout->addStretch(1);
  scroll->setWidget(content);
  outer->addWidget(scroll, 1);

  auto* buttons = new QDialogButtonBox(this);
  buttons->setContentsMargins(28, 8, 28, 18);
  done_ = buttons->addButton(QStringLiteral("Done"), QDialogButtonBox::AcceptRole);
  done_->setDefault(true);
  done_->setFocus();
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  outer->addWidget(buttons);
}

void ComparisonSheet::addHeader(QVBoxLayout* layout, QWidget* content) {
  const text::Headline headline = text::header(comparison_);
  const bool identical = comparison_.identical();
  auto* header = new QHBoxLayout;
  header->setSpacing(14);
  header->addWidget(new SymbolView(std::string(headline.icon),
                                   identical ? Accent::blue : Accent::orange, 30, content),
                    0, Qt::AlignTop);
  auto* titles = new QVBoxLayout;
  titles->setSpacing(2);
  auto* title = new QLabel(qText(headline.title), content);
  title->setObjectName(QStringLiteral("headerTitle"));
  title->setFont(scaledFont(font(), 1.5, QFont::DemiBold));
  titles->addWidget(title);
  auto* message = quietLabel(qText(headline.message), content);
  message->setObjectName(QStringLiteral("headerMessage"));
  titles->addWidget(message);
  header->addLayout(titles, 1);
  layout->addLayout(header);
}

void ComparisonSheet::addRows(QVBoxLayout* layout, QWidget* content) {
  // Both groups of rows share the label column's width, so that their values line up.
  const QString longestLabel = QStringLiteral("Digital Fingerprint");
  const int labelWidth =
      std::max(kLabelColumn, content->fontMetrics().horizontalAdvance(longestLabel));
  const auto rowGroup = [labelWidth](std::initializer_list<std::pair<QString, QString>> rows,
                                     QWidget* parent) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(6);
    grid->setColumnMinimumWidth(0, labelWidth);
    grid->setColumnStretch(1, 1);
    for (const auto& [label, value] : rows) {
      const int row = grid->rowCount();
      QLabel* name = quietLabel(label, parent);
      name->setObjectName(QStringLiteral("rowLabel"));
      grid->addWidget(name, row, 0, Qt::AlignTop);
      grid->addWidget(valueLabel(value, parent), row, 1);
    }
    return grid;
  };

  layout->addWidget(new Divider(content));
  layout->addLayout(rowGroup({{QStringLiteral("First"), fileName(comparison_.firstURL)},
                              {QStringLiteral("Second"), fileName(comparison_.secondURL)}},
                             content));
  layout->addWidget(new Divider(content));
  layout->addLayout(rowGroup({{QStringLiteral("Size"), qText(text::sizeRow(comparison_))},
                              {QStringLiteral("Type"), qText(text::typeRow(comparison_))},
                              {longestLabel, qText(text::fingerprintRow(comparison_))}},
                             content));
  layout->addWidget(quietLabel(qText(text::kCaption), content));
}

void ComparisonSheet::addPixelCard(QVBoxLayout* layout, QWidget* content) {
  const std::optional<text::Headline> pixels = text::pixelCard(comparison_);
  if (!pixels) return;
  Card* card = newCard(QStringLiteral("pixelCard"), content);
  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(16, 12, 16, 14);
  column->setSpacing(6);
  column->addLayout(cardHeading(pixels->icon, qText(pixels->title),
                                qText(comparison_.pixelDimensions.value_or("")),
                                *comparison_.pixelMatch ? Accent::green : Accent::orange, card));
  QLabel* message = quietLabel(qText(pixels->message), card);
  message->setFont(scaledFont(font(), 0.95));
  column->addWidget(message);
  layout->addWidget(card);
}

void ComparisonSheet::addFingerprintCard(QVBoxLayout* layout, QWidget* content) {
  if (comparison_.identical()) return;
  Card* card = newCard(QStringLiteral("fingerprintCard"), content);
  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(16, 12, 16, 14);
  column->setSpacing(4);
  const auto addHash = [card, column](std::string_view label, const std::string& hash) {
    column->addWidget(captionLabel(qText(label), card, QFont::DemiBold));
    column->addWidget(monospaceText(qText(hash), card));
  };
  addHash(text::kFirstFingerprintLabel, comparison_.firstHash);
  column->addSpacing(6);
  addHash(text::kSecondFingerprintLabel, comparison_.secondHash);
  layout->addWidget(card);
}

void ComparisonSheet::addTextCard(QVBoxLayout* layout, QWidget* content) {
  if (!comparison_.textDifferences || comparison_.totalChangedLines.value_or(0) < 1) return;
  const std::vector<TextDifference>& differences = *comparison_.textDifferences;
  const std::int64_t total = *comparison_.totalChangedLines;
  Card* card = newCard(QStringLiteral("textCard"), content);
  auto* column = new QVBoxLayout(card);
  column->setContentsMargins(16, 12, 16, 14);
  column->setSpacing(6);
  column->addLayout(cardHeading(text::kTextCardIcon, qText(text::kTextCardTitle),
                                qText(text::changedLinesText(total)), Accent::teal, card));
  column->addWidget(
      captionLabel(qText(text::shownDifferencesText(differences.size(), total)), card));

  for (const TextDifference& difference : differences) {
    column->addSpacing(4);
    column->addWidget(
        captionLabel(QStringLiteral("Line %1").arg(difference.lineNumber), card, QFont::DemiBold));
    auto* sides = new QGridLayout;
    sides->setHorizontalSpacing(10);
    sides->setVerticalSpacing(2);
    sides->setColumnStretch(1, 1);
    int row = 0;
    for (const auto& [letter, line] : {std::pair{QStringLiteral("A"), &difference.first},
                                       std::pair{QStringLiteral("B"), &difference.second}}) {
      auto* name = new QLabel(letter, card);
      name->setFont(captionFont(font(), QFont::Bold));
      sides->addWidget(name, row, 0, Qt::AlignTop);
      WrappedText* value = monospaceText(shownLine(*line), card);
      if (!line->has_value()) {
        QPalette quiet = value->palette();
        quiet.setColor(QPalette::Text, secondaryText(palette()));
        value->setPalette(quiet);
      }
      sides->addWidget(value, row, 1);
      ++row;
    }
    column->addLayout(sides);
  }
  layout->addWidget(card);
}

QWidget* ComparisonSheet::card(const QString& name) const { return findChild<QWidget*>(name); }

QStringList ComparisonSheet::texts() const {
  QStringList all;
  for (const QWidget* widget : findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(this)) continue;
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
      all << label->text();
    } else if (const auto* field = qobject_cast<const WrappedText*>(widget)) {
      all << field->text();
    }
  }
  return all;
}

}  // namespace lumenscribe::app
