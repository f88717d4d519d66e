// `scr trail`: what was left for crash reports.
#include <fmt/format.h>

#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "app/Output.h"
#include "app/Verbs.h"
#include "host/qelcore/CrashTrail.h"

namespace app {

namespace host = qelcore::host;
using qelcore::debug::brindle::TrailValue;

namespace {

/// A value on lines of its own when it has several.
std::string Describe(const TrailValue& value) {
  if (const bool* const truth = std::get_if<bool>(&value)) return *truth ? " true" : " false";
  const std::string& text = std::get<std::string>(value);
  if (text.find('\n') == std::string::npos) return " " + Printable(text);
  std::string lines;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    lines += "\n      " + Printable(std::string_view(text).substr(begin, end - begin));
    begin = end + 1;
  }
  return lines;
}

std::string Describe(const host::Trail& trail) {
  std::string text = "  trail\n";
  for (const auto& [key, value] : trail.mDictionary)
    text += fmt::format("    {}:{}\n", Printable(key), Describe(value));
  for (const TrailValue& value : trail.mList) text += fmt::format("    -{}\n", Describe(value));
  return text;
}

void ShowTrail() {
  std::optional<host::LastTrail> last;
  try {
    last = host::ReadLastTrail();
  } catch (const std::exception& error) {
    throw UserError(std::string(error.what()) + "; the next run that leaves a trail replaces it");
  }
  if (!last) {
    Print("No trail was left yet; a run that finds issues leaves one.\n");
    return;
  }
  std::string text = fmt::format("Left on {}\n", Printable(last->mTime));
  for (const host::Trail& trail : last->mTrails) text += Describe(trail);
  for (const auto& [name, value] : last->mMarkers)
    text += fmt::format("  {}:{}\n", Printable(name), Describe(value));
  Print(text);
}

}  // namespace

void AddTrailVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("trail", "What was left for crash reports");
  verb->group("Verbs")->footer(
      "The trail that the last run left for crash reports: the identifiers of the known issues and their "
      "number.\n"
      "docs/formats/crash-trail.md describes the file.\n"
      "\n"
      "  scr trail\n");
  verb->callback(ShowTrail);
}

}  // namespace app
