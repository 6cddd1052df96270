// Making items of elements and attributes of any XML library, with this library's setters and text
// conversion, so that only the XML part differs.
#pragma once

#include <charconv>
#include <string_view>

#include "vosmere/cpp/text.h"
#include "vosmere/tree/base_node.h"
#include "vosmere/tree/tree_tool.h"

namespace vosmere::bench {

class PeerItems {
 public:
  static RNode* Link(RNode* parent, CBaseNode* item, tagNODETYPE type) {
    RNode* const link = RNode::New2(item, type);
    if (parent) RNTool::InsertAsChild(parent, link);
    return link;
  }

  static int Number(std::string_view value) {
    int number = 0;
    std::from_chars(value.data(), value.data() + value.size(), number);
    return number;
  }

  static void SyncAttribute(CBaseNode& item, std::string_view name, std::string_view value) {
    if (name == "id")
      item.SetUUID(Wide(value));
    else if (name == "version")
      item.SetVersion(Number(value));
    else if (name == "deleted" && value == "true")
      item.SetAsDeleted(true);
  }

  static void StatAttribute(CBaseNode& item, std::string_view name, std::string_view value) {
    CNodeStat& stat = *item.GetNodeStat();
    if (name == "added")
      SetTime(stat, value, CNodeStat::kAdded);
    else if (name == "modified")
      SetTime(stat, value, CNodeStat::kModified);
    else if (name == "lastVisited")
      SetTime(stat, value, CNodeStat::kLastVisited);
    else if (name == "flag")
      stat.SetFlag(Number(value));
    else if (name == "unread" && value == "true")
      stat.MarkAsUnread(true);
  }

 private:
  static void SetTime(CNodeStat& stat, std::string_view value, ULONG which) {
    const LONG time = Number(value);
    stat.SetStatTime(time, time, time, which);
  }
};

}  // namespace vosmere::bench
