// Owning handles: one for each kind of object that the caller must free, with the function that
// frees it. They are std::unique_ptr, so they can be moved, are empty afterwards, and debuggers
// show what they hold.
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

/// Frees a list of collections with the collections and their local trees. No two collections may
/// share a local tree. Null is ignored.
inline void DeleteWithLocalTrees(RColctItem* head) {
  for (RColctItem* cell : chain::Cells(head)) {
    DeleteWithLocalTree(cell->item);
    RColctItem::Delete(cell);
  }
}

// Items and trees.

/// A tree: its root link, all links below it, and all their items. The local trees of collections
/// in it are not freed; they belong to the code that loaded them.
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
/// A group with its tags.
using TagGroup = Owned<CTagGroup, CTagStore::DeleteTagGroup>;
using PageData = std::unique_ptr<CPageData>;
/// What CReadVosmereXML::DetachData returns.
using ToolbarBands = std::unique_ptr<CTBarBandInfo>;
/// One address of the URL map, without the pages that have it.
using UrlMapEntry = Owned<CUrlMapItem, CUrlMapItem::Delete>;

// Lists, by their first cell. They own the cells and the items.

using ColctList = Owned<RColctItem, DeleteWithLocalTrees>;
/// Owns only the cells, not the collections.
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
/// What CUnicodeTool, CWriteXML::GetXMLUTF8 and CWriteXML::GetXMLBytes store.
using ConvertedText = Owned<char, CUnicodeTool::DeleteBuffer>;
/// What CReadFile::ReadToBuffer stores.
using FileBytes = Owned<char, CReadFile::Delete>;
using RegistryKey = Owned<HKEY__, CloseKey>;

/// The pointer argument through which a function stores a result; a temporary made by Out. Its
/// destructor, at the end of the statement, gives the result to the handle.
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

/// For a parameter `Thing**`: frees what the handle holds, then makes it own what the function
/// stores, if anything.
template <class Handle>
OutPointer<Handle> Out(Handle& handle) {
  return OutPointer<Handle>(handle);
}

}  // namespace vosmere
