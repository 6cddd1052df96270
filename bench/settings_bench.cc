// Benchmarks of loading and saving the documents of the user's settings, compared with libxml2.
#include "bench/stored_document.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/engines/search_engines_document.h"
#include "vosmere/ftp/ftp_sites_document.h"
#include "vosmere/tags/tags_document.h"
#include "vosmere/toolbars/toolbars_document.h"

namespace vosmere::bench {
namespace {

constexpr int kDocumentBytes = 10 * 1000 * 1000;

/// A text with a number in it, the same on every run. One in eight needs escaping.
struct SampleTexts {
  Wide operator()(const char* what, int i) const {
    char text[128];
    std::snprintf(text, sizeof text, i % 8 == 0 ? "%s & more no. %d" : "%s für %d", what, i);
    return Wide(text);
  }
};

struct SearchEnginesDocument : PeerItems {
  static constexpr const char* kName = "SearchEngines";
  static constexpr int kRounds = 1;
  using Data = CEnginePool*;

  static Data New() {
    SampleTexts text;
    CEnginePool* const pool = CEnginePool::New();
    for (int i = 0; i < kDocumentBytes / 250; ++i) {
      CEngineNode* const engine = CEngineNode::New();
      engine->SetName(text("Search the news", i));
      engine->SetDescription(text("Finds what was written of a day", i));
      engine->SetUrl(text("http://engines.example/search?q=%s&n=", i));
      engine->SetIconUrl(text("http://engines.example/favicon.ico?", i));
      pool->AppendEngine(engine);
    }
    return pool;
  }
  static void Free(Data pool) { CBaseNode::Delete(pool); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadSEngineXML, &CReadSEngineXML::DetachEnginePool>(document);
  }
  static bool Save(Data pool, const std::filesystem::path& path) {
    return SaveWith<CWriteSEngineXML, &CWriteSEngineXML::SetEnginePool>(pool, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    CEnginePool* const pool = CEnginePool::New();
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "searchEngine")) return;
      CEngineNode* const engine = CEngineNode::New();
      pool->AppendEngine(engine);
      Libxml2Dom::ForEachAttribute(element, [&](std::string_view name, std::string_view value) {
        if (name == "type") engine->SetSearchType(Wide(value));
      });
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) {
        const Wide text(Libxml2Dom::Text(node));
        if (Libxml2Dom::Named(node, "title")) engine->SetName(text);
        if (Libxml2Dom::Named(node, "description")) engine->SetDescription(text);
        if (Libxml2Dom::Named(node, "queryUrl")) engine->SetUrl(text);
        if (Libxml2Dom::Named(node, "icon")) engine->SetIconUrl(text);
      });
    });
    return pool;
  }

  static void WritePeer(PeerWriter& writer, Data pool) {
    writer.Start("searchEnginePool");
    writer.Attribute("version", "1.0");
    for (const REngineItem* cell = pool->GetREngineItemHead(); cell; cell = cell->next) {
      writer.Start("searchEngine");
      writer.Attribute("type", cell->item->GetSearchType());
      writer.ElementUnlessEmpty("title", cell->item->GetName());
      writer.ElementUnlessEmpty("description", cell->item->GetDescription());
      writer.ElementUnlessEmpty("queryUrl", cell->item->GetUrl());
      writer.ElementUnlessEmpty("icon", cell->item->GetIconUrl());
      writer.End();
      writer.NewLine();
    }
  }
};

struct TagsDocument : PeerItems {
  static constexpr const char* kName = "Tags";
  static constexpr int kRounds = 1;
  using Data = CTagStore::TagGroupList*;

