// The verb "check".
#include "tools/check.h"

#include <algorithm>
#include <iostream>
#include <limits>
#include <optional>

#include "tools/colors.h"
#include "tools/document.h"
#include "tools/report.h"
#include "tools/sarif.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

/// The result for a file.
struct Verdict {
  Losses losses;                        ///< those of loading, then those of saving
  std::optional<Failure> failure = {};  ///< why it cannot be loaded
  std::optional<Failure> copy = {};     ///< why it cannot be saved
};

Verdict VerdictOn(const std::string& file, std::size_t placesShown) {
  Verdict verdict{Losses(placesShown)};
  std::optional<AnyDocument> document;
  try {
    document = LoadDocument(file, &verdict.losses);
  } catch (const Failure& failure) {
    verdict.failure = failure;
    return verdict;
  }
  try {
    verdict.losses.Add(SaveDocument(*document, file, placesShown).losses);
  } catch (const Failure& failure) {
    // Trouble, such as too little memory, does not mean that the document cannot be saved.
    (failure.exitCode == kTrouble ? verdict.failure : verdict.copy) = failure;
  }
  return verdict;
}

int ExitCodeOf(const Verdict& verdict, bool strict) {
  if (verdict.failure) return verdict.failure->exitCode;
  return !verdict.copy && !(strict && !verdict.losses.empty()) ? kFine : kBadFile;
}

void Print(const Verdict& verdict, const std::string& name) {
  if (verdict.failure) {
    PrintFailure(*verdict.failure);
    return;
  }
  PrintWarnings(std::cout, name, verdict.losses);
  if (verdict.copy)
    std::cout << ColoredMessage(verdict.copy->message, Stream::kOutput) << '\n';
  else if (verdict.losses.empty())
    std::cout << name << ": fine\n";
  else
    std::cout << name << ": loads; warnings: " << verdict.losses.size() << '\n';
}

void PrintJson(const Verdict& verdict, const std::string& file) {
  const Failure failure = verdict.failure.value_or(verdict.copy.value_or(Failure{}));
  const auto numberOrNull = [](LONG number) { return number > 0 ? Json(number) : Json(); };
  Json json;
  json["file"] = ToUtf8(Wide(file));
  json["loads"] = !verdict.failure;
  json["copyLoads"] = verdict.failure ? Json() : Json(!verdict.copy);
  json["error"] = verdict.failure || verdict.copy ? Json(failure.reason) : Json();
  json["line"] = numberOrNull(failure.line);
  json["column"] = numberOrNull(failure.column);
  json["warnings"] = JsonOf(verdict.losses);
  PrintReport(json);
}

void AddTo(Sarif& sarif, const Verdict& verdict, const std::string& file) {
  for (const std::optional<Failure>& failure : {verdict.failure, verdict.copy})
    if (failure) sarif.Add("error", failure->reason, file, failure->line, failure->column);
  for (const Loss& loss : verdict.losses)
    for (const LossPlace& place : loss.places)
      sarif.Add("loss", place.path.empty() ? loss.what : loss.what + ": " + place.path, file,
                place.line, place.column);
}

}  // namespace

void PrintWarnings(std::ostream& out, const std::string& name, const Losses& losses) {
  const Stream stream = &out == &std::cout ? Stream::kOutput : Stream::kErrors;
  for (const Loss& loss : losses)
    out << ColoredMessage(name + ": warning: " + Printable(ToString(loss)), stream) << '\n';
}

int Check(const std::vector<std::string>& files, const CheckOptions& options) {
  int exitCode = kFine;
  Sarif sarif;
  for (const std::string& file : files) {
    const bool all = options.all || options.sarif;
    const Verdict verdict =
        VerdictOn(file, all ? std::numeric_limits<std::size_t>::max() : kPlacesShown);
    const int code = ExitCodeOf(verdict, options.strict);
    exitCode = std::max(exitCode, code);
    if (options.sarif)
      AddTo(sarif, verdict, file);
    else if (options.json)
      PrintJson(verdict, file);
    else if (!options.quiet || code == kTrouble)
      Print(verdict, InputName(file));
  }
  if (options.sarif) PrintReport(sarif.Log());
  return exitCode;
}

}  // namespace vosmere::tool
