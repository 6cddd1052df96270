// The texts that classes keep, and what the copy of an item has.
#include <memory>
#include <ostream>
#include <sstream>

#include "tests/support/jobs.h"
#include "tests/support/test.h"
#include "vosmere/cpp/own.h"
#include "vosmere/pages/page_data.h"
#include "vosmere/tree/properties.h"

namespace vosmere::test::fields {

/// What a setter does with null, or with a text that is too long.
enum Rule { kNull, kEmpty, kIgnored, kCut };

/// A text of a class, with a function that makes an object of the class.
struct Text {
  const char* what;
  std::shared_ptr<void> (*make)();
  void (*set)(void* thing, const WChar* text);
  const WChar* (*get)(const void* thing);
  const char* initial = "(null)";
  Rule null = kNull;
  std::size_t longest = 0;  ///< in code units; 0 for no limit
  Rule longer = kIgnored;

  friend void PrintTo(const Text& text, std::ostream* out) { *out << text.what; }
};

template <class Thing>
std::shared_ptr<void> Make() {
  if constexpr (std::is_same_v<Thing, CTagGroup>)
    return {CTagStore::CreateTagGroup(), CTagStore::DeleteTagGroup};
  else if constexpr (std::is_same_v<Thing, CTagItem>)
    return {CTagStore::CreateTagItem(), CTagStore::DeleteTagItem};
  else if constexpr (requires { Thing::New(); })
    return {Thing::New(), [](Thing* thing) { Thing::Delete(thing); }};
  else
    return std::make_shared<Thing>();
}

#define TEXT(Class, Name, ...)                                                                  \
  {                                                                                             \
#Class "::" #Name, Make<Class>,                                                               \
   [](void* thing, const WChar* text) { static_cast<Class*>(thing)->Set##Name(text); },          \
   [](const void* thing) -> const WChar* { return static_cast<const Class*>(thing)->Get##Name(); } \
   __VA_OPT__(, ) __VA_ARGS__ \
  }

const Text kTexts[] = {
    TEXT(CFolderNode, Name, ""),
    TEXT(CFolderNode, Description, "", kEmpty),
    TEXT(CFolderNode, UUID, "", kEmpty, 36, kCut),
    TEXT(CUrlNode, Url, "about:blank", kNull, 2084),
    TEXT(CUrlNode, Author, "(null)", kNull, 2084, kNull),
    TEXT(CUrlNode, RelationUrl, "(null)", kNull, 2084, kNull),
    TEXT(CUrlProp, FileExtension),
    TEXT(CProperties, Name),
    TEXT(CProperties, Description, ""),
    TEXT(CProperties, Url),
    TEXT(CNameValuePair, Name),
    TEXT(CNameValuePair, Value),
    TEXT(CEngineNode, Url, "about:blank", kIgnored, 2084),
    TEXT(CEngineNode, SearchType, "web", kIgnored, 2084),
    TEXT(CEngineNode, IconUrl, "(null)", kNull, 2083, kNull),
    TEXT(CEngineNode, IconText, "(null)", kNull, 2083, kNull),
    TEXT(CEngineNode, StoredSite, "(null)", kNull, 2083, kNull),
    TEXT(CColctNetData, Owner),
    TEXT(CColctItemID, ColctID),
    TEXT(CColctItemID, ItemID),
    TEXT(CColctItemID, Name),
    TEXT(CColctExData, ColctUrl),
    TEXT(CColctExData, ItemID),
    TEXT(CTabUrlItem, Url, "(null)", kNull, 2084),
    TEXT(CTagGroup, Name),
    TEXT(CTagItem, Name),
    TEXT(CFtpConBase, Title),
    TEXT(CFtpConBase, Host),
    TEXT(CFtpConBase, UserName),
    TEXT(CFtpConBase, InitPath),
    TEXT(CFtpConBase, UUID),
    TEXT(CFtpConBase, StampID),
    TEXT(CPageData, PageTitle),
    TEXT(CPageData, Brand),
    TEXT(CPageData, BrandLink),
    TEXT(CPageData, Description),
    TEXT(CPageData, IndexTitle),
    TEXT(CPageData, ContentTitle),
    TEXT(CPageData, RootNodeTitle),
    TEXT(CPageData, TemplateName),
    TEXT(CVSMNotifyMsg, Name),
    TEXT(CVSMNotifyMsg, Desc),
    TEXT(CVSMNotifyMsg, Link),
    TEXT(CVSMNotifyMsg, UUID),
    TEXT(CVSMNotifyMsg, Parent),
    TEXT(CVSMNotifyMsg, ParentID),
    TEXT(CVSMNotifyMsg, OldParent),
    TEXT(CVSMNotifyMsg, OldParentID),
    TEXT(CVSMNotifyMsg, RefItem),
    TEXT(CVSMNotifyMsg, RefItemID),
    TEXT(CVSMNotifyMsg, RefItemType),
};

TEST(Texts, AreCopiedUpToTheirLength) {
  for (const Text& text : kTexts) {
    SCOPED_TRACE(text.what);
    const std::shared_ptr<void> thing = text.make();
    const auto get = [&] { return Utf8(text.get(thing.get())); };
    const auto set = [&](const WChar* to) {
      text.set(thing.get(), to);
      return get();
    };
    const auto by = [](Rule rule, const char* old, const char* cut = "") {
      return rule == kNull ? "(null)" : rule == kEmpty ? "" : rule == kCut ? cut : old;
    };
    EXPECT_EQ(get(), text.initial);
    EXPECT_EQ(set(W("")), "");
    EXPECT_EQ(set(W("Straße 😀")), "Straße 😀");
    EXPECT_EQ(set(text.get(thing.get()) + 1), "traße 😀") << "a text of its own";
    EXPECT_EQ(set(nullptr), by(text.null, "traße 😀"));
    const std::string longest(text.longest ? text.longest : 70000, 'x');
    EXPECT_EQ(set(W(longest)), longest);
    if (text.longest) {
      EXPECT_EQ(set(W(longest + "y")), by(text.longer, longest.c_str(), longest.c_str()));
    }
    set(W("old"));
    const Wide fresh = W("fresh");
    const unsigned long lost = LostTexts();
    bool failed = false;
    {
      const FailingMemory memory(0);
      text.set(thing.get(), fresh);
      failed = memory.Failed();
    }
    EXPECT_EQ(get(), failed ? "old" : "fresh");
    EXPECT_EQ(LostTexts() - lost, failed ? 1u : 0u);
  }
}

void Fill(CBaseNode& node) {
  node.SetName(W("name"));
  node.SetDescription(W("text"));
  node.SetUUID(W("identity"));
  node.SetVersion(2);
  node.SetOrder(3);
  node.SetCheckedIn(4);
  node.SetBaseBuild(5);
  node.SetAsDeleted(true);
  node.SetNodeData(6);
  node.GetNodeStat()->SetStatTime(7, 8, 9, ~0u);
  node.GetNodeStat()->MarkAsUnread(true);
  node.GetNodeStat()->SetFlag(10);
}
std::string Describe(const CBaseNode& node) {
  LONG added = 0, modified = 0, lastVisited = 0;
  int checkedIn = 0;
  node.HasCheckedIn(&checkedIn);
  node.GetNodeStat()->GetStatTime(&added, &modified, &lastVisited);
  std::ostringstream all;
  all << Utf8(node.GetName()) << '|' << Utf8(node.GetDescription()) << '|' << Utf8(node.GetUUID())
      << '|' << node.GetVersion() << ' ' << node.GetOrder() << ' ' << checkedIn << ' '
      << node.GetBaseBuild() << ' ' << node.IsDeleted() << ' ' << node.GetNodeData() << '|' << added
      << ' ' << modified << ' ' << lastVisited << ' ' << node.GetNodeStat()->IsUnread() << ' '
      << node.GetNodeStat()->GetFlag();
  return all.str();
}

/// Only for comparing.
RNode* SomeLink() {
  static char place;
  return reinterpret_cast<RNode*>(&place);
}

CUrlProp::TagList* Tags(const char* text) {
  Wide tags = W(std::string(text));
  return CUrlProp::GenerateRBstrItemList(const_cast<WChar*>(tags.get()));
}

void Fill(CUrlNode& page) {
  Fill(static_cast<CBaseNode&>(page));
  page.SetUrl(W("url"));
  page.SetAuthor(W("author"));
  page.SetRelationUrl(W("relation"));
  page.SetItemType(IT_FILE);
  page.GetUrlProp()->SetFileType(FT_XLS);
  page.GetUrlProp()->SetFileExtension(W("xls"));
  page.GetUrlProp()->SetTagsList(Tags("News sport"));
  page.GetUrlProp()->SetNeedSaveKeyWords(true);     // a copy does not have this,
  page.GetUrlProp()->SetRefColctRNode(SomeLink());  // nor this
}
std::string Describe(const CUrlNode& page) {
  const CUrlProp* const prop = page.GetUrlProp();
  std::ostringstream all;
  all << Describe(static_cast<const CBaseNode&>(page)) << '|' << Utf8(page.GetUrl()) << '|'
      << Utf8(page.GetAuthor()) << '|' << Utf8(page.GetRelationUrl()) << '|' << page.GetItemType();
  if (prop)
    all << '|' << prop->GetFileType() << ' ' << Utf8(prop->GetFileExtension()) << ' '
        << prop->DoNeedSaveKeyWords() << !!prop->GetRefColctRNode() << ' '
        << Row(prop->GetTagsHead(), [](const auto* tag) { return Utf8(tag->data); });
  return all.str();
}

void Fill(CColctNetData& net) {
  net.SetOwner(W("owner"));
  net.SetOrdered(true);
  net.SetBeForeignColct(true);
  net.SetSynced(true);
  net.SetColctExpandState(true);
  net.SetSharingDomain(1);
  net.SetRole(2);
  net.SetPollingInterval(CColctNetData::kMinPollingInterval - 1);
  net.SetIssuedTimeEventID(6);
}
std::string Describe(const CColctNetData& net) {
  std::ostringstream all;
  all << Utf8(net.GetOwner()) << '|' << net.IsOrdered() << net.IsForeignColct() << net.IsSynced()
      << net.GetColctExpandState() << '|' << net.GetSharingDomain() << ' ' << net.GetRole() << ' '
      << net.GetPollingInterval() << ' ' << net.GetIssuedTimeEventID();
  return all.str();
}

void Fill(CColctNode& colct) {
  Fill(static_cast<CUrlNode&>(colct));
  Fill(*colct.GetColctNetData());
  colct.SetColctType(static_cast<tagCOLCTTYPE>(7));
  colct.SetHasNewData(true);
  colct.SetLocRNodeRoot(SomeLink());
  for (const int state : {2, 3, -2}) colct.SetLoadingState(state);  // the last two are not states
}
std::string Describe(const CColctNode& colct) {
  std::ostringstream all;
  all << Describe(static_cast<const CUrlNode&>(colct)) << '|' << Describe(*colct.GetColctNetData())
      << '|' << colct.GetColctType() << ' ' << colct.HasNewData() << ' ' << colct.GetLoadingState()
      << ' ' << (colct.GetLocRNodeRoot() == SomeLink());
  return all.str();
}

void Fill(CEngineNode& engine) {
  Fill(static_cast<CBaseNode&>(engine));
  engine.SetUrl(W("url"));
  engine.SetSearchType(W("type"));
  engine.SetIconUrl(W("icon"));
  engine.SetIconText(W("letters"));
  engine.SetStoredSite(W("site"));
}
std::string Describe(const CEngineNode& engine) {
  std::string all = Describe(static_cast<const CBaseNode&>(engine));
  for (const WChar* const text : {engine.GetUrl(), engine.GetSearchType(), engine.GetIconUrl(),
                                  engine.GetIconText(), engine.GetStoredSite()})
    all += '|' + Utf8(text);
  return all;
}

/// `fresh` and `filled` are the fields that the class adds, in a new item and in a copy.
template <class Node>
void ExpectCopies(const std::string& fresh, const std::string& filled) {
  const SteppedClock clock(1000, 0, 1);  // advances at each reading
  Item<Node> source(Node::New());
  EXPECT_EQ(Describe(*source), "|||1 1 2 0 0 0|1000 1000 1000 0 0" + fresh);
  EXPECT_EQ(Describe(*Item<Node>(Node::New(source.get()))), Describe(*source));
  Fill(*source);
  const std::unique_ptr<RNode, FreeWith<RNode::Delete>> link(RNode::New2(source.get(), NT_FOLDER));
  const Item<Node> copy(Node::New(source.get()));
  source.reset();
  EXPECT_EQ(Describe(*copy), "name|text|identity|2 3 4 5 1 6|7 8 9 1 10" + filled);
  EXPECT_EQ(copy->GetRNode(), nullptr);
  ExpectNullAtEachFailure([&] { return Node::New(copy.get()); }, CBaseNode::Delete);
}

TEST(Items, AreCopiedWholeButForTheirLink) {
  const std::string page = "|url|author|relation|3|6 xls 00 News sport", net = "owner|1111|1 2 4 6";
  ExpectCopies<CFolderNode>("", "");
  ExpectCopies<CEnginePool>("", "");
  ExpectCopies<CUrlNode>("|about:blank|(null)|(null)|0", page);
  ExpectCopies<CColctNode>("|about:blank|(null)|(null)|0|(null)|0000|-1 0 20 0|1 0 0 0",
                           page + "|" + net + "|7 1 2 1");
  ExpectCopies<CEngineNode>("|about:blank|web|(null)|(null)|(null)", "|url|type|icon|letters|site");

  CColctNetData data, assigned;
  Fill(data);
  assigned = data;
  EXPECT_EQ(Describe(assigned), net);
  assigned = CColctNetData();
  EXPECT_EQ(Describe(assigned), "owner|0000|-1 0 20 0")
      << "a null owner does not remove the old one";
}

}  // namespace vosmere::test::fields
