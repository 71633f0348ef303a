#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsagePanelView.h"

#include "TavrinCore/Text/ComputerWords.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageModel.h"
#include "TavrinWidgetsUI/ClaudeUsage/ClaudeUsageViews.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelButton.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelFigure.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelSegments.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelStyle.h"
#include "TavrinWidgetsUI/Kit/Panels/PanelText.h"
#include "TavrinWidgetsUI/Kit/Utf8.h"
#include "TavrinWidgetsUI/Kit/Views/Gauges.h"
#include "TavrinWidgetsUI/Kit/Views/ViewWidget.h"
#include "TavrinWidgetsUI/Kit/Words.h"

#include <QVBoxLayout>
#include <algorithm>

namespace tavrin {
namespace {

constexpr double contentWidth = 288;
constexpr double rowHeight = 20;
constexpr double limitHeight = 36;
constexpr double barHeight = 6;
constexpr double chartHeight = 34;
constexpr std::size_t mostProjects = 5;
constexpr std::size_t leastProjects = 1;

QString shortText(std::int64_t tokens) {
  return QString::fromStdString(ClaudeUsage::shortTokens(tokens));
}
QString grouped(std::int64_t number) {
  return QString::fromStdString(countText(number));
}

/// A quiet name at the left, a number of tokens at the right.
AnyView numberRow(const QString& name, const QString& number, const PanelPalette& colours) {
  return hstack({text(name).size(13).colour(colours.secondary).fillWidth(),
                 text(number).size(13).colour(colours.text)})
      .spacing(12)
      .height(rowHeight)
      .accessibility(name, worded("{count} tokens", {{"count", number}}));
}
AnyView kindRow(const QString& name, std::int64_t tokens, const PanelPalette& colours) {
  return numberRow(name, grouped(tokens), colours);
}

/// A name, a part as number and bar, and a remark between them.
AnyView levelRow(const QString& name, double fraction, const QString& remark,
                 const PanelPalette& colours) {
  const QColor tint = withContrast(claudeUsageLevelTint(fraction), colours.ground, 3);
  return vstack({hstack({text(name).size(13).colour(colours.text), spacer(8),
                         text(remark).size(13).colour(colours.secondary),
                         text(percentText(fraction))
                             .size(13)
                             .weight(FontWeight::semibold)
                             .colour(colours.text)
                             .align(TextAlignment::trailing)
                             .width(44, Alignment::trailing)}),
                 bar(std::min(fraction, 1.0)).tint(tint).track(colours.track).height(barHeight)})
      .spacing(6)
      .height(limitHeight)
      .accessibility(name, remark.isEmpty()
                               ? worded("{percent} used", {{"percent", percentText(fraction)}})
                               : worded("{percent} used, {remark}",
                                        {{"percent", percentText(fraction)}, {"remark", remark}}));
}

PanelText* sectionTitle(const QString& title) {
  return new PanelText(title, PanelTextStyle::section);
}

/// A bar for each day, today's in the tint.
struct DayBars {
  std::vector<double> shares;
  QColor ink;
  QColor today;
  QColor track;
  bool operator==(const DayBars&) const = default;
};

void paintDays(QPainter& painter, const QRectF& rect, const DayBars& bars) {
  if (bars.shares.empty())
    return;
  constexpr double gap = 2;
  constexpr double least = 2;
  const auto count = static_cast<double>(bars.shares.size());
  const double width = (rect.width() - gap * (count - 1)) / count;
  painter.setPen(Qt::NoPen);
  for (std::size_t i = 0; i < bars.shares.size(); ++i) {
    const double share = bars.shares[i];
    const double height = std::max(least, rect.height() * share);
    painter.setBrush(share <= 0 ? bars.track : i + 1 == bars.shares.size() ? bars.today : bars.ink);
    painter.drawRoundedRect(QRectF(rect.left() + static_cast<double>(i) * (width + gap),
                                   rect.bottom() - height, width, height),
                            1.5, 1.5);
  }
}

} // namespace

/// Rows of which as many show as the panel has room for.
class ClaudeUsagePanelView::Projects final : public ViewWidget {
public:
  Projects() : ViewWidget({contentWidth, 0}) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Maximum);
  }

  void setRows(std::vector<AnyView> rows) {
    rows_ = std::move(rows);
    updateGeometry();
    showRows();
  }
  QSize sizeHint() const override { return sizeOf(rows_.size()); }
  QSize minimumSizeHint() const override { return sizeOf(std::min(rows_.size(), leastProjects)); }