  static CTagGroup& AddGroup(Data& head) {
    return *list::Append(head, CTagStore::CreateTagGroup())->data;
  }
  static CTagItem& AddTag(CTagGroup& group) {
    return *group.AddTagItem(CTagStore::CreateTagItem())->data;
  }
  static Data New() {
    SampleTexts text;
    Data head = nullptr;
    for (int i = 0; i < kDocumentBytes / 40; ++i) {
      if (i % 50 == 0) AddGroup(head).SetName(text("group", i));
      CTagItem& tag = AddTag(*head->prev->data);
      tag.SetName(text("tag", i));
      tag.SetCount(i % 7);
    }
    return head;
  }
  static void Free(Data head) { CTagStore::DeleteRTagGroupList(head); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadTagsXML, &CReadTagsXML::DetachTagGroupHead>(document);
  }
  static bool Save(Data head, const std::filesystem::path& path) {
    return SaveWith<CWriteTagsXML, &CWriteTagsXML::SetTagGroupHead>(head, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data head = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "group")) return;
      CTagGroup& group = AddGroup(head);
      Libxml2Dom::ForEachAttribute(element, [&](std::string_view name, std::string_view value) {
        if (name == "name") group.SetName(Wide(value));
      });
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) {
        if (!Libxml2Dom::Named(node, "tag")) return;
        CTagItem& tag = AddTag(group);
        Libxml2Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
          if (name == "name") tag.SetName(Wide(value));
          if (name == "count") tag.SetCount(Number(value));
        });
      });
    });
    return head;
  }

  static void WritePeer(PeerWriter& writer, Data head) {
    writer.Start("vsmtags");
    writer.Attribute("version", "1.0");
    for (const auto* group = head; group; group = group->next) {
      writer.Start("group");
      if (group->data->GetName()) writer.Attribute("name", group->data->GetName());
      for (const auto* tag = group->data->GetTagItemHead(); tag; tag = tag->next) {
        writer.Start("tag");
        writer.Attribute("name", tag->data->GetName());
        if (tag->data->GetCount() != 1) writer.Attribute("count", tag->data->GetCount());
        writer.End();
      }
      writer.End();
    }
  }
};

struct FtpSitesDocument : PeerItems {
  static constexpr const char* kName = "FtpSites";
  static constexpr int kRounds = 1;
  using Data = TList<CFtpConBase*>*;

  static Data New() {
    SampleTexts text;
    Data head = nullptr;
    for (int i = 0; i < kDocumentBytes / 330; ++i) {
      CFtpConBase& site = *list::Append(head, CFtpConBase::New())->data;
      site.SetTitle(text("My site", i));
      site.SetHost(text("ftp.example", i));
      site.SetUserName(text("ann", i));
      site.SetInitPath(text("/pub/www", i));
      site.SetPASVMode(i % 2);
      site.SetPort(21 + i % 3);
      site.SetSavePSW(i % 3);
      site.SetUUID(text("00000000-0000-4000-8000-", i));
      site.GetFtpWebAddress()->Add(text("Home", i | 1), text("http://www.example/~ann/", i | 1));
    }
    return head;
  }
  static void Free(Data head) { list::DeleteItems(head); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadFtpSiteXML, &CReadFtpSiteXML::DetachFtpSiteList>(document);
  }
  static bool Save(Data head, const std::filesystem::path& path) {
    return SaveWith<CWriteFtpSiteXML, &CWriteFtpSiteXML::SetFtpConList>(head, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data head = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "site")) return;
      CFtpConBase& site = *list::Append(head, CFtpConBase::New())->data;
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) { ReadPart(site, node); });
    });
    return head;
  }
  void ReadPart(CFtpConBase& site, Libxml2Dom::Node node) {
    const std::string_view text = Libxml2Dom::Text(node);
    if (Libxml2Dom::Named(node, "title")) site.SetTitle(Wide(text));
    if (Libxml2Dom::Named(node, "host")) site.SetHost(Wide(text));
    if (Libxml2Dom::Named(node, "username")) site.SetUserName(Wide(text));
    if (Libxml2Dom::Named(node, "path")) site.SetInitPath(Wide(text));
    if (Libxml2Dom::Named(node, "uuid")) site.SetUUID(Wide(text));
    if (Libxml2Dom::Named(node, "pasvmode")) site.SetPASVMode(text == "true");
    if (Libxml2Dom::Named(node, "port")) site.SetPort(Number(text));
    if (Libxml2Dom::Named(node, "savepsw")) site.SetSavePSW(text == "true");
    SystemText name, link;
    Libxml2Dom::ForEachAttribute(node, [&](std::string_view attribute, std::string_view value) {
      (attribute == "name" ? name : link).AssignOrNull(Wide(value));
    });
    if (link.get()) site.GetFtpWebAddress()->Add(name.get(), link.get());
  }

  static void WritePeer(PeerWriter& writer, Data head) {
    writer.Start("ftpsites");
    writer.Attribute("version", "1.0");
    for (const auto* cell = head; cell; cell = cell->next) {
      CFtpConBase& site = *cell->data;
      writer.Start("site");
      writer.ElementUnlessEmpty("title", site.GetTitle());
      writer.ElementUnlessEmpty("host", site.GetHost());
      writer.ElementUnlessEmpty("username", site.GetUserName());
      writer.ElementUnlessEmpty("path", site.GetInitPath());
      if (site.IsPASVMode()) writer.Element("pasvmode", "true");
      if (site.GetPort() != 21) writer.Element("port", site.GetPort());
      writer.Element("savepsw", site.IsSavePSW() ? "true" : "false");
      writer.ElementUnlessEmpty("uuid", site.GetUUID());
      const auto* const address = site.GetFtpWebAddress()->GetHead();
      writer.Start("webaddress");
      writer.Attribute("name", address->GetName());
      writer.Attribute("link", address->GetLink());
      writer.End();
      writer.End();
      writer.NewLine();
    }
  }
};

