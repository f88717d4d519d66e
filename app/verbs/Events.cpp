// `scr events`: what was recorded for analytics.
#include <fmt/format.h>

#include <memory>
#include <string>
#include <system_error>
#include <variant>

#include "app/Output.h"
#include "app/Paths.h"
#include "app/Verbs.h"
#include "host/qelappsupport/HostSetup.h"
#include "host/qelcore/HostSetup.h"
#include "host/qelcore/diagnostics/JsonLinesLog.h"
#include "platform/qelcore/Json.h"

namespace app {

namespace appsupport = qelappsupport::host;
namespace host = qelcore::host;
using qelappsupport::analytics::SDMEvent;

namespace {

struct Arguments {
  bool mStatistics = false;
  bool mJson = false;
};

std::string Describe(const SDMEvent::Item& item) {
  const std::string name = fmt::format("    {:<8} {:<22}", Printable(item.mGroup), Printable(item.mKey));
  switch (item.mKind) {
    case SDMEvent::ItemKind::kNone:
      return name + " (none)\n";
    case SDMEvent::ItemKind::kUnknown:
      return name + " (unknown)\n";
    case SDMEvent::ItemKind::kValue:
      break;
  }
  return name + fmt::format(" \"{}\"\n", Printable(item.mValue));
}

std::string Describe(const appsupport::RecordedEvent& recorded) {
  std::string text = Printable(recorded.mTime) + " ";
  for (const std::string& name : recorded.mEvent.GetTexts()) text += " " + Printable(name);
  text += "\n";
  for (const SDMEvent::Item& item : recorded.mEvent.GetItems()) text += Describe(item);
  return text;
}

std::string Describe(const host::UsageFigure& figure) {
  const std::string name = fmt::format("    {:<34}", Printable(figure.mKey));
  if (const bool* const truth = std::get_if<bool>(&figure.mValue))
    return name + (*truth ? " true\n" : " false\n");
  return name + fmt::format(" \"{}\"\n", Printable(std::get<std::string>(figure.mValue)));
}

std::string Describe(const host::UsageEntry& entry) {
  std::string text =
      fmt::format("{}  {} {}\n", Printable(entry.mTime), Printable(entry.mGroup), Printable(entry.mEvent));
  if (!entry.mFigures) {
    text += fmt::format("    \"{}\"\n", Printable(entry.mValue));
    if (!entry.mSecondValue.empty()) text += fmt::format("    \"{}\"\n", Printable(entry.mSecondValue));
    return text;
  }
  for (const host::UsageFigure& figure : *entry.mFigures) text += Describe(figure);
  return text;
}

void WarnOfDamage(const std::string& file, std::size_t damagedLines) {
  if (damagedLines > 0)
    PrintDiagnostic(fmt::format("warning: {}: {} damaged lines were left out", file, damagedLines));
}

/// Prints the records of a file as JSON Lines.
void PrintJson(const std::string& file) {
  const host::JsonLinesLog log(ToUTF8(ToPath(file).filename()), "app::PrintJson");
  const host::JsonLines lines = log.Read();
  std::string text;
  for (const qelcore::json::Dictionary& object : lines.mObjects)
    text += qelcore::json::Serialise(object) + "\n";
  Print(text);
  WarnOfDamage(file, lines.mDamagedLines);
}

/// Prints the entries, or why there are none.
template <typename Entries>
void PrintEntries(const Entries& entries, std::size_t damagedLines, const std::string& file,
                  std::string_view whatRecords) {
  std::string text;
  for (const auto& entry : entries) text += Describe(entry);
  if (text.empty()) text = fmt::format("Nothing is recorded in {} yet; {}.\n", Printable(file), whatRecords);
  Print(text);
  WarnOfDamage(file, damagedLines);
}

void ShowEvents(const Arguments& arguments) {
  try {
    if (arguments.mJson) {
      PrintJson(arguments.mStatistics ? host::GetUsageFile() : appsupport::GetEventsFile());
    } else if (arguments.mStatistics) {
      const host::UsageEntries entries = host::ReadUsageEntries();
      PrintEntries(entries.mEntries, entries.mDamagedLines, host::GetUsageFile(),
                   "\"scr launch\" records the figures of its run");
    } else {
      const appsupport::RecordedEvents events = appsupport::ReadEvents();
      PrintEntries(events.mEvents, events.mDamagedLines, appsupport::GetEventsFile(),
                   "a report records something");
    }
  } catch (const std::system_error& error) {
    throw UserError(error.what());
  }
}

}  // namespace

void AddEventsVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("events", "What was recorded for analytics");
  verb->group("Verbs")->footer(
      "The events that the report recorded on this machine, oldest first, each with its items in their "
      "order.\n"
      "An item has a value, none, or one that is not known. Nothing is ever sent anywhere; the settings\n"
      "host.record_analytics and host.record_statistics turn the recording off.\n"
      "\n"
      "  scr events                 the events, to be read\n"
      "  scr events --statistics    the figures about runs instead\n"
      "  scr events --json          as they are recorded, a JSON object a line\n");
  const auto arguments = std::make_shared<Arguments>();
  verb->add_flag("--statistics", arguments->mStatistics, "Show the usage statistics instead of the events");
  verb->add_flag("--json", arguments->mJson, "Print JSON Lines");
  verb->callback([arguments] { ShowEvents(*arguments); });
}

}  // namespace app
