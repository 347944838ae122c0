// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/privacy_card.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/pills.h"
#include "app/presentation.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "privacy/privacy_summary.h"

namespace lumenscribe::app {

namespace {

QWidget* findingRow(const PrivacyFinding& finding, QWidget* parent) {
  auto* row = new QWidget(parent);
  row->setObjectName(QStringLiteral("findingRow"));
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 4, 0, 4);
  layout->setSpacing(14);
  auto* texts = new QVBoxLayout;
  texts->setSpacing(2);
  auto* title = valueLabel(qText(finding.title), row);
  title->setFont(scaledFont(row->font(), 1.0, QFont::DemiBold));
  texts->addWidget(title);
  texts->addWidget(quietLabel(qText(finding.detail), row));
  layout->addLayout(texts, 1);
  auto* badge = new Badge(qText(badgeText(finding.level)), accentForLevel(finding.level), row);
  badge->setObjectName(QStringLiteral("findingBadge"));
  layout->addWidget(badge, 0, Qt::AlignTop);
  return row;
}

}  // namespace

PrivacyCard::PrivacyCard(const std::vector<PrivacyFinding>& findings, QWidget* parent)
    : Card(parent) {
  setObjectName(qText(kSharingPrivacyAnchor));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(18, 14, 18, 16);
  layout->setSpacing(10);

  auto* header = new QHBoxLayout;
  header->setSpacing(10);
  header->addWidget(new IconBadge("hand.raised.fill", Accent::system, 30, this));
  auto* headings = new QVBoxLayout;
  headings->setSpacing(0);
  auto* title = new QLabel(QStringLiteral("Sharing & Privacy"), this);
  title->setFont(scaledFont(font(), 1.15, QFont::DemiBold));
  headings->addWidget(title);
  auto* subtitle = quietLabel(QStringLiteral("What someone else may learn"), this);
  subtitle->setWordWrap(false);
  headings->addWidget(subtitle);
  header->addLayout(headings);
  header->addStretch(1);
  const SeverityCounts counts = severityCounts(findings);
  for (const PrivacyLevel level : {PrivacyLevel::notice, PrivacyLevel::sensitive}) {
    if (counts.of(level) < 1) continue;
    auto* badge =
        new Badge(QStringLiteral("%1 %2").arg(counts.of(level)).arg(qText(badgeText(level))),
                  accentForLevel(level), this);
    badge->setObjectName(QStringLiteral("countBadge"));
    header->addWidget(badge);
  }
  layout->addLayout(header);

  for (std::size_t i = 0; i < findings.size(); ++i) {
    if (i > 0) layout->addWidget(new Divider(this));
    layout->addWidget(findingRow(findings[i], this));
  }
}

QStringList PrivacyCard::countTexts() const {
  QStringList texts;
  for (const Badge* badge : findChildren<Badge*>(QStringLiteral("countBadge")))
    texts << badge->text();
  return texts;
}

QStringList PrivacyCard::findingBadges() const {
  QStringList texts;
  for (const Badge* badge : findChildren<Badge*>(QStringLiteral("findingBadge")))
    texts << badge->text();
  return texts;
}

}  // namespace lumenscribe::app
