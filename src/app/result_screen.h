// SPDX-FileCopyrightText: 2026 Lumenscribe Project
// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <optional>
#include <string>

#include "app/presentation.h"
#include "lumenscribe/result.h"
#include "platform/opened_item.h"

class QLabel;
class QPropertyAnimation;
class QPushButton;
class QScrollArea;
class QVBoxLayout;

namespace lumenscribe::app {

class CachedFilePreview;
class Card;
class PillButton;
class PrivacyCard;
class RawMetadataBlock;
class SectionCard;
class WrappedText;

/// How the window asks the result screen to draw a result.
struct ResultPresentation {
  bool showRawMetadata = false;
  bool showCameraDetails = false;
  bool showVideoDetails = false;
  std::string previewSymbol = "doc.fill";
  bool isDirectory = false;
  /// "Create Clean Copy" is offered (an image of one picture in a format that can be written).
  bool canMakeCleanCopy = false;
  /// The inspected item, for its preview; none: the icon alone.
  std::shared_ptr<const platform::OpenedItem> item;
};

/// The actions of the top card that run in the background.
enum class ResultAction { compare, cleanCopy, saveReport };

/// The scrolling result screen: top card, summary, what the file reveals, one card per
/// section, the privacy card and the raw metadata. It draws what it is given and reports
/// what the user asks for; the window owns the state.
class ResultScreen : public QWidget {
  Q_OBJECT

 public:
  explicit ResultScreen(QWidget* parent = nullptr);

  void showResult(const LumenscribeResult& result, const ResultPresentation& presentation);
  void setRawMetadataShown(bool shown);
  void setDetailsShown(DetailKind kind, bool shown);

  /// Scrolls so that the widget carrying `anchor` is at the top ("pageTop",
  /// "sharingPrivacy", "section-..."); false when there is no such anchor.
  bool scrollToAnchor(const QString& anchor, bool animated = true);
  QWidget* anchorWidget(const QString& anchor) const;

  QScrollArea* scrollArea() const { return scroll_; }
  CachedFilePreview* preview() const { return preview_; }
  QList<SectionCard*> sectionCards() const;
  SectionCard* sectionCard(const QString& title) const;
  PrivacyCard* privacyCard() const { return privacyCard_; }
  RawMetadataBlock* rawMetadataBlock() const { return rawBlock_; }
  /// The severity pills in the order info, caution, warning.
  QList<PillButton*> severityPills() const { return severityPills_; }
  QList<PillButton*> summaryPills() const { return summaryPills_; }
  QLabel* verdictLabel() const { return verdict_; }
  PillButton* returnToTopButton() const { return returnToTop_; }
  QPushButton* actionButton(const QString& text) const;
  /// The button of an action: disabled while the action runs.
  void setActionRunning(ResultAction action, bool running);
  /// The line under the action buttons that says what runs in the background; empty hides it.
  void setActivity(const QString& text);
  QLabel* activityLabel() const { return activityText_; }

  /// Marks the whole screen as a place to drop while a drag of a file is over the window.
  void setTargeted(bool targeted);
  bool isTargeted() const;
  /// Where the keyboard starts on a new result: the page itself, so that the page and arrow
  /// keys scroll at once and the first Tab reaches the first action.
  void focusStart();

 signals:
  void inspectAnotherRequested();
  void compareRequested();
  void cleanCopyRequested();
  void saveReportRequested();
  void rawMetadataToggleRequested();
  void detailsToggleRequested(lumenscribe::app::DetailKind kind);
  void inspectFurtherRequested(const lumenscribe::InsightSection& section);
  /// The scroll position crossed the point where "Return to Top" appears or goes.
  void returnToTopWanted(bool wanted);
  void severityHovered(std::optional<lumenscribe::PrivacyLevel> level);
  void insightPillHovered(std::optional<QString> item);
  void diveDeeperHovered(std::optional<QString> sectionTitle);
  void returnToTopHovered(bool hovered);
  void topCardHovered(bool hovered);

 public slots:
  void setReturnToTopShown(bool shown);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void buildTopCard(QVBoxLayout* column);
  void rebuild();
  QWidget* buildSummaryCard(QWidget* parent);
  QWidget* buildRevealsCard(QWidget* parent);
  void placeReturnToTop();
  void orderTabStops();

  std::optional<LumenscribeResult> result_;
  ResultPresentation presentation_;
  QScrollArea* scroll_ = nullptr;
  QWidget* column_ = nullptr;
  Card* topCard_ = nullptr;
  CachedFilePreview* preview_ = nullptr;
  WrappedText* name_ = nullptr;
  QLabel* type_ = nullptr;
  QLabel* details_ = nullptr;
  QPushButton* compare_ = nullptr;
  QPushButton* cleanCopy_ = nullptr;
  QPushButton* saveReport_ = nullptr;
  QPushButton* inspectAnother_ = nullptr;
  QWidget* dropHighlight_ = nullptr;
  QWidget* activity_ = nullptr;
  QLabel* activityText_ = nullptr;
  bool running_[3] = {false, false, false};
  QWidget* body_ = nullptr;  // everything under the top card, remade per result
  QLabel* verdict_ = nullptr;
  QList<PillButton*> severityPills_;
  QList<PillButton*> summaryPills_;
  PrivacyCard* privacyCard_ = nullptr;
  RawMetadataBlock* rawBlock_ = nullptr;
  PillButton* returnToTop_ = nullptr;
  QPropertyAnimation* scrollAnimation_ = nullptr;
  bool returnToTopWanted_ = false;
  bool rebuildPending_ = false;
};

}  // namespace lumenscribe::app
