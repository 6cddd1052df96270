// What a verb reports besides its output, as JSON for scripts.
#include "tools/report.h"

#include <iostream>

#include "tools/failure.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

template <class Things, class ToJson>
Json ArrayOf(const Things& things, ToJson toJson) {
  Json array = Json::array();
  for (const auto& thing : things) array.push_back(toJson(thing));
  return array;
}

}  // namespace

Json JsonOf(const Losses& losses) {
  return ArrayOf(losses, [](const Loss& loss) {
    const auto place = [](const LossPlace& at) { return Json(ToString(at)); };
    return Json{
        {"what", loss.what}, {"count", loss.count}, {"places", ArrayOf(loss.places, place)}};
  });
}

Json JsonOf(const std::vector<Conflict>& conflicts) {
  return ArrayOf(conflicts, [](const Conflict& conflict) {
    return Json{{"place", conflict.place},
                {"what", conflict.what},
                {"ours", conflict.ours},
                {"theirs", conflict.theirs},
                {"took", conflict.tookTheirs ? "theirs" : "ours"}};
  });
}

Json JsonOf(const std::vector<Repair>& repairs) {
  return ArrayOf(repairs, [](const Repair& repair) {
    return Json{{"line", repair.line},
                {"column", repair.column},
                {"what", repair.what},
                {"found", repair.found},
                {"made", repair.made}};
  });
}

void PrintReport(const Json& report) {
  std::cout << JsonText(report) << '\n';
}

void KeepReportApart(const std::string& output, bool asJson) {
  if (asJson && IsStandard(output))
    throw Failure{kTrouble, "vosmere: error: with --json the output must be a file"};
}

}  // namespace vosmere::tool
