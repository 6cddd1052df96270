// The verbs for stores.
#include <iostream>
#include <memory>

#include "tools/store.h"
#include "tools/verbs.h"

namespace vosmere::tool {
namespace {

void AddLog(CLI::App& app, int& exitCode) {
  const auto files = std::make_shared<Files>();
  CLI::App* const log =
      app.add_subcommand("log", "Print the changes in the log of a store")->footer(kExitCodes);
  log->add_option("STORE", files->in, "Folder of the store")->required();
  log->add_flag("--json", files->json, "Print one line of JSON per change");
  OnRun(*log, exitCode, [files] { return ShowLog(files->in, files->json, std::cout); });
}

void AddRecover(CLI::App& app, int& exitCode) {
  const auto files = std::make_shared<Files>();
  const auto checkpoint = std::make_shared<std::uint64_t>(0);
  CLI::App* const recover =
      app.add_subcommand("recover",
                         "List the checkpoints of a store, what they hold and whether they load")
          ->footer(kExitCodes);
  recover->add_option("STORE", files->in, "Folder of the store")->required();
  recover->add_option("--restore", *checkpoint, "Make a copy of this checkpoint the newest")
      ->type_name("NUMBER");
  recover->add_flag("--json", files->json, "Print one line of JSON per checkpoint");
  OnRun(*recover, exitCode,
        [=] { return Recover(files->in, *checkpoint, files->json, std::cout); });
}

}  // namespace

void AddStoreVerbs(CLI::App& app, int& exitCode) {
  AddLog(app, exitCode);
  AddRecover(app, exitCode);
}

}  // namespace vosmere::tool
