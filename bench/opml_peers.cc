// Reads and writes collection trees with libxml2 and pugixml.
#include "bench/opml_peers.h"

#include <algorithm>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "bench/peer_dom.h"
#include "bench/peer_items.h"
#include "bench/peer_writer.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/xml/internal/namespaces.h"

namespace vosmere::bench {
namespace {

class TreeBuilder : public PeerItems {
 public:
  RNode* NewFolder(RNode* parent) { return Link(parent, CFolderNode::New(), NT_FOLDER); }
  RNode* NewColct(RNode* parent) { return Link(parent, CColctNode::New(), NT_COLCT); }

  void SetName(RNode* link, std::string_view value) { link->item->SetName(Wide(value)); }

  void OutlineAttribute(RNode* link, std::string_view name, std::string_view value) {
    if (value.empty()) return;
    if (name == "text" || name == "title") {
      SetName(link, value);
    } else if (name == "description") {
      link->item->SetDescription(Wide(value));
    } else if (link->type == NT_COLCT && name == "xmlUrl") {
      path_.assign(value);
      std::replace(path_.begin(), path_.end(), '/', '\\');
      static_cast<CColctNode*>(link->item)->SetUrl(Wide(path_));
    } else if (link->type == NT_COLCT && name == "htmlUrl") {
      static_cast<CColctNode*>(link->item)->SetRelationUrl(Wide(value));
    }
  }

  void Sync(RNode* link, std::string_view name, std::string_view value) {
    SyncAttribute(*link->item, name, value);
  }
  void Stat(RNode* link, std::string_view name, std::string_view value) {
    StatAttribute(*link->item, name, value);
  }

  void ViewAttribute(RNode* link, std::string_view name, std::string_view value) {
    if (link->type == NT_COLCT && name == "expand" && value == "true")
      static_cast<CColctNode*>(link->item)->GetColctNetData()->SetColctExpandState(true);
  }

 private:
  std::string path_;  // kept, so that its memory is used again
};

/// A reader for both libraries; `Dom` is the interface to their documents (peer_dom.h).
template <class Dom>
class TreeReader {
 public:
  using Node = typename Dom::Node;

  RNode* Read(Node opml) {
    RNode* const root = builder_.NewFolder(nullptr);
    Dom::ForEachChild(opml, [&](Node part) {
      if (Dom::Named(part, "head"))
        ReadHead(part, root);
      else if (Dom::Named(part, "body"))
        ReadContent(part, root);
    });
    return root;
  }

 private:
  void ReadHead(Node head, RNode* root) {
    Dom::ForEachChild(head, [&](Node node) {
      if (Dom::Named(node, "title")) builder_.SetName(root, Dom::Text(node));
    });
  }

  void ReadContent(Node element, RNode* link) {
    Dom::ForEachChild(element, [&](Node node) {
      if (Dom::Named(node, "outline"))
        ReadOutline(node, link);
      else if (Dom::Named(node, "sx:sync"))
        Apply<&TreeBuilder::Sync>(node, link);
      else if (Dom::Named(node, "vsm:stat"))
        Apply<&TreeBuilder::Stat>(node, link);
      else if (Dom::Named(node, "vsm:view"))
        Apply<&TreeBuilder::ViewAttribute>(node, link);
    });
  }

  void ReadOutline(Node node, RNode* parent) {
    RNode* const link = IsColct(node) ? builder_.NewColct(parent) : builder_.NewFolder(parent);
    Apply<&TreeBuilder::OutlineAttribute>(node, link);
    ReadContent(node, link);
  }

  static bool IsColct(Node node) {
    bool hasType = false, isRss = false, hasUrl = false;
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "xmlUrl") hasUrl = true;
      if (name == "type") hasType = true, isRss = value == "rss";
    });
    return hasType ? isRss : hasUrl;
  }

  template <auto Attribute>
  void Apply(Node node, RNode* link) {
    Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      (builder_.*Attribute)(link, name, value);
    });
  }

  TreeBuilder builder_;
};

/// Writes the same document as CWriteColctTreeOPML with an xmlTextWriter.
class Libxml2Writer : private PeerWriter {
 public:
  using PeerWriter::PeerWriter;

