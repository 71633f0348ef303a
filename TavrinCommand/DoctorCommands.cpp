#include "TavrinCommand/DoctorCommands.h"
#include "TavrinCore/Text/Texts.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace tavrin {
namespace {

JSONValue reportJSON(const DesktopReport& report) {
  JSONValue::Array items;
  for (const auto& item : report.items) {
    JSONValue::Array kinds(item.kinds.begin(), item.kinds.end());
    items.emplace_back(JSONValue::Object{{"topic", item.topic},
                                         {"state", name(item.state)},
                                         {"sentence", item.sentence},
                                         {"remedy", item.remedy},
                                         {"kinds", std::move(kinds)}});
  }
  return items;
}

std::string filled(std::string text, int columns) {
  return text.append(static_cast<std::size_t>(columns - displayWidth(text)), ' ');
}

void doctor(CommandContext& context) {
  const auto report = context.platform().desktopReport();
  if (context.printsJSON()) {
    context.print(reportJSON(report));
    return;
  }
  int states = 0;
  int topics = 0;
  for (const auto& item : report.items) {
    states = std::max(states, displayWidth(translation(name(item.state))));
    topics = std::max(topics, displayWidth(translation(item.topic)));
  }
  for (const auto& item : report.items) {
    context.say(filled(translated(name(item.state)), states) + "  " +
                filled(translated(item.topic), topics) + "  " + printable(item.sentence));
    const std::string margin(static_cast<std::size_t>(states + 2 + topics + 2), ' ');
    if (!item.kinds.empty())
      context.say(margin + translated("For: {kinds}.",
                                      {{"kinds", fmt::format("{}", fmt::join(item.kinds, ", "))}}));
    if (!item.remedy.empty())
      context.say(margin + printable(item.remedy));
  }
}

void printAutostart(CommandContext& context, const Autostart::Status& status) {
  if (context.printsJSON())
    context.print(JSONValue::Object{
        {"isOn", status.isOn}, {"isAvailable", status.isAvailable}, {"sentence", status.sentence}});
  else
    context.say(printable(status.sentence));
}

void setAutostart(CommandContext& context, bool isOn) {
  const auto status = context.platform().autostart().set(isOn);
  if (status.isOn != isOn)
    throw HostError(ExitCode::failed, status.sentence);
  printAutostart(context, status);
}

} // namespace

void addDoctorCommands(CLI::App& app, CommandContext& context) {
  auto* looking =
      app.add_subcommand("doctor", translated("Tell what this desktop has for widgets, and lacks"));
  context.addJSONFlag(*looking);
  looking->callback([&context] { doctor(context); });
  CommandContext::examples(*looking,
                           {{"tavrin doctor", translated("what is there, and what to do")},
                            {"tavrin doctor --json", translated("for scripts")}});

  auto* starting =
      app.add_subcommand("autostart", translated("Start the widgets with the session, or not"));
  starting->require_subcommand(1);
  auto* on = starting->add_subcommand(
      "on", translated("Start the placed widgets whenever a session begins"));
  on->callback([&context] { setAutostart(context, true); });
  CommandContext::examples(*on, {{"tavrin autostart on", translated("from the next session on")}});
  auto* off = starting->add_subcommand("off", translated("Leave it"));
  off->callback([&context] { setAutostart(context, false); });
  CommandContext::examples(*off,
                           {{"tavrin autostart off", translated("what runs goes on running")}});
  auto* status = starting->add_subcommand("status", translated("Tell which of the two it is"));
  context.addJSONFlag(*status);
  status->callback(
      [&context] { printAutostart(context, context.platform().autostart().status()); });
  CommandContext::examples(*status,
                           {{"tavrin autostart status --json", translated("for scripts")}});
  CommandContext::examples(*starting,
                           {{"tavrin autostart on", translated("from the next session on")},
                            {"tavrin autostart status --json", translated("for scripts")}});
}

} // namespace tavrin
