// Benchmarks of loading and saving the documents of collections, of about 10 MB each, and
// notifications, compared with libxml2.
#include "bench/stored_document.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_item_ids_document.h"
#include "vosmere/collections/colct_list_document.h"
#include "vosmere/collections/colct_profile_document.h"
#include "vosmere/cpp/own.h"
#include "vosmere/notify/notification_document.h"

namespace vosmere::bench {
namespace {

constexpr std::size_t kDocumentBytes = 10 * 1000 * 1000;

/// Texts of items, the same on every run. One in eight needs escaping, another one has an accent.
class SampleTexts {
 public:
  Wide Name(int i) {
    return Numbered(i % 8 == 0   ? "Science & more %d"
                    : i % 8 == 1 ? "Déjà vu %d"
                                 : "Feed no. %d",
                    i);
  }
  Wide Url(int i) { return Numbered("http://feeds.example/%d/news/feed.xml", i); }
  Wide Path(int i) { return Numbered("C:\\Data\\Library\\feeds\\%d\\feed.xml", i); }
  Wide Uuid(int i) { return Numbered("%08d-0000-4000-8000-000000000001", i); }
  Wide Description(int i) {
    return Numbered("What happened on day %d, told for those who were not there.", i);
  }

 private:
  Wide Numbered(const char* format, int i) {
    char text[128];
    std::snprintf(text, sizeof text, format, i);
    return Wide(text);
  }
};

struct ColctListDocument : PeerItems {
  static constexpr const char* kName = "ColctList";
  static constexpr int kRounds = 1;
  using Data = RColctItem*;

  static Data New() {
    Data head = nullptr;
    SampleTexts texts;
    for (int i = 0; i < static_cast<int>(kDocumentBytes / 420); ++i) {
      CColctNode* const colct = CColctNode::New();
      colct->SetName(texts.Name(i));
      colct->SetUrl(texts.Url(i));
      colct->SetDescription(texts.Description(i));
      colct->GetNodeStat()->SetStatTime(1100000000 + i, 1100000001, 1100000002, 7);
      colct->SetUUID(texts.Uuid(i));
      colct->SetBaseBuild(i % 3);
      colct->SetCheckedIn(i % 2 * CBaseNode::kCheckedIn);
      colct->GetColctNetData()->SetOwner(texts.Name(i % 100));
      chain::Append(head, RColctItem::New(colct));
    }
    return head;
  }
  static void Free(Data head) { RColctItem::DeleteList(head); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadColctListXML, &CReadColctListXML::DetachRColctItemHead>(document);
  }
  static bool Save(Data head, const std::filesystem::path& path) {
    return SaveWith<CWriteColctListXML, &CWriteColctListXML::SetRColctItemHead>(head, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data head = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "collection")) return;
      CColctNode* const colct = CColctNode::New();
      chain::Append(head, RColctItem::New(colct));
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) { ReadPart(*colct, node); });
    });
    return head;
  }
  void ReadPart(CColctNode& colct, Libxml2Dom::Node node) {
    if (Libxml2Dom::Named(node, "title"))
      colct.SetName(Wide(Libxml2Dom::Text(node)));
    else if (Libxml2Dom::Named(node, "link"))
      colct.SetUrl(Wide(Libxml2Dom::Text(node)));
    else if (Libxml2Dom::Named(node, "description"))
      colct.SetDescription(Wide(Libxml2Dom::Text(node)));
    else if (Libxml2Dom::Named(node, "uuid"))
      colct.SetUUID(Wide(Libxml2Dom::Text(node)));
    else if (Libxml2Dom::Named(node, "owner"))
      colct.GetColctNetData()->SetOwner(Wide(Libxml2Dom::Text(node)));
    else
      Libxml2Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
        const LONG number = Number(value);
        CNodeStat& stat = *colct.GetNodeStat();
        if (name == "addDate") stat.SetStatTime(number, 0, 0, CNodeStat::kAdded);
        if (name == "lastModified") stat.SetStatTime(0, number, 0, CNodeStat::kModified);
        if (name == "lastVisit") stat.SetStatTime(0, 0, number, CNodeStat::kLastVisited);
        if (name == "basebuild") colct.SetBaseBuild(number);
        if (name == "checkedin") colct.SetCheckedIn(value == "true" ? CBaseNode::kCheckedIn : 0);
      });
  }

  static void WritePeer(PeerWriter& writer, Data head) {
    writer.Start("collectionlist");
    writer.Attribute("version", "1.0");
    for (const RColctItem* cell = head; cell; cell = cell->next) {
      CColctNode& colct = *cell->item;
      LONG added = 0, modified = 0, visited = 0;
      colct.GetNodeStat()->GetStatTime(&added, &modified, &visited);
      writer.Start("collection");
      writer.ElementUnlessEmpty("title", colct.GetName());
      writer.ElementUnlessEmpty("link", colct.GetUrl());
      writer.ElementUnlessEmpty("description", colct.GetDescription());
      writer.Start("stat");
      writer.Attribute("addDate", added);
      writer.Attribute("lastModified", modified);
      writer.Attribute("lastVisit", visited);
      writer.End();
      writer.NewLine();
      writer.ElementUnlessEmpty("uuid", colct.GetUUID());
      if (colct.GetVersion() != 0) writer.Element("version", colct.GetVersion());
      if (colct.GetBaseBuild() != 0) {
        writer.Start("build");
        writer.Attribute("basebuild", colct.GetBaseBuild());
        if (!colct.HasCheckedIn(nullptr)) writer.Attribute("checkedin", "false");
        writer.End();
        writer.NewLine();
      }
      writer.ElementUnlessEmpty("owner", colct.GetColctNetData()->GetOwner());
      writer.End();
      writer.NewLine();
    }
  }
};

