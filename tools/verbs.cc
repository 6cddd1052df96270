// Runs verbs.
#include "tools/verbs.h"

#include <exception>
#include <ios>
#include <utility>

#include "tools/document.h"

namespace vosmere::tool {
namespace {

int ExitCodeOf(const std::function<int()>& work) {
  try {
    return work();
  } catch (const Failure& failure) {
    PrintFailure(failure);
    return failure.exitCode;
  } catch (const std::ios::failure&) {
    throw;  // standard output failed, so the program ends
  } catch (const std::exception& error) {
    PrintFailure({kTrouble, std::string("vosmere: error: ") + error.what()});
    return kTrouble;
  }
}

}  // namespace

void OnRun(CLI::App& verb, int& exitCode, std::function<int()> work) {
  verb.callback([&exitCode, work = std::move(work)] { exitCode = ExitCodeOf(work); });
}

}  // namespace vosmere::tool
