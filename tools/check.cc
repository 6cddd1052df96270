#include "tools/check.h"

#include <iostream>
#include <optional>

#include "tools/document.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// What there is to say of a file.
struct Verdict {
  Findings findings;
  std::optional<Failure> failure = {};  ///< why it does not load
  DocumentError copy = {};              ///< why a saved copy would not

  bool CopyLoads() const { return copy.fault == DocumentFault::kNone; }
};

Verdict VerdictOn(const std::string& file, std::size_t placesShown) {
  Verdict verdict{Findings(placesShown)};
  try {
    Document document(file, &verdict.findings);
    verdict.copy = document.Save(nullptr, verdict.findings);
    if (IsTrouble(verdict.copy.fault)) throw FailureOf(InputName(file), verdict.copy);
  } catch (const Failure& failure) {
    verdict.failure = failure;
  }
  return verdict;
}

int ExitCodeOf(const Verdict& verdict, bool strict) {
  if (verdict.failure) return verdict.failure->exitCode;
  return verdict.CopyLoads() && !(strict && verdict.findings.size() > 0) ? kFine : kBadFile;
}

void Print(const Verdict& verdict, const std::string& name) {
  if (verdict.failure) {
    std::cerr << verdict.failure->message << '\n';
    return;
  }
  verdict.findings.Print(std::cout, name);
  const std::size_t warnings = verdict.findings.size();
  if (!verdict.CopyLoads())
    std::cout << name << ": error: " << WhyNotSaved(verdict.copy) << '\n';
  else if (warnings == 0)
    std::cout << name << ": fine\n";
  else
    std::cout << name << ": loads; warnings: " << warnings << '\n';
}

void PrintJson(const Verdict& verdict, const std::string& file) {
  const Failure failure = verdict.failure.value_or(Failure{});
  const bool copyLoads = verdict.CopyLoads();
  const auto numberOrNull = [](LONG number) { return number > 0 ? Json(number) : Json(); };
  Json json;
  json["file"] = ToUtf8(ToWide(file).get());
  json["loads"] = !verdict.failure;
  json["copyLoads"] = verdict.failure ? Json() : Json(copyLoads);
  json["error"] = verdict.failure ? Json(failure.reason)
                  : copyLoads     ? Json()
                                  : Json(WhyNotSaved(verdict.copy));
  json["line"] = numberOrNull(failure.line);
  json["column"] = numberOrNull(failure.column);
  json["warnings"] = verdict.findings.ToJson();
  std::cout << json.dump(-1, ' ', true) << '\n';
}

}  // namespace

int Check(const std::string& file, const CheckOptions& options) {
  const Verdict verdict = VerdictOn(file, options.all ? kAllPlaces : kPlacesShown);
  const int exitCode = ExitCodeOf(verdict, options.strict);
  if (options.json)
    PrintJson(verdict, file);
  else if (!options.quiet || exitCode == kTrouble)
    Print(verdict, InputName(file));
  return exitCode;
}

std::string WhyNotSaved(const DocumentError& error) {
  std::string reason = "a saved copy would not load again";
  if (error.line > 0)
    reason += " (its line " + std::to_string(error.line) + ", column " +
              std::to_string(error.column) + ")";
  return reason + ": " + Printable(std::string(error.reason));
}

}  // namespace vosmere::tool
