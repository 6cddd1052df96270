// The verb "check".
#include "tools/check.h"

#include <iostream>
#include <limits>
#include <optional>

#include "tools/document.h"
#include "tools/document_content.h"
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
    std::cerr << verdict.failure->message << '\n';
    return;
  }
  PrintWarnings(std::cout, name, verdict.losses);
  if (verdict.copy)
    std::cout << verdict.copy->message << '\n';
  else if (verdict.losses.empty())
    std::cout << name << ": fine\n";
  else
    std::cout << name << ": loads; warnings: " << verdict.losses.size() << '\n';
}

Json ToJson(const Losses& losses) {
  Json json = Json::array();
  for (const Loss& loss : losses) {
    Json places = Json::array();
    for (const LossPlace& place : loss.places) places.push_back(Printable(ToString(place)));
    json.push_back({{"what", Printable(loss.what)}, {"count", loss.count}, {"places", places}});
  }
  return json;
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
  json["warnings"] = ToJson(verdict.losses);
  std::cout << json.dump(-1, ' ', true) << '\n';
}

}  // namespace

void PrintWarnings(std::ostream& out, const std::string& name, const Losses& losses) {
  for (const Loss& loss : losses) out << name << ": warning: " << Printable(ToString(loss)) << '\n';
}

int Check(const std::string& file, const CheckOptions& options) {
  const Verdict verdict =
      VerdictOn(file, options.all ? std::numeric_limits<std::size_t>::max() : kPlacesShown);
  const int exitCode = ExitCodeOf(verdict, options.strict);
  if (options.json)
    PrintJson(verdict, file);
  else if (!options.quiet || exitCode == kTrouble)
    Print(verdict, InputName(file));
  return exitCode;
}

}  // namespace vosmere::tool
