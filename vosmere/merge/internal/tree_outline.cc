#include "vosmere/merge/internal/tree_outline.h"

#include "vosmere/base/wide_view.h"
#include "vosmere/collections/internal/whole_tree.h"
#include "vosmere/tree/internal/blank_page.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

std::string_view BytesOf(const WChar* text) {
  return {reinterpret_cast<const char*>(text), WideView(text).size * sizeof(WChar)};
}

/// Empty for an item without one.
std::string_view AddressOf(const RNode& link) {
  if (link.type == NT_FOLDER) return {};
  const WChar* const address = static_cast<const CUrlNode&>(*link.item).GetUrl();
  return SameText(address, kBlankPage) ? std::string_view() : BytesOf(address);
}

OutlineItem ItemOf(const RNode& link, std::size_t parent, bool isLocal) {
  if (isLocal) return {parent, kLocalRootKind + static_cast<unsigned>(link.type)};
  return {parent,
          static_cast<unsigned>(link.type),
          BytesOf(link.item->GetUUID()),
          AddressOf(link),
          BytesOf(link.item->GetName()),
          link.type == NT_FOLDER ? std::string_view() : BytesOf(link.item->GetDescription())};
}

}  // namespace

TreeOutline::TreeOutline(const RNode* root, TreeParts parts) {
  std::unordered_map<const RNode*, std::size_t> folders;
  const auto add = [&](RNode* link, RNode* parent, bool isLocal) {
    const auto above = folders.find(parent);
    if (!link->item || (link != root && above == folders.end())) return true;
    if (link->firstChild || link->type == NT_COLCT) folders.emplace(link, items.size());
    items.push_back(ItemOf(*link, link == root ? 0 : above->second, isLocal));
    links.push_back(link);
    return true;
  };
  WalkWhole(const_cast<RNode*>(root), parts == TreeParts::kWithLocalTrees, add);
}

bool IsTimeSaid(const RNode& link, unsigned timeField) {
  return link.item->GetNodeStat()->GetSetTimes() >> (timeField - kAddedField) & 1;
}

}  // namespace vosmere
