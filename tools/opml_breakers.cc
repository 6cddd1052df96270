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

void DisarmItem(RNode* link, Findings& findings) {
  for (const RawValue& raw : kRawValues) {
    if (!raw.ofFolders && link->type == NT_FOLDER) continue;
    std::string value = ToUtf8(raw.get(*link->item));
    const char breaker = Breaker(value);
    if (!breaker) continue;
    findings.Add(std::string(raw.name) + " holds '" + breaker +
                     "', which is written as it is: the saved file would not load",
                 PlaceOf(link));
    for (char& c : value)
      if (c == '"' || c == '<' || c == '&') c = '_';
    raw.set(*link->item, ToWide(value).get());
  }
}

}  // namespace

void ReportAndDisarm(RNode* root, Findings& findings) {
  WalkBelow(
      root, [&](RNode* link) { return DisarmItem(link, findings), true; }, [](RNode*) {});
}

}  // namespace vosmere::tool