struct ToolbarsDocument : PeerItems {
  static constexpr const char* kName = "Toolbars";
  static constexpr int kRounds = 1;
  using Data = CTBarBandInfo*;

  static Data New() {
    SampleTexts text;
    auto* const bands = new CTBarBandInfo;
    for (int i = 0; i < kDocumentBytes / 200; ++i) {
      TBARBANDINFO band;
      band.SetTitle(text("Toolbar", i));
      band.SetClsid(text("{00000000-0000-4000-8000}", i));
      band.enabled = i % 8 != 0;
      band.visible = i % 8 == 0 || i % 2 == 0;
      band.hasContainerData = band.enabled;
      if (band.enabled) band.index = i, band.style = i % 1000, band.width = i % 300;
      bands->AddBandInfoCopy(&band);
    }
    return bands;
  }
  static void Free(Data bands) { delete bands; }
  static Data Read(const std::string& document) {
    CReadVosmereXML reader;
    reader.LoadXML(document.data(), static_cast<int>(document.size()));
    return static_cast<Data>(reader.DetachData());
  }
  static bool Save(Data bands, const std::filesystem::path& path) {
    return SaveWith<CWriteToolbarXML, &CWriteToolbarXML::SetTBarBandInfo>(bands, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    auto* const bands = new CTBarBandInfo;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "toolbar")) return;
      TBARBANDINFO band;
      Libxml2Dom::ForEachAttribute(element, [&](std::string_view name, std::string_view value) {
        if (name == "status") band.enabled = value == "enabled";
        if (name == "visible") band.visible = value == "true";
      });
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) { ReadPart(band, node); });
      bands->AddBandInfoCopy(&band);
    });
    return bands;
  }
  void ReadPart(TBARBANDINFO& band, Libxml2Dom::Node node) {
    if (Libxml2Dom::Named(node, "title")) band.SetTitle(Wide(Libxml2Dom::Text(node)));
    if (Libxml2Dom::Named(node, "clsid")) band.SetClsid(Wide(Libxml2Dom::Text(node)));
    if (!Libxml2Dom::Named(node, "rebar")) return;
    band.hasContainerData = true;
    Libxml2Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name == "index") band.index = Number(value);
      if (name == "style") band.style = Number(value);
      if (name == "width") band.width = Number(value);
    });
  }

  static void WritePeer(PeerWriter& writer, Data bands) {
    writer.Start("toolbars");
    writer.Attribute("version", "1.0");
    for (const auto* cell = bands->GetRBandInfoItemHead(); cell; cell = cell->next) {
      const TBARBANDINFO& band = *cell->data;
      writer.Start("toolbar");
      writer.Attribute("status", band.enabled ? "enabled" : "disabled");
      if (band.enabled) writer.Attribute("visible", band.visible ? "true" : "false");
      writer.ElementUnlessEmpty("title", band.title);
      writer.ElementUnlessEmpty("clsid", band.clsid);
      if (band.enabled && band.hasContainerData) {
        writer.Start("rebar");
        writer.Attribute("index", band.index);
        writer.Attribute("style", band.style);
        writer.Attribute("width", band.width);
        writer.End();
      }
      writer.End();
      writer.NewLine();
    }
  }
};

const bool kRegistered = RegisterDocument<SearchEnginesDocument>() &&
                         RegisterDocument<TagsDocument>() && RegisterDocument<FtpSitesDocument>() &&
                         RegisterDocument<ToolbarsDocument>();

}  // namespace
}  // namespace vosmere::bench
