// Reads collections with libxml2 and pugixml.
#include "bench/rss_peers.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "bench/peer_dom.h"
#include "bench/peer_items.h"
#include "vosmere/collections/internal/rss_words.h"
#include "vosmere/cpp/lists.h"
#include "vosmere/tree/folder_node.h"

namespace vosmere::bench {
namespace {

template <std::size_t N>
int IndexOf(const std::string_view (&words)[N], std::string_view word) {
  const auto found = std::find(words, words + N, word);
  return found == words + N ? 0 : static_cast<int>(found - words);
}

/// A reader for both libraries; `Dom` is the interface to their documents (peer_dom.h). Reads what
/// CWriteColctRSS writes for an ordered collection, where folders come before the items.
template <class Dom>
class ColctReader : private PeerItems {
 public:
  using Node = typename Dom::Node;

  CColctNode* Read(Node rss) {
    colct_ = CColctNode::New();
    root_ = Link(nullptr, CFolderNode::New(), NT_FOLDER);
    colct_->SetLocRNodeRoot(root_);
    Dom::ForEachChild(rss, [&](Node channel) {
      if (Dom::Named(channel, "channel")) ReadChannel(channel);
    });
    std::stable_sort(placed_.begin(), placed_.end(),
                     [](const Placed& a, const Placed& b) { return a.order < b.order; });
    for (const Placed& placed : placed_) RNTool::InsertAsChild(placed.parent, placed.link);
    return colct_;
  }

 private:
  struct Placed {
    RNode* link;
    RNode* parent;
    int order;
  };

  void ReadChannel(Node channel) {
    Dom::ForEachChild(channel, [&](Node node) {
      if (Dom::Named(node, "item"))
        ReadItem(node);
      else if (Dom::Named(node, "vsm:folder"))
        ReadFolder(node, root_);
      else if (Dom::Named(node, "title"))
        colct_->SetName(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "description"))
        colct_->SetDescription(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "dc:creator"))
        colct_->GetColctNetData()->SetOwner(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "vsm:action"))
        ReadAction(node);
      else if (Dom::Named(node, "vsm:build"))
        ReadBuild(node, *colct_);
      else if (Dom::Named(node, "sx:sync"))
        ReadSync(node, *colct_);
    });
  }

  void ReadAction(Node node) {
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "sync") colct_->GetColctNetData()->SetSynced(value == "true");
      if (name == "ordered") colct_->GetColctNetData()->SetOrdered(value == "true");
    });
  }

  void ReadFolder(Node element, RNode* parent) {
    CFolderNode* const folder = CFolderNode::New();
    RNode* const link = Link(nullptr, folder, NT_FOLDER);
    Placed& placed = placed_.emplace_back(Placed{link, parent, 0});
    Dom::ForEachAttribute(element, [&](std::string_view name, std::string_view value) {
      if (name == "order") SetOrder(placed, value);
    });
    Dom::ForEachChild(element, [&](Node node) {
      if (Dom::Named(node, "vsm:folder"))
        ReadFolder(node, link);
      else if (Dom::Named(node, "title"))
        folder->SetName(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "description"))
        folder->SetDescription(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "sx:sync"))
        folders_.emplace(ReadSync(node, *folder), link);
    });
  }

  void ReadItem(Node element) {
    CUrlNode* const item = CUrlNode::New();
    Placed& placed = placed_.emplace_back(Placed{Link(nullptr, item, NT_URL), root_, 0});
    Dom::ForEachChild(element, [&](Node node) {
      if (Dom::Named(node, "title"))
        item->SetName(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "link"))
        item->SetUrl(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "description"))
        item->SetDescription(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "author"))
        item->SetAuthor(Wide(Dom::Text(node)));
      else if (Dom::Named(node, "vsm:folderref"))
        ReadFolderRef(node, placed);
      else if (Dom::Named(node, "vsm:rel"))
        ReadRelation(node, *item);
      else if (Dom::Named(node, "vsm:stat"))
        Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
          StatAttribute(*item, name, value);
        });
      else if (Dom::Named(node, "sx:sync"))
        ReadSync(node, *item);
      else if (Dom::Named(node, "vsm:build"))
        ReadBuild(node, *item);
      else if (Dom::Named(node, "vsm:tags"))
        SetTags(*item, Dom::Text(node));
    });
  }

  void ReadFolderRef(Node node, Placed& placed) {
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "order") SetOrder(placed, value);
      if (name != "folderid") return;
      const auto folder = folders_.find(std::string(value));
      if (folder != folders_.end()) placed.parent = folder->second;
    });
  }

  void ReadRelation(Node node, CUrlNode& item) {
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "type")
        item.SetItemType(static_cast<tagVSMITEMTYPE>(IndexOf(kItemTypeWords, value)));
      else if (name == "subtype")
        item.GetUrlProp()->SetFileType(
            static_cast<tagVSMITEMFILETYPE>(IndexOf(kFileTypeWords, value)));
      else if (name == "href")
        item.SetRelationUrl(Wide(value));
    });
  }

  std::string ReadSync(Node node, CBaseNode& item) {
    std::string id;
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "id") id = value;
      SyncAttribute(item, name, value);
    });
    return id;
  }

  void ReadBuild(Node node, CBaseNode& item) {
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "basebuild") item.SetBaseBuild(Number(value));
      if (name == "checkedin" && value == "false") item.SetCheckedIn(0);
    });
  }

  static void SetOrder(Placed& placed, std::string_view value) {
    placed.order = Number(value);
    placed.link->item->SetOrder(placed.order);
  }

  CColctNode* colct_ = nullptr;
  RNode* root_ = nullptr;
  std::vector<Placed> placed_;
  std::unordered_map<std::string, RNode*> folders_;
};

template <class Dom>
CColctNode* ReadWith(const std::string& document) {
  const typename Dom::Loaded dom(document);
  return ColctReader<Dom>().Read(dom.Root());
}

}  // namespace

CColctNode* ReadColctWithLibxml2(const std::string& document) {
  return ReadWith<Libxml2Dom>(document);
}

CColctNode* ReadColctWithPugixml(const std::string& document) {
  return ReadWith<PugixmlDom>(document);
}

}  // namespace vosmere::bench
