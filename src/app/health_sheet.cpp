// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/health_sheet.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "app/card.h"
#include "app/text_labels.h"
#include "app/theme.h"

namespace lumenscribe::app {

namespace {

QLabel* headline(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  label->setFont(scaledFont(parent->font(), 1.1, QFont::DemiBold));
  return label;
}

QWidget* bulletList(const std::vector<std::string>& lines, std::string_view symbol, Accent accent,
                    QWidget* parent) {
  auto* list = new QWidget(parent);
  auto* layout = new QGridLayout(list);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setHorizontalSpacing(10);
  layout->setVerticalSpacing(8);
  layout->setColumnStretch(1, 1);
  int row = 0;
  for (const std::string& line : lines) {
    layout->addWidget(new SymbolView(std::string(symbol), accent, 16, list), row, 0, Qt::AlignTop);
    layout->addWidget(valueLabel(qText(line), list), row, 1);
    ++row;
  }
  return list;
}

}  // namespace

HealthSheet::HealthSheet(const InsightSection& section, QWidget* parent)
    : QDialog(parent), inspection_(healthInspection(section)) {
  setObjectName(QStringLiteral("healthSheet"));
  setWindowTitle(QStringLiteral("Inspect Further"));
  setMinimumSize(560, 420);
  resize(640, 560);

  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  auto* scroll = new QScrollArea(this);
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  auto* content = new QWidget;
  auto* layout = new QVBoxLayout(content);
  layout->setContentsMargins(28, 24, 28, 20);
  layout->setSpacing(12);

  const bool limited = inspection_.assessment == "Verification limited";
  auto* header = new QHBoxLayout;
  header->setSpacing(14);
  header->addWidget(
      new SymbolView(limited ? "questionmark.circle.fill" : "exclamationmark.triangle.fill",
                     limited ? Accent::orange : Accent::red, 30, content),
      0, Qt::AlignTop);
  auto* titles = new QVBoxLayout;
  titles->setSpacing(2);
  auto* title = new QLabel(QStringLiteral("Inspect Further"), content);
  title->setFont(scaledFont(font(), 1.6, QFont::DemiBold));
  titles->addWidget(title);
  auto* assessment = headline(qText(inspection_.assessment), content);
  assessment->setObjectName(QStringLiteral("assessment"));
  titles->addWidget(assessment);
  header->addLayout(titles, 1);
  layout->addLayout(header);
  layout->addWidget(new Divider(content));

  auto* facts = new QGridLayout;
  facts->setHorizontalSpacing(18);
  facts->setVerticalSpacing(6);
  facts->setColumnStretch(1, 1);
  facts->addWidget(quietLabel(QStringLiteral("Readable"), content), 0, 0, Qt::AlignTop);
  facts->addWidget(valueLabel(qText(inspection_.readable), content), 0, 1);
  if (inspection_.structureLabel) {
    facts->addWidget(quietLabel(qText(*inspection_.structureLabel), content), 1, 0, Qt::AlignTop);
    facts->addWidget(valueLabel(qText(inspection_.structureValue.value_or("")), content), 1, 1);
  }
  layout->addLayout(facts);

  const HealthExplanation& explanation = inspection_.explanation;
  layout->addSpacing(4);
  layout->addWidget(headline(QStringLiteral("What this means"), content));
  auto* meaning = quietLabel(qText(explanation.meaning), content);
  meaning->setObjectName(QStringLiteral("meaning"));
  layout->addWidget(meaning);
  layout->addSpacing(4);
  layout->addWidget(headline(QStringLiteral("What Lumenscribe knows"), content));
  layout->addWidget(bulletList(explanation.knownFacts, "checkmark.circle", Accent::green, content));
  if (!explanation.nextSteps.empty()) {
    layout->addSpacing(4);
    layout->addWidget(headline(QStringLiteral("Reasonable next steps"), content));
    layout->addWidget(
        bulletList(explanation.nextSteps, "arrow.right.circle", Accent::blue, content));
  }
  layout->addSpacing(4);
  layout->addWidget(new Divider(content));
  auto* disclaimer = quietLabel(
      QStringLiteral("File Health is a structural check. It does not determine whether a file "
                     "contains malware or whether its contents are trustworthy."),
      content);
  disclaimer->setFont(scaledFont(font(), 0.9));
  layout->addWidget(disclaimer);
  layout->addStretch(1);
  scroll->setWidget(content);
  outer->addWidget(scroll, 1);

  auto* buttons = new QDialogButtonBox(this);
  buttons->setContentsMargins(28, 0, 28, 18);
  QPushButton* done = buttons->addButton(QStringLiteral("Done"), QDialogButtonBox::AcceptRole);
  done->setDefault(true);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  outer->addWidget(buttons);
}

}  // namespace lumenscribe::app