struct ColctItemIdsDocument : PeerItems {
  static constexpr const char* kName = "ColctItemIds";
  static constexpr int kRounds = 1;
  using Data = RColctItemID*;

  static Data New() {
    Data head = nullptr;
    SampleTexts texts;
    for (int i = 0; i < static_cast<int>(kDocumentBytes / 130); ++i) {
      CColctItemID* const id = CColctItemID::New();
      id->SetColctID(texts.Uuid(i / 20));
      id->SetItemID(texts.Uuid(i));
      if (i % 4) id->SetName(texts.Name(i));
      chain::Append(head, RColctItemID::New(id));
    }
    return head;
  }
  static void Free(Data head) { RColctItemID::DeleteList(head); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadColctItemID, &CReadColctItemID::DetachRColctItemIDHead>(document);
  }
  static bool Save(Data head, const std::filesystem::path& path) {
    return SaveWith<CWriteColctItemID, &CWriteColctItemID::SetRColctItemIDHead>(head, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data head = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "item")) return;
      CColctItemID* const id = CColctItemID::New();
      chain::Append(head, RColctItemID::New(id));
      Libxml2Dom::ForEachAttribute(element, [&](std::string_view name, std::string_view value) {
        if (name == "colctid") id->SetColctID(Wide(value));
        if (name == "id") id->SetItemID(Wide(value));
      });
      const std::string_view name = Libxml2Dom::Text(element);
      if (!name.empty()) id->SetName(Wide(name));
    });
    return head;
  }

  static void WritePeer(PeerWriter& writer, Data head) {
    writer.Start("colctitem");
    writer.Attribute("version", "1.0");
    writer.NewLine();
    for (const RColctItemID* cell = head; cell; cell = cell->next) {
      writer.Start("item");
      writer.Attribute("colctid", cell->item->GetColctID());
      writer.Attribute("id", cell->item->GetItemID());
      if (cell->item->GetName()) writer.Text(cell->item->GetName());
      writer.End();
      writer.NewLine();
    }
  }
};

struct ColctProfileDocument : PeerItems {
  static constexpr const char* kName = "ColctProfile";
  static constexpr int kRounds = 1;
  using Data = RColctExData*;

  static Data New() {
    Data head = nullptr;
    SampleTexts texts;
    for (int i = 0; i < static_cast<int>(kDocumentBytes / 120); ++i) {
      CColctExData* const data = CColctExData::New();
      data->SetColctUrl(texts.Path(i));
      data->SetItemID(texts.Uuid(i));
      chain::Append(head, RColctExData::New(data));
    }
    return head;
  }
  static void Free(Data head) { RColctExData::DeleteList(head); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadColctExData, &CReadColctExData::DetachRColctExDataHead>(document);
  }
  static bool Save(Data head, const std::filesystem::path& path) {
    return SaveWith<CWriteColctExData, &CWriteColctExData::SetRColctExDataHead>(head, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data head = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "colct")) return;
      CColctExData* const data = CColctExData::New();
      chain::Append(head, RColctExData::New(data));
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) {
        if (Libxml2Dom::Named(node, "url"))
          data->SetColctUrl(Wide(Libxml2Dom::Text(node)));
        else if (Libxml2Dom::Named(node, "item"))
          data->SetItemID(Wide(Libxml2Dom::Text(node)));
      });
    });
    return head;
  }

  static void WritePeer(PeerWriter& writer, Data head) {
    writer.Start("colctprofile");
    writer.Attribute("version", "1.0");
    for (const RColctExData* cell = head; cell; cell = cell->next) {
      writer.Start("colct");
      writer.ElementUnlessEmpty("url", cell->item->GetColctUrl());
      if (cell->item->GetItemID()) writer.Element("item", cell->item->GetItemID());
      writer.End();
      writer.NewLine();
    }
  }
};

