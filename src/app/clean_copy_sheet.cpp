// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#include "app/clean_copy_sheet.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <vector>

#include "app/card.h"
#include "app/icons.h"
#include "app/text_labels.h"
#include "app/theme.h"
#include "core/path_text.h"

namespace lumenscribe::app {

namespace {

// What the check of a kept copy found, in words. A kept copy has passed it: its picture
// reads back at the original's size with nothing personal left, and a pixel-safe copy
// decodes to the original's very pixels.
struct Finding {
  QString text;
  bool caveat = false;
};

std::vector<Finding> checkFindings(CleanCopyKind kind, const CleanCopyCheck& check) {
  std::vector<Finding> findings;
  if (check.pixelsCompared && check.pixelsMatch) {
    findings.push_back(
        {QStringLiteral("The copy decodes to exactly the same pixels as the "
                        "original.")});
  }
  if (check.sameSize) {
    findings.push_back(
        {QStringLiteral("The copy reads back as a picture of the original’s size.")});
  }
  if (check.personalProperties.empty()) {
    findings.push_back(
        {QStringLiteral("No camera, location, creator or software details are left.")});
  }
  if (kind == CleanCopyKind::standard) {
    findings.push_back({QStringLiteral("The picture was encoded again at the highest quality, so "
                                       "its pixels may differ slightly from the original’s."),
                        true});
  }
  return findings;
}

QString pathText(const std::filesystem::path& path) { return qText(validUtf8(path.string())); }

}  // namespace

CleanCopySheet::CleanCopySheet(std::filesystem::path copy, CleanCopyKind kind,
                               const CleanCopyCheck& check, QWidget* parent)
    : QDialog(parent), copy_(std::move(copy)) {
  setObjectName(QStringLiteral("cleanCopySheet"));
  setWindowTitle(QStringLiteral("Create Clean Copy"));

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(28, 24, 28, 18);
  layout->setSpacing(12);

  auto* header = new QHBoxLayout;
  header->setSpacing(14);
  header->addWidget(new SymbolView("checkmark.seal.fill", Accent::green, 30, this), 0,
                    Qt::AlignTop);
  auto* titles = new QVBoxLayout;
  titles->setSpacing(2);
  auto* title = new QLabel(QStringLiteral("Clean Copy Saved"), this);
  title->setObjectName(QStringLiteral("headerTitle"));
  title->setFont(scaledFont(font(), 1.5, QFont::DemiBold));
  titles->addWidget(title);
  titles->addWidget(quietLabel(
      QStringLiteral("A copy of the image was saved without its privacy metadata. The original "
                     "is unchanged."),
      this));
  header->addLayout(titles, 1);
  layout->addLayout(header);
  layout->addWidget(new Divider(this));

  auto* rows = new QGridLayout;
  rows->setHorizontalSpacing(12);
  rows->setVerticalSpacing(6);
  rows->setColumnMinimumWidth(0, 80);
  rows->setColumnStretch(1, 1);
  const auto addRow = [this, rows](const QString& label, const QString& value) {
    const int row = rows->rowCount();
    rows->addWidget(quietLabel(label, this), row, 0, Qt::AlignTop);
    rows->addWidget(valueLabel(value, this), row, 1);
  };
  addRow(QStringLiteral("Saved As"), qText(validUtf8(lastPathComponent(copy_))));
  addRow(QStringLiteral("Folder"), pathText(copy_.parent_path()));
  addRow(QStringLiteral("Method"), kind == CleanCopyKind::pixelSafe
                                       ? QStringLiteral("Pixel-safe: the image data was copied "
                                                        "as it is, only the metadata was left out")
                                       : QStringLiteral("Standard: the image was decoded and "
                                                        "encoded again without its metadata"));
  layout->addLayout(rows);

  auto* card = new Card(this);
  card->setObjectName(QStringLiteral("checkCard"));
  auto* cardLayout = new QVBoxLayout(card);
  cardLayout->setContentsMargins(16, 12, 16, 14);
  cardLayout->setSpacing(8);
  auto* heading = new QHBoxLayout;
  heading->setSpacing(8);
  heading->addWidget(new SymbolView("checkmark.shield.fill", Accent::green, 18, card));
  auto* headingText = new QLabel(QStringLiteral("Checked After Saving"), card);
  headingText->setFont(scaledFont(font(), 1.05, QFont::DemiBold));
  heading->addWidget(headingText);
  heading->addStretch(1);
  cardLayout->addLayout(heading);
  auto* list = new QGridLayout;
  list->setHorizontalSpacing(10);
  list->setVerticalSpacing(6);
  list->setColumnStretch(1, 1);
  for (const Finding& finding : checkFindings(kind, check)) {
    const int row = list->rowCount();
    list->addWidget(new SymbolView(finding.caveat ? "info.circle.fill" : "checkmark.circle",
                                   finding.caveat ? Accent::blue : Accent::green, 16, card),
                    row, 0, Qt::AlignTop);
    list->addWidget(valueLabel(finding.text, card), row, 1);
    findings_ << finding.text;
  }
  cardLayout->addLayout(list);
  layout->addWidget(card);
  layout->addStretch(1);

  auto* buttons = new QDialogButtonBox(this);
  inspect_ = buttons->addButton(QStringLiteral("Inspect Copy"), QDialogButtonBox::ActionRole);
  setButtonSymbol(inspect_, "doc.text.magnifyingglass");
  inspect_->setToolTip(QStringLiteral("Inspect the clean copy in this window"));
  done_ = buttons->addButton(QStringLiteral("Done"), QDialogButtonBox::AcceptRole);
  done_->setDefault(true);
  done_->setFocus();
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(inspect_, &QPushButton::clicked, this, [this] {
    emit inspectRequested(copy_);
    accept();
  });
  layout->addWidget(buttons);

  // Wrapped lines need the height their width gives them; a window does not ask for it itself.
  constexpr int kWidth = 560;
  setMinimumSize(480, heightForWidth(kWidth));
  resize(kWidth, heightForWidth(kWidth));
}

}  // namespace lumenscribe::app
