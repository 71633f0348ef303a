#include "TavrinCommand/Widgets/UsageCommands.h"

#include "TavrinCommand/Widgets/UsageChart.h"
#include "TavrinCore/Base/ISO8601.h"
#include "TavrinCore/Kinds/ClaudeUsage/ClaudeUsage.h"
#include "TavrinCore/Text/DecimalText.h"
#include "TavrinCore/Text/Texts.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageBridge.h"
#include "TavrinStorage/ClaudeUsage/ClaudeUsageSource.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <cmath>
#include <fmt/format.h>
#include <limits>
#include <set>

namespace tavrin {
namespace {

constexpr int mostDays = 3660;
constexpr int projectWidth = 40;
constexpr int leastProjectWidth = 8;

struct Day {
  std::string date;
  ClaudeUsageTotals totals;
};

/// All that is printed.
struct Report {
  Date now;
  ClaudeUsageByScope byScope;
  std::vector<Day> days;
  ClaudeUsageTotals all;
  /// Of the last thirty days; on a terminal alone.
  UsageChart chart;
  std::optional<ClaudeUsageLimits> limits;
  bool isConnected = false;
};

UsageChart makeChart(const ClaudeUsageEntries& entries, const std::vector<Date>& starts,
                     const Calendar& calendar) {
  UsageChart chart{
      {}, calendar.localText(starts.front(), "MMMd"), calendar.localText(starts.back(), "MMMd")};
  for (const auto& totals : ClaudeUsage::totalsBetween(entries, starts))
    chart.tokens.push_back(totals.tokens);
  return chart;
}

Report makeReport(CommandContext& context, int dayCount) {
  const Calendar calendar;
  const Date now = context.platform().clock().now();
  const Date today = calendar.startOfDay(now);
  const Date tomorrow = calendar.startOfDay(calendar.addingDays(1, today));
  const Date first = calendar.startOfDay(calendar.addingDays(1 - dayCount, today));
  ClaudeUsageSource source(context.platform().fileManager().homeFolder() / ".claude");
  if (!source.isAvailable())
    throw HostError(ExitCode::failed, translated("Claude Code has not run here"));
  const bool hasChart = context.console().columns > 0 && !context.printsJSON();
  const auto chartStarts = ClaudeUsage::dayStarts(now, calendar, ClaudeUsage::chartDays);
  Date earliest = std::min(first, earliestStart(now, calendar));
  if (hasChart)
    earliest = std::min(earliest, chartStarts.front());
  const auto& entries = source.entries(earliest);
  Report report;
  report.now = now;
  report.byScope = ClaudeUsage::totalsByScope(entries, now, calendar);
  auto days = ClaudeUsage::dayStarts(now, calendar, dayCount);
  // Another computer's clock may be ahead, and what it logged belongs to the sum too.
  std::set<Date> ahead;
  for (const auto& entry : entries)
    if (entry.timestamp >= tomorrow)
      ahead.insert(calendar.startOfDay(entry.timestamp));
  days.insert(days.end(), ahead.begin(), ahead.end());
  auto totals = ClaudeUsage::totalsBetween(entries, days);
  for (std::size_t i = 0; i < days.size(); ++i)
    if (totals[i].messages > 0)
      report.days.push_back({calendar.text(days[i], "yyyy-MM-dd"), std::move(totals[i])});
  report.all =
      ClaudeUsage::totals(entries, DateInterval{first, {std::numeric_limits<double>::infinity()}});
  if (hasChart)
    report.chart = makeChart(entries, chartStarts, calendar);
  const ClaudeUsageBridge bridge(context.platform().fileManager());
  report.isConnected = bridge.isConnected();
  report.limits = bridge.limits();
  return report;
}

JSONValue::Object totalsJSON(const ClaudeUsageTotals& totals) {
  JSONValue::Object object{{"tokens", totals.tokens},
                           {"inputTokens", totals.inputTokens},
                           {"outputTokens", totals.outputTokens},
                           {"cacheCreationTokens", totals.cacheCreationTokens},
                           {"cacheReadTokens", totals.cacheReadTokens},
                           {"messages", totals.messages}};
  if (totals.lastActivity)
    object.emplace("lastActivity", iso8601(*totals.lastActivity));
  JSONValue::Array projects;
  for (const auto& project : totals.projects)
    projects.emplace_back(JSONValue::Object{{"name", project.name}, {"tokens", project.tokens}});
  object.emplace("projects", std::move(projects));
  return object;
}

JSONValue windowJSON(const ClaudeUsageWindow& window, Date now) {
  JSONValue::Object object{{"usedPercentage", window.usedAt(now)}};
  if (window.resetsAt)
    object.emplace("resetsAt", iso8601(*window.resetsAt));
  return object;
}

JSONValue limitsJSON(const ClaudeUsageLimits& limits, Date now) {
  JSONValue::Object object{{"readAt", iso8601(limits.readAt)}};
  if (limits.fiveHour)
    object.emplace("fiveHour", windowJSON(*limits.fiveHour, now));
  if (limits.sevenDay)
    object.emplace("sevenDay", windowJSON(*limits.sevenDay, now));
  if (limits.subscriptionType)
    object.emplace("subscriptionType", *limits.subscriptionType);
  return object;
}

JSONValue reportJSON(const Report& report) {
  JSONValue::Object scopes;
  for (const auto& [scope, totals] : report.byScope)
    scopes.emplace(nameOf(scope), totalsJSON(totals));
  JSONValue::Array days;
  for (const auto& day : report.days) {
    auto line = totalsJSON(day.totals);
    line.emplace("date", day.date);
    days.emplace_back(std::move(line));
  }
  JSONValue::Object object{{"scopes", std::move(scopes)},
                           {"days", std::move(days)},
                           {"total", totalsJSON(report.all)},
                           {"isConnected", report.isConnected}};
  if (report.limits)
    object.emplace("limits", limitsJSON(*report.limits, report.now));
  return object;
}

/// How much of the numbers a terminal has room for.
enum class Detail { whole, rounded, sums };

Table usageTable(const std::string& title, Detail detail) {
  std::vector<Table::Column> columns{{title, false, projectWidth}, {translated("TOKENS"), true}};
  const bool isWhole = detail == Detail::whole;
  if (detail != Detail::sums)
    for (const char* kind :
         {marked("INPUT"), marked("OUTPUT"), isWhole ? marked("CACHE WRITES") : marked("WRITES"),
          isWhole ? marked("CACHE READS") : marked("READS")})
      columns.push_back({translated(kind), true});
  columns.push_back({translated("MESSAGES"), true});
  return Table(std::move(columns));
}

void addRow(Table& table, std::string name, const ClaudeUsageTotals& totals, TextStyle style,
            Detail detail) {
  const auto number = detail == Detail::whole ? countText : ClaudeUsage::shortTokens;
  std::vector<Table::Cell> row{{std::move(name), style}, {number(totals.tokens), TextStyle::bold}};
  if (detail != Detail::sums)
    for (const auto tokens : {totals.inputTokens, totals.outputTokens, totals.cacheCreationTokens,
                              totals.cacheReadTokens})
      row.emplace_back(number(tokens));
  row.emplace_back(countText(totals.messages));
  table.add(std::move(row));
}

/// The periods and, where there are any, the days.
std::vector<Table> usageTables(const Report& report, Detail detail) {
  std::vector<Table> tables{usageTable(translated("PERIOD"), detail)};
  for (const auto& [scope, totals] : report.byScope)
    addRow(tables.back(), std::string(title(scope)), totals, TextStyle::plain, detail);
  if (report.days.empty())
    return tables;
  tables.push_back(usageTable(translated("DAY"), detail));
  for (const auto& day : report.days)
    addRow(tables.back(), day.date, day.totals, TextStyle::plain, detail);
  addRow(tables.back(), translated("All"), report.all, TextStyle::bold, detail);
  return tables;
}

Table projectTable(const Report& report, int columns) {
  Table projects({{translated("PROJECT"), false, projectWidth}, {translated("TOKENS"), true}});
  const auto numberOf = [](const ClaudeUsageProject& project) { return countText(project.tokens); };
  int room = projectWidth;
  for (const auto& project : report.all.projects)
    if (columns > 0)
      room = std::min(room, columns - 2 - displayWidth(numberOf(project)));
  for (const auto& project : report.all.projects)
    projects.add({truncated(project.name, std::max(room, leastProjectWidth)),
                  {numberOf(project), TextStyle::bold}});
  return projects;
}

void printTables(CommandContext& context, const Report& report) {
  const auto& console = context.console();
  std::vector<Table> tables;
  for (const auto detail : {Detail::whole, Detail::rounded, Detail::sums}) {
    tables = usageTables(report, detail);
    if (console.columns == 0 || std::ranges::all_of(tables, [&](const Table& table) {
          return table.width() <= console.columns;
        }))
      break;
  }
  if (report.days.empty())
    context.remark(translated("No messages were logged on these days"));
  else
    tables.push_back(projectTable(report, console.columns));
  for (const auto& table : tables) {
    if (&table != &tables.front())
      context.say("");
    table.print(console);
  }
}

void printChart(CommandContext& context, const Report& report) {
  const auto& console = context.console();
  const auto lines = report.chart.lines(console.columns);
  if (lines.empty())
    return;
  context.say("");
  context.say(console.styled(translated("TOKENS A DAY"), TextStyle::dim));
  for (const auto& line : lines)
    context.say(line);
}

void printLimits(CommandContext& context, const Report& report) {
  if (!report.isConnected || !report.limits)
    return;
  context.say("");
  Table table({{translated("LIMIT")}, {translated("USED"), true}, {translated("RESETS IN")}});
  for (const auto& [name, window] : {std::pair(translated("Five hours"), report.limits->fiveHour),
                                     std::pair(translated("Seven days"), report.limits->sevenDay)})
    if (window)
      table.add({name,
                 {wholePercentText(std::lround(window->usedAt(report.now))), TextStyle::bold},
                 ClaudeUsageLimitsFormat::untilReset(window->resetsAt, report.now).value_or("-")});
  table.print(context.console());
}

void addBridgeCommand(CLI::App& group, CommandContext& context, const char* name,
                      const std::string& description, void (ClaudeUsageBridge::*act)() const,
                      const std::string& done) {
  auto* command = group.add_subcommand(name, description);
  command->callback([&context, act, done] {
    (ClaudeUsageBridge(context.platform().fileManager()).*act)();
    context.say(done);
  });
  CommandContext::examples(*command, {{std::string("tavrin usage ") + name, description}});
}

} // namespace

void addUsageCommands(CLI::App& app, CommandContext& context) {
  auto* group = app.add_subcommand("usage", translated("Count the tokens that Claude Code used"));
  group->require_subcommand(0, 1);
  auto days = std::make_shared<int>(7);
  group->add_option("--days", *days, translated("Days to list, today included (7)"))
      ->check(CLI::Range(1, mostDays));
  context.addJSONFlag(*group);
  addBridgeCommand(
      *group, context, "connect", translated("Have Claude Code hand over the plan's limits"),
      &ClaudeUsageBridge::connect,
      translated("Connected. The limits show once Claude Code draws its status line."));
  addBridgeCommand(*group, context, "disconnect", translated("Put Claude Code's status line back"),
                   &ClaudeUsageBridge::disconnect, translated("Disconnected."));
  group->callback([group, &context, days] {
    if (!group->get_subcommands().empty())
      return;
    const Report report = makeReport(context, *days);
    if (context.printsJSON()) {
      context.print(reportJSON(report));
      return;
    }
    printTables(context, report);
    printChart(context, report);
    printLimits(context, report);
  });
  CommandContext::examples(
      *group, {{"tavrin usage", translated("by period, day and project")},
               {"tavrin usage --days 30 --json | jq .total.tokens", translated("of thirty days")}});
}

} // namespace tavrin
