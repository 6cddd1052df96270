#include "tools/opml_breakers.h"

#include <string>
#include <string_view>

#include "tools/opml_fields.h"
#include "tools/text.h"
#include "vosmere/nodes/tree_walk.h"

namespace vosmere::tool {
namespace {

bool IsReference(std::string_view text) {
  for (const std::string_view name : {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#"})
    if (text.starts_with(name)) return true;
  return false;
}

/// The character that breaks a value; 0 for none.
char Breaker(const std::string& value) {
  for (std::size_t i = value.find_first_of("\"<&"); i != std::string::npos;
       i = value.find_first_of("\"<&", i + 1))
    if (value[i] != '&' || !IsReference(std::string_view(value).substr(i))) return value[i];
  return 0;
}

using Getter = WChar* (*)(CBaseNode& item);
using Setter = void (*)(CBaseNode& item, const WChar* value);

struct RawValue {
  const char* name;
  bool ofFolders;
  Getter get;
  Setter set;
};

constexpr RawValue kRawValues[] = {
    {"name", true, [](CBaseNode& item) { return item.GetName(); },
     [](CBaseNode& item, const WChar* value) { item.SetName(value); }},
    {"description", true, [](CBaseNode& item) { return item.GetDescription(); },
     [](CBaseNode& item, const WChar* value) { item.SetDescription(value); }},
    {"xmlUrl", false, [](CBaseNode& item) { return static_cast<CUrlNode&>(item).GetUrl(); },
     [](CBaseNode& item, const WChar* value) { static_cast<CUrlNode&>(item).SetUrl(value); }},
};

/// Calls `visit` with every value that breaks the document.
template <class Visit>
void ForEachBreaker(RNode* root, Visit visit) {
  const auto visitItem = [&visit](RNode* link) {
    for (const RawValue& raw : kRawValues) {
      if (!raw.ofFolders && link->type == NT_FOLDER) continue;
      const std::string value = ToUtf8(raw.get(*link->item));
      if (const char breaker = Breaker(value)) visit(link, raw, value, breaker);
    }
    return true;
  };
  WalkBelow(root, visitItem, [](RNode*) {});
}

}  // namespace

void ReportBreakers(RNode* root, Findings& findings) {
  ForEachBreaker(root, [&](RNode* link, const RawValue& raw, const std::string&, char breaker) {
    findings.Add(std::string(raw.name) + " holds '" + breaker +
                     "', which is written as it is: the saved file would not load",
                 PlaceOf(link));
  });
}

void Disarm(RNode* root) {
  ForEachBreaker(root, [](RNode* link, const RawValue& raw, std::string value, char) {
    for (char& c : value)
      if (c == '"' || c == '<' || c == '&') c = '_';
    raw.set(*link->item, ToWide(value).get());
  });
}

}  // namespace vosmere::tool
