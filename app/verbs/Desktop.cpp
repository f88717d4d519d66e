// `scr desktop`: a small host application.
#include <memory>
#include <string>

#include "app/DesktopHost.h"
#include "app/Download.h"
#include "app/LazyToolkit.h"
#include "app/Output.h"
#include "app/Verbs.h"

namespace app {

namespace {

void Desktop(const std::string& base) {
  LazyToolkit toolkit;
  toolkit.Require();
  DesktopHost(base).Run();
}

}  // namespace

void AddDesktopVerb(CLI::App& application, ExitCode&) {
  CLI::App* const verb = application.add_subcommand("desktop", "A small application that uses the report");
  verb->group("Verbs")->footer(
      "Opens a window with menus, makes the run at launch, and offers the report, the optimizer, a script\n"
      "console and the refresh from there: what an application does with the library.\n"
      "\n"
      "  scr desktop\n"
      "  scr desktop --base https://updates.example.com    fetches a newer blocklist in the background\n");
  const auto base = std::make_shared<std::string>();
  verb->add_option("--base", *base, "Address that blocklists are below, http or https")->option_text("URL");
  verb->callback([base] { Desktop(*base); });
}

}  // namespace app
