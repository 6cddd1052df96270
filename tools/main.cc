// The command line of vosmere: its general options, and the main function.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <iostream>
#include <map>
#include <system_error>

#include "tools/colors.h"
#include "tools/document.h"
#include "tools/platform.h"
#include "tools/text.h"
#include "tools/usage.h"
#include "tools/verbs.h"
#include "vosmere/base/version.h"

namespace vosmere::tool {
namespace {

void SetUp(CLI::App& app) {
  app.set_version_flag("--version", "vosmere " VOSMERE_VERSION_TEXT " (" VOSMERE_PLATFORM ")");
  const std::map<std::string, Colors> colors = {
      {"auto", Colors::kAuto}, {"always", Colors::kAlways}, {"never", Colors::kNever}};
  app.add_option_function<std::string>(
         "--color",
         [colors](const std::string& when) {
           const auto found = colors.find(when);
           if (found == colors.end())
             throw CLI::ValidationError("--color", "is not known: " + when);
           SetColors(found->second);
         },
         "Color messages and differences: always, never, or auto: on a terminal, unless NO_COLOR "
         "is set")
      ->type_name("WHEN");
  app.add_option_function<std::string>(
         "--generate",
         [&app](const std::string& form) {
           PrintUsage(app, form, std::cout);
           throw CLI::Success();
         },
         "Print the man page (man), or the completion for a shell (bash, zsh, fish)")
      ->check(CLI::IsMember(kUsageForms))
      ->type_name("FORM");
  app.require_subcommand(1);
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.footer(kExitCodes);
  for (const char* const noise : {"TEXT", "REQUIRED"}) app.get_formatter()->label(noise, "");
}

/// Names what was not expected, and what may have been meant.
void PrintUnknown(const CLI::App& app) {
  const std::vector<CLI::App*> verbs = app.get_subcommands();
  const std::vector<std::string> unknown = app.remaining(true);
  if (unknown.empty()) return;
  const std::string suggestion = Suggestion(app, verbs.empty() ? app : *verbs[0], unknown[0]);
  if (verbs.empty() && unknown[0][0] != '-')
    std::cerr << '\'' << Printable(unknown[0]) << "' is not a subcommand" << suggestion << '\n';
  else if (!suggestion.empty())
    std::cerr << '\'' << Printable(unknown[0]) << "' is not known" << suggestion << '\n';
}

/// Runs the verb that the arguments name. Returns the exit code of the arguments alone.
int Parse(CLI::App& app, const Arguments& arguments) try {
  for (CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
    verb->fallthrough();  // options of all verbs may come after the verb
  app.parse(Arguments(arguments.rbegin(), arguments.rend()));  // CLI11 expects the reverse order
  return kFine;
} catch (const CLI::ParseError& error) {
  if (error.get_exit_code() != 0) PrintUnknown(app);
  return app.exit(error) == 0 ? kFine : kTrouble;
}

int Main(const Arguments& arguments) {
  CLI::App app("Show, check, copy and export VosmereBase documents.", "vosmere");
  SetUp(app);
  int exitCode = kFine;
  AddDocumentVerbs(app, exitCode);
  AddExchangeVerbs(app, exitCode);
  AddStoreVerbs(app, exitCode);
  const int parsed = Parse(app, arguments);
  return std::max(exitCode, parsed);
}

int Program(const Arguments& arguments) try {
  std::cout.exceptions(std::ios::badbit);  // errno holds the reason only right after the failure
  const int exitCode = Main(arguments);
  if (exitCode != kTrouble)
    std::cout.exceptions(std::ios::badbit);  // again, for verbs that work without
  std::cout.flush();
  return exitCode;
} catch (const std::ios::failure&) {
  const std::string reason = std::generic_category().message(errno);
  std::cerr.tie(nullptr);  // writing to cerr would flush cout, which fails again
  std::cerr << "vosmere: error: the output cannot be written: " << reason << '\n';
  return kTrouble;
}

}  // namespace
}  // namespace vosmere::tool

int main(int argc, char** argv) {
  return vosmere::tool::RunProgram(argc, argv, vosmere::tool::Program);
}