protected:
  void resizeEvent(QResizeEvent* event) override {
    ViewWidget::resizeEvent(event);
    showRows();
  }

private:
  static QSize sizeOf(std::size_t count) {
    return QSizeF(contentWidth, static_cast<double>(count) * rowHeight).toSize();
  }
  void showRows() {
    const auto fitting = static_cast<std::size_t>(std::max(height(), 0) / rowHeight);
    auto shown = rows_;
    shown.resize(std::min(shown.size(), fitting));
    shown.push_back(spacer());
    setViewSize(QSizeF(contentWidth, height()));
    setView(vstack(std::move(shown)));
  }

  std::vector<AnyView> rows_;
};

ClaudeUsagePanelView::ClaudeUsagePanelView(const PanelAppearance& appearance,
                                           ClaudeUsageModel& model,
                                           std::function<void(ClaudeUsageScope)> onScope,
                                           std::function<void()> onEdit)
    : PanelView(appearance, Width::lists), model_(model),
      empty_(new PanelEmptyState("sparkle", {})), content_(new QWidget),
      scopes_(new PanelSegments(worded("Period"),
                                {worded("5 Hours"), worded("Today"), worded("7 Days")})),
      tokens_(new PanelFigure(40)), messages_(new PanelText({}, PanelTextStyle::secondary)),
      budget_(new ViewWidget({contentWidth, limitHeight})),
      kinds_(new ViewWidget({contentWidth, 4 * rowHeight})),
      daysTitle_(sectionTitle(worded("Thirty days"))),
      days_(new ViewWidget({contentWidth, chartHeight})),
      projectsTitle_(sectionTitle(worded("Busiest projects"))), projects_(new Projects),
      limitsTitle_(sectionTitle(worded("Plan limits"))),
      limits_(new ViewWidget({contentWidth, limitHeight})),
      noLimits_(new PanelText({}, PanelTextStyle::secondary)) {
  add(empty_);
  auto* column = new QVBoxLayout(content_);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(8);
  messages_->setAlignment(Qt::AlignHCenter);
  tokens_->setUnit(worded("tokens"));
  tokens_->setName(worded("Tokens used"));
  for (QWidget* widget : std::initializer_list<QWidget*>{
           scopes_, tokens_, messages_, budget_, kinds_, daysTitle_, days_, projectsTitle_,
           projects_, limitsTitle_, limits_, noLimits_,
           new PanelText(
               utf8(localSentence(translated("Read from Claude Code's own files on this {Mac}. "
                                             "Nothing is sent anywhere."))),
               PanelTextStyle::caption)})
    column->addWidget(widget, 0, widget == tokens_ ? Qt::AlignHCenter : Qt::Alignment());
  add(content_);
  scopes_->onChange = [onScope = std::move(onScope)](int index) {
    onScope(static_cast<ClaudeUsageScope>(index));
  };
  setEditButton(worded("Edit Claude Usage…"), std::move(onEdit));
  connect_ = new PanelButton(PanelButton::Kind::faint, worded("Turn On Limits"),
                             [this] { model_.setConnected(!model_.isConnected()); });
  addFooterButton(connect_);
  refresh();
}

void ClaudeUsagePanelView::refresh() {
  setTitle(QString::fromStdString(model_.widget().name));
  const bool hasContent = model_.hasRead() && model_.isAvailable();
  empty_->setVisible(!hasContent);
  content_->setVisible(hasContent);
  connect_->setVisible(hasContent);
  connect_->setTitle(model_.isConnected() ? worded("Turn Off Limits") : worded("Turn On Limits"));
  if (!hasContent) {
    setState({});
    empty_->setSentence("sparkle", model_.hasRead()
                                       ? utf8(localSentence(translated(
                                             "Claude Code has not run on this {Mac}, so there "
                                             "is nothing to count.")))
                                       : worded("Reading Claude Code's logs"));
    return;
  }
  QString plan;
  if (const auto& limits = model_.limits(); limits && limits->subscriptionType)
    plan = QString::fromStdString(*limits->subscriptionType);
  setState(plan.left(1).toUpper() + plan.mid(1));
  showTotals();
  showDays();
  showLimits();
  // Higher than a panel may be, its parts would be cut: what can go, goes.
  for (const auto& [title, part] : {std::pair<QWidget*, QWidget*>{projectsTitle_, projects_},
                                    std::pair<QWidget*, QWidget*>{daysTitle_, days_}}) {
    content_->updateGeometry();
    layout()->invalidate();
    fittingSize();
    if (layout()->totalMinimumHeightForWidth(minimumWidth()) <= panel::maximumHeight)
      return;
    title->hide();
    part->hide();
  }
}