  bool Write(RNode* root) {
    if (!IsOpen()) return false;
    StartDocument();
    Start("opml");
    Attribute("version", "2.0");
    Attribute("xmlns:vsm", VOSMERE_NAMESPACE_VSM);
    Attribute("xmlns:dc", VOSMERE_NAMESPACE_DC);
    Attribute("xmlns:sx", VOSMERE_NAMESPACE_SX);
    Start("head");
    Start("title");
    Text(root->item->GetName());
    End();
    Start("vsm:opml");
    Attribute("version", "1");
    End();
    End();
    Start("body");
    WriteSync(*root->item);
    WriteChildren(root);
    End();
    End();
    return EndDocument();
  }

 private:
  void WriteChildren(RNode* folder) {
    for (RNode* link = folder->firstChild; link; link = link->next) WriteOutline(link);
  }

  void WriteOutline(RNode* link) {
    CBaseNode& item = *link->item;
    Start("outline");
    Attribute("text", item.GetName());
    if (*item.GetDescription()) Attribute("description", item.GetDescription());
    if (link->type == NT_COLCT)
      WriteColct(static_cast<CColctNode&>(item));
    else
      WriteSync(item);
    WriteChildren(link);
    End();
    NewLine();
  }

  void WriteColct(CColctNode& colct) {
    Attribute("type", "rss");
    const WideView url(colct.GetUrl());
    path_.assign(url.begin(), url.end() + 1);
    std::replace(path_.begin(), path_.end(), WChar{'\\'}, WChar{'/'});
    Attribute("xmlUrl", path_.data());
    WriteStat(*colct.GetNodeStat());
    WriteSync(colct);
    const CColctNetData& net = *colct.GetColctNetData();
    if (net.GetOwner()) Element("vsm:owner", net.GetOwner());
    if (net.GetColctExpandState()) {
      Start("vsm:view");
      Attribute("expand", "true");
      End();
      NewLine();
    }
  }

  void WriteStat(const CNodeStat& stat) {
    LONG added = 0, modified = 0, lastVisited = 0;
    stat.GetStatTime(&added, &modified, &lastVisited);
    Start("vsm:stat");
    Attribute("added", added);
    Attribute("modified", modified);
    Attribute("lastVisited", lastVisited);
    if (stat.GetFlag() != 0) Attribute("flag", stat.GetFlag());
    if (stat.IsUnread()) Attribute("unread", "true");
    End();
    NewLine();
  }

  void WriteSync(const CBaseNode& item) {
    if (!*item.GetUUID()) return;
    Start("sx:sync");
    Attribute("id", item.GetUUID());
    if (item.GetVersion() != 0) Attribute("version", item.GetVersion());
    FullEnd();
  }

  std::vector<WChar> path_;
};

template <class Dom>
RNode* ReadWith(const std::string& document) {
  const typename Dom::Loaded dom(document);
  return TreeReader<Dom>().Read(dom.Root());
}

template <class Dom>
bool ParseWith(const std::string& document) {
  const typename Dom::Loaded dom(document);
  return static_cast<bool>(dom.Root());
}

}  // namespace

RNode* ReadWithLibxml2(const std::string& document) {
  return ReadWith<Libxml2Dom>(document);
}

bool ParseWithLibxml2(const std::string& document) {
  return ParseWith<Libxml2Dom>(document);
}

RNode* ReadWithPugixml(const std::string& document) {
  return ReadWith<PugixmlDom>(document);
}

bool ParseWithPugixml(const std::string& document) {
  return ParseWith<PugixmlDom>(document);
}

bool SaveWithLibxml2(RNode* root, const char* path) {
  return Libxml2Writer(path).Write(root);
}

struct PugixmlDocument::Content {
  pugi::xml_document dom;
};

PugixmlDocument::PugixmlDocument(const std::string& document) : content_(new Content) {
  content_->dom.load_buffer(document.data(), document.size(),
                            pugi::parse_full | pugi::parse_ws_pcdata);
}

PugixmlDocument::~PugixmlDocument() {
  delete content_;
}

bool PugixmlDocument::Save(const char* path) const {
  return content_->dom.save_file(path, "", pugi::format_raw);
}

}  // namespace vosmere::bench
