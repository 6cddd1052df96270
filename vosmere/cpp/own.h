// Owning handles: one for each kind of result that the caller frees, each with the operation that
// frees it. They are std::unique_ptr, so they move, are empty once moved from, and show in a
// debugger as what they hold.
//
//   const Tree tree(ImportFavorites(nullptr, nullptr, nullptr));
//   const SystemString uuid(RNTool::CreateUUID());
//
//   SystemString text;
//   file.ReadAllToBuffer(Out(text));                    // for results through a pointer
#pragma once

#include <memory>

#include "vosmere/base/chain.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/system_string.h"
#include "vosmere/collections/colct_ex_data.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_item_id.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/engines/engine_pool.h"
#include "vosmere/favorites/favorite.h"
#include "vosmere/ftp/ftp_site.h"
#include "vosmere/notify/notify_msg.h"
#include "vosmere/pages/page_data.h"
#include "vosmere/platform/registry.h"
#include "vosmere/tabs/tab_url.h"
#include "vosmere/tabs/url_map.h"
#include "vosmere/tags/tag_store.h"
#include "vosmere/text/read_file.h"
#include "vosmere/text/unicode_tool.h"
#include "vosmere/toolbars/tbar_band_info.h"
#include "vosmere/tree/name_value_pair.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/url_prop.h"

namespace vosmere {

/// Owns a `Thing` and frees it with `Free`.
template <class Thing, auto Free>
using Owned = std::unique_ptr<Thing, FreeWith<Free>>;

/// Frees a list of collections with the collections and their local trees, of which each belongs to
/// one collection. Null is ignored.
inline void DeleteWithLocalTrees(RColctItem* head) {
  for (RColctItem* cell : chain::Cells(head)) {
    DeleteWithLocalTree(cell->item);
    RColctItem::Delete(cell);
  }
}

// Items and trees.

/// A tree: its root link, everything below, and all their items; not the local trees of collections
/// in it, which belong to whoever loaded them.
using Tree = Owned<RNode, DeleteTree>;
/// An item in no tree: a folder, a page, a search engine, a pool with its engines.
template <class Node>
using Item = Owned<Node, CBaseNode::Delete>;
/// A collection in no tree and no list, with its local tree.
using Collection = Owned<CColctNode, DeleteWithLocalTree>;

// Single records.

using ColctExtra = Owned<CColctExData, CColctExData::Delete>;
using ColctItemName = Owned<CColctItemID, CColctItemID::Delete>;
using FtpSite = Owned<CFtpConBase, CFtpConBase::Delete>;
using Notification = Owned<CVSMNotifyMsg, CVSMNotifyMsg::Delete>;
using Tag = Owned<CTagItem, CTagStore::DeleteTagItem>;
/// With its tags.
using TagGroup = Owned<CTagGroup, CTagStore::DeleteTagGroup>;
using PageData = std::unique_ptr<CPageData>;
/// What CReadVosmereXML hands over.
using ToolbarBands = std::unique_ptr<CTBarBandInfo>;
/// One address of the URL map, without the pages that carry it.
using UrlMapEntry = Owned<CUrlMapItem, CUrlMapItem::Delete>;

// Lists by their first cell, with what is in them.

using ColctList = Owned<RColctItem, DeleteWithLocalTrees>;
/// The cells alone.
using ColctCells = Owned<RColctItem, RColctItem::DeleteListShell>;
using ColctExtraList = Owned<RColctExData, RColctExData::DeleteList>;
using ColctItemNameList = Owned<RColctItemID, RColctItemID::DeleteList>;
using FavoriteList = Owned<CFavorite, CFavorite::DeleteList>;
using FtpSiteList = Owned<TList<CFtpConBase*>, list::DeleteItems<TList<CFtpConBase*>>>;
using NameValueList = Owned<CNameValuePair, CNameValuePair::DeleteList>;
/// The tags of a page.
using PageTagList = Owned<CUrlProp::TagList, CUrlProp::DeleteTagsList>;
using TabUrlList = Owned<CTabUrlItem, CTabUrlItem::DeleteList>;
using TagGroupList = Owned<CTagStore::TagGroupList, CTagStore::DeleteRTagGroupList>;

// Texts, bytes, handles.

using SystemString = Owned<WChar, SysFreeString>;
/// What CUnicodeTool and CWriteXML::GetXMLUTF8 hand out.
using ConvertedText = Owned<char, CUnicodeTool::DeleteBuffer>;
/// What CReadFile::ReadToBuffer hands out.
using FileBytes = Owned<char, CReadFile::Delete>;
using RegistryKey = Owned<HKEY__, CloseKey>;

/// Stands for the pointer through which an operation hands out a result, until the end of the
/// statement; see Out.
template <class Handle>
class OutPointer {
 public:
  explicit OutPointer(Handle& handle) : handle_(handle) { handle.reset(); }
  OutPointer(const OutPointer&) = delete;
  OutPointer& operator=(const OutPointer&) = delete;
  ~OutPointer() { handle_.reset(result_); }

  operator typename Handle::pointer *() { return &result_; }

 private:
  Handle& handle_;
  typename Handle::pointer result_ = nullptr;
};

/// For `Thing**`: empties the handle, which then owns what the operation stores, if it does.
template <class Handle>
OutPointer<Handle> Out(Handle& handle) {
  return OutPointer<Handle>(handle);
}

}  // namespace vosmere
