// A log in the format SARIF 2.1.0.
#include "tools/sarif.h"

#include "tools/text.h"
#include "vosmere/base/version.h"

namespace vosmere::tool {
namespace {

/// A relative URI of a file name: what is not plain ASCII is percent-encoded.
std::string UriOf(const std::string& file) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri;
  for (const char8_t unit : PathOf(file).generic_u8string()) {
    const auto byte = static_cast<unsigned char>(unit);
    const char c = static_cast<char>(unit);
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') ||
                         (c >= 'a' && c <= 'z') || std::string_view("-._~/").find(c) != uri.npos;
    isPlain ? uri += c : (uri += '%', uri += kDigits[byte >> 4], uri += kDigits[byte & 15]);
  }
  return uri;
}

}  // namespace

void Sarif::Add(const std::string& rule, const std::string& message, const std::string& file,
                int line, int column) {
  Json place = {{"artifactLocation", {{"uri", UriOf(file)}}}};
  if (line > 0) place["region"] = {{"startLine", line}};
  if (line > 0 && column > 0) place["region"]["startColumn"] = column;
  results_.push_back({{"ruleId", rule},
                      {"level", rule == "error" ? "error" : "warning"},
                      {"message", {{"text", message}}},
                      {"locations", Json::array({{{"physicalLocation", place}}})}});
}

Json Sarif::Log() const {
  const auto rule = [](const char* id, const char* what) {
    return Json{{"id", id}, {"shortDescription", {{"text", what}}}};
  };
  const Json rules = Json::array({rule("error", "The document cannot be loaded or saved"),
                                  rule("loss", "A saved copy would lose or add something")});
  const Json driver = {{"name", "vosmere"}, {"version", VOSMERE_VERSION_TEXT}, {"rules", rules}};
  const Json run = {{"tool", {{"driver", driver}}}, {"results", results_}};
  return {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
          {"version", "2.1.0"},
          {"runs", Json::array({run})}};
}

}  // namespace vosmere::tool