void ClaudeUsagePanelView::showDays() {
  const auto& days = model_.days();
  daysTitle_->setVisible(!days.empty());
  days_->setVisible(!days.empty());
  if (days.empty())
    return;
  const auto most = std::ranges::max_element(days, {}, &ClaudeUsageModel::Day::tokens);
  std::int64_t sum = 0;
  DayBars bars{{},
               withContrast(mix(colours().ground, claudeUsageTint, 0.6), colours().ground, 2),
               withContrast(claudeUsageTint, colours().ground, 3),
               colours().track};
  for (const auto& day : days) {
    sum += day.tokens;
    bars.shares.push_back(
        most->tokens > 0 ? static_cast<double>(day.tokens) / static_cast<double>(most->tokens) : 0);
  }
  days_->setView(canvas(bars, paintDays));
  days_->setName(worded("Tokens of each of the last thirty days"));
  days_->setAccessibleDescription(
      sum == 0 ? worded("No tokens were used.")
               : worded("{all} tokens in all, at most {most}, on {day}, and {today} today.",
                        {{"all", shortText(sum)},
                         {"most", shortText(most->tokens)},
                         {"day", Calendar().localText(most->start, "MMMd")},
                         {"today", shortText(days.back().tokens)}}));
}

void ClaudeUsagePanelView::showTotals() {
  const auto settings = model_.settings();
  const auto totals = model_.totals();
  scopes_->setCurrent(static_cast<int>(settings.scope));
  tokens_->setText(shortText(totals.tokens));
  QString messages = messagesText(totals.messages);
  if (totals.lastActivity)
    messages = worded("{messages}, last {time}",
                      {{"messages", messages},
                       {"time", Calendar().isSameDay(*totals.lastActivity, model_.now())
                                    ? Calendar().localText(*totals.lastActivity, "jmm")
                                    : Calendar().localText(*totals.lastActivity, "EEEjmm")}});
  messages_->setWords(messages);
  budget_->setVisible(settings.budget && *settings.budget > 0);
  if (settings.budget && *settings.budget > 0)
    budget_->setView(
        levelRow(worded("Budget"),
                 static_cast<double>(totals.tokens) / static_cast<double>(*settings.budget),
                 worded("of {budget}", {{"budget", shortText(*settings.budget)}}), colours()));
  kinds_->setView(vstack({kindRow(worded("Input"), totals.inputTokens, colours()),
                          kindRow(worded("Output"), totals.outputTokens, colours()),
                          kindRow(worded("Cache writes"), totals.cacheCreationTokens, colours()),
                          kindRow(worded("Cache reads"), totals.cacheReadTokens, colours())}));
  std::vector<AnyView> rows;
  for (const auto& project : totals.projects)
    if (rows.size() < mostProjects)
      rows.push_back(
          numberRow(QString::fromStdString(project.name), shortText(project.tokens), colours()));
  projectsTitle_->setVisible(!rows.empty());
  projects_->setVisible(!rows.empty());
  projects_->setRows(std::move(rows));
}

void ClaudeUsagePanelView::showLimits() {
  std::vector<AnyView> rows;
  if (const auto& limits = model_.limits(); limits && model_.isConnected())
    for (const auto& [name, window] : {std::pair(worded("Five hours"), limits->fiveHour),
                                       std::pair(worded("Seven days"), limits->sevenDay)})
      if (window) {
        const auto left = ClaudeUsageLimitsFormat::untilReset(window->resetsAt, model_.now());
        rows.push_back(levelRow(name, usedFraction(*window, model_.now()),
                                left ? worded("{time} left", {{"time", *left}}) : QString(),
                                colours()));
      }
  limits_->setVisible(!rows.empty());
  const auto& error = model_.bridgeError();
  noLimits_->setVisible(rows.empty() || !error.empty());
  noLimits_->setWords(error.empty() ? missingLimitsText(model_.isConnected())
                                    : QString::fromStdString(error));
  if (rows.empty())
    return;
  limits_->setViewSize({contentWidth, static_cast<double>(rows.size()) * limitHeight});
  limits_->setView(vstack(std::move(rows)));
}

} // namespace tavrin