/// Notifications are small documents, so many are measured together.
struct NotificationDocument : PeerItems {
  static constexpr const char* kName = "Notification";
  static constexpr int kRounds = 5000;
  using Data = CVSMNotifyMsg*;

  static Data New() {
    SampleTexts texts;
    CVSMNotifyMsg* const message = CVSMNotifyMsg::New();
    message->SetName(texts.Name(0));
    message->SetDesc(texts.Description(0));
    message->SetLink(texts.Url(0));
    message->SetUUID(texts.Uuid(0));
    message->SetParent(texts.Name(1));
    message->SetParentID(texts.Uuid(1));
    message->SetOldParent(texts.Name(2));
    message->SetOldParentID(texts.Uuid(2));
    return message;
  }
  static void Free(Data message) { CVSMNotifyMsg::Delete(message); }
  static Data Read(const std::string& document) {
    return ReadWith<CReadVSMNotify, &CReadVSMNotify::DetachVSMNotifyMsg>(document);
  }
  static bool Save(Data message, const std::filesystem::path& path) {
    return SaveWith<CWriteVSMNotifyMsg, &CWriteVSMNotifyMsg::SetVSMNotifyMsg>(message, path);
  }

  Data ReadPeer(Libxml2Dom::Node root) {
    Data message = nullptr;
    Libxml2Dom::ForEachChild(root, [&](Libxml2Dom::Node element) {
      if (!Libxml2Dom::Named(element, "item")) return;
      CVSMNotifyMsg::Delete(message);
      message = CVSMNotifyMsg::New();
      Libxml2Dom::ForEachChild(element, [&](Libxml2Dom::Node node) { ReadPart(*message, node); });
    });
    return message;
  }
  void ReadPart(CVSMNotifyMsg& message, Libxml2Dom::Node node) {
    const Wide text(Libxml2Dom::Text(node));
    if (Libxml2Dom::Named(node, "title"))
      message.SetName(text);
    else if (Libxml2Dom::Named(node, "description"))
      message.SetDesc(text);
    else if (Libxml2Dom::Named(node, "link"))
      message.SetLink(text);
    else if (Libxml2Dom::Named(node, "guid"))
      message.SetUUID(text);
    else if (Libxml2Dom::Named(node, "parent"))
      message.SetParent(text);
    else if (Libxml2Dom::Named(node, "oldparent"))
      message.SetOldParent(text);
    Libxml2Dom::ForEachAttribute(node, [&](std::string_view name, std::string_view value) {
      if (name != "id") return;
      if (Libxml2Dom::Named(node, "parent")) message.SetParentID(Wide(value));
      if (Libxml2Dom::Named(node, "oldparent")) message.SetOldParentID(Wide(value));
    });
  }

  static void WritePeer(PeerWriter& writer, Data message) {
    writer.Start("vsmnotify");
    writer.Start("item");
    writer.Element("type", "UNKNOWN");
    writer.Element("title", message->GetName());
    writer.Element("description", message->GetDesc());
    writer.Element("link", message->GetLink());
    writer.Element("guid", message->GetUUID());
    writer.Start("parent");
    writer.Attribute("id", message->GetParentID());
    writer.Text(message->GetParent());
    writer.End();
    writer.Start("oldparent");
    writer.Attribute("id", message->GetOldParentID());
    writer.Text(message->GetOldParent());
    writer.End();
  }
};

/// A notification of 500 bytes is saved to memory, where the file system does not count.
void NotificationToMemory(benchmark::State& state) {
  const Notification message(NotificationDocument::New());
  for (auto _ : state) {
    CWriteVSMNotifyMsg writer;
    writer.SetVSMNotifyMsg(message.get());
    ConvertedText bytes;
    int length = 0;
    if (!writer.GetXMLBytes(Out(bytes), &length)) state.SkipWithError("not saved");
  }
}

void NotificationToMemoryByPeer(benchmark::State& state) {
  const Notification message(NotificationDocument::New());
  for (auto _ : state) {
    xmlBuffer* const memory = xmlBufferCreate();
    {
      PeerWriter writer(memory);
      writer.StartDocument();
      NotificationDocument::WritePeer(writer, message.get());
      if (!writer.EndDocument()) state.SkipWithError("not saved");
    }
    xmlBufferFree(memory);
  }
}

BENCHMARK(NotificationToMemory)->Name("NotificationSaveBytes/vosmere");
BENCHMARK(NotificationToMemoryByPeer)->Name("NotificationSaveBytes/libxml2");

const bool kRegistered =
    RegisterDocument<ColctListDocument>() && RegisterDocument<ColctItemIdsDocument>() &&
    RegisterDocument<ColctProfileDocument>() && RegisterDocument<NotificationDocument>();

}  // namespace
}  // namespace vosmere::bench
