// The operations whose memory is refused, a row each.
#pragma once

#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "report/fault_rows.h"
#include "report/refusing_heap.h"

#define VOSMERE_TEST_DATA REPORT_DATA
#include "tests/support/disk.h"
#include "tests/support/files.h"
#include "tests/support/order.h"
#include "tests/support/stored_tree.h"
#include "vosmere/cpp.h"

namespace vosmere::report {

template <class Work>
bool Memory::Try(Work work) {
  bool done = true;
  {
    const RefusedMemory refused(number_, onlyOnce_);
    try {
      const unsigned long before = LostTexts();
      if constexpr (std::is_void_v<decltype(work())>) {
        work();
        done = LostTexts() == before;  // setters say it there
      } else {
        done = static_cast<bool>(work());
      }
    } catch (const std::bad_alloc&) {
      threw_ = true;
      done = false;
    }
    wasRefused_ |= refused.WasRefused();
  }
  Expect(done || wasRefused_, "fails although memory was there");
  return done;
}

namespace rows {

using test::Dump, test::ReadBytes, test::TempFolder, test::TestData, test::WriteBytes;
namespace fs = std::filesystem;

template <class Value>
Left Result_(bool done, const Value& value) {
  return done ? Left(value) : std::nullopt;
}

/// The operation failed and has left everything as it was.
inline Left Kept(const std::string& before, const std::string& after) {
  Memory::Expect(before == after, "fails and has changed something");
  return {};
}

/// For an operation that changes something as a whole or not at all.
template <class Work, class Show>
Left Change(Memory& memory, Work work, Show show) {
  const std::string before = show();
  return memory.Try(work) ? Left(show()) : Kept(before, show());
}

/// For an operation with a result that can be an error.
template <class Value, class Work, class Show>
Left Get(Memory& memory, Work work, Show show) {
  std::optional<Result<Value>> result;
  if (!memory.Try([&] { return result.emplace(work()), true; })) return {};
  if (*result) return show(**result);
  memory.Blames(result->error());
  return {};
}

/// For an operation that returns an error or nothing.
template <class Work, class Show>
Left Do(Memory& memory, Work work, Show show) {
  std::optional<Error> error;
  if (!memory.Try([&] { return error = work(), true; })) return {};
  if (!error) return show();
  memory.Blames(*error);
  return {};
}

template <class Things>
std::string Listed(const Things& things) {
  std::ostringstream text;
  for (const auto& thing : things) text << thing << '\n';
  return text.str();
}

inline std::string U8(const WChar* text) {
  return text ? ToUtf8(text) : "(null)";
}

inline std::u16string LongText(std::size_t length = 300) {
  std::u16string text = u"Åse 世界 ";
  while (text.size() < length) text += u"and so on ";
  return text;
}

// Documents.

template <class Kind>
struct Golden;
#define VOSMERE_GOLDEN(kind, file)             \
  template <>                                  \
  struct Golden<kind> {                        \
    static constexpr const char* kFile = file; \
  }
VOSMERE_GOLDEN(Tree, "collection_tree.opml");
VOSMERE_GOLDEN(Collection, "collection.rss");
VOSMERE_GOLDEN(ColctList, "colct_list.xml");
VOSMERE_GOLDEN(ColctItemNameList, "colct_item_ids.xml");
VOSMERE_GOLDEN(ColctProfile, "colct_profile.xml");
VOSMERE_GOLDEN(FtpSiteList, "ftp_sites.xml");
VOSMERE_GOLDEN(Notification, "notification.xml");
VOSMERE_GOLDEN(PageData, "page_data.xml");
VOSMERE_GOLDEN(EnginePool, "search_engines.xml");
VOSMERE_GOLDEN(TagGroupList, "tags.xml");
VOSMERE_GOLDEN(ToolbarBands, "toolbars.xml");
#undef VOSMERE_GOLDEN

template <class Kind>
std::string Written(const Kind& value) {
  const Result<SavedBytes> saved = SaveToBytes(value, {.pages = true});
  Memory::Expect(static_cast<bool>(saved), "cannot be saved");
  return saved->bytes + Listed(saved->losses);
}

template <class Kind>
Kind LoadGolden() {
  return *Load<Kind>(Bytes(TestData(Golden<Kind>::kFile)));
}

template <class Kind>
Left LoadBytes(Memory& memory) {
  const std::string bytes = TestData(Golden<Kind>::kFile);
  Losses losses;
  return Get<Kind>(
      memory, [&] { return Load<Kind>(Bytes(bytes), &losses); },
      [&](const Kind& value) { return Written(value) + Listed(losses); });
}

/// A DOCTYPE with an entity makes it a document for the parser of the platform.
template <class Kind>
Left LoadWithParser(Memory& memory) {
  std::string bytes = TestData(Golden<Kind>::kFile);
  const std::size_t end = bytes.find("?>");
  bytes.insert(end == bytes.npos ? 0 : end + 2, "<!DOCTYPE a [<!ENTITY e 'e'>]>");
  return Get<Kind>(
      memory, [&] { return Load<Kind>(Bytes(bytes)); },
      [&](const Kind& value) { return Written(value); });
}

template <class Kind>
Left LoadPath(Memory& memory) {
  const std::string path = test::TestPath(Golden<Kind>::kFile);
  return Get<Kind>(
      memory, [&] { return Load<Kind>(path); }, [](const Kind& value) { return Written(value); });
}

template <class Kind>
Left SaveBytes(Memory& memory) {
  const Kind value = LoadGolden<Kind>();
  return Get<SavedBytes>(
      memory, [&] { return SaveToBytes(value); },
      [](const SavedBytes& saved) { return saved.bytes + Listed(saved.losses); });
}

/// On failure the file is as it was.
template <class Kind>
Left SavePath(Memory& memory) {
  const Kind value = LoadGolden<Kind>();
  const TempFolder folder;
  const fs::path file = folder / "document.xml";
  const std::string path = file;
  WriteBytes(file, "old");
  const Left left = Get<Saved>(
      memory, [&] { return Save(path, value); },
      [&](const Saved& saved) { return ReadBytes(file) + Listed(saved.losses); });
  if (!left) Memory::Expect(ReadBytes(file) == "old", "fails and has changed the file");
  Memory::Expect(std::distance(fs::directory_iterator(folder / ""), {}) == 1, "leaves a file");
  return left;
}

template <class Kind>
void AddDocument(std::vector<Row>& rows) {
  const char* const file = Golden<Kind>::kFile;
  static const std::string kNames[] = {
      std::string("Load from memory: ") + file, std::string("Load by the XML parser: ") + file,
      std::string("Load from a file: ") + file, std::string("Save to memory: ") + file,
      std::string("Save to a file: ") + file};
  Left (*const kRuns[])(Memory&) = {LoadBytes<Kind>, LoadWithParser<Kind>, LoadPath<Kind>,
                                    SaveBytes<Kind>, SavePath<Kind>};
  for (int i = 0; i < 5; ++i) rows.push_back({"documents", kNames[i].c_str(), kRuns[i]});
}

inline void AddDocuments(std::vector<Row>& rows) {
  AddDocument<Tree>(rows);
  AddDocument<Collection>(rows);
  AddDocument<ColctList>(rows);
  AddDocument<ColctItemNameList>(rows);
  AddDocument<ColctProfile>(rows);
  AddDocument<FtpSiteList>(rows);
  AddDocument<Notification>(rows);
  AddDocument<PageData>(rows);
  AddDocument<EnginePool>(rows);
  AddDocument<TagGroupList>(rows);
  AddDocument<ToolbarBands>(rows);
  const Row more[] = {
      {"documents", "Load a document of any kind",
       [](Memory& memory) {
         const std::string bytes = TestData("collection.rss");
         return Get<AnyDocument>(
             memory, [&] { return Load<AnyDocument>(Bytes(bytes)); },
             [](const AnyDocument& value) {
               return std::visit([](const auto& kind) { return Written(kind); }, value);
             });
       }},
      {"documents", "Load from a stream",
       [](Memory& memory) {
         std::istringstream stream(TestData("collection_tree.opml"));
         return Get<Tree>(
             memory, [&] { return Load<Tree>(stream); },
             [](const Tree& tree) { return Written(tree); });
       }},
      {"documents", "Load from wide text",
       [](Memory& memory) {
         const Wide text(TestData("collection_tree.opml"));
         CReadColctTreeOPML reader;
         if (!memory.Try([&] { return reader.LoadBSTRXML(text); }))
           return memory.Blames(reader.LastError()), Left();
         return Left(Written(Tree(reader.DetachTreeRoot())));
       }},
      {"documents", "Load a document that is malformed",
       [](Memory& memory) -> Left {
         CReadColctTreeOPML reader;
         const std::string bytes = "<opml><body><outline text='a'></body></opml>";
         if (memory.Try(
                 [&] { return !reader.LoadXML(bytes.data(), static_cast<int>(bytes.size())); })) {
           if (reader.LastError().fault == DocumentFault::kNoMemory) return {};
           return std::string(reader.LastError().reason);
         }
         throw Broken("loads");
       }},
      {"documents", "Write as wide text",
       [](Memory& memory) -> Left {
         const Tree tree = LoadGolden<Tree>();
         CWriteColctTreeOPML writer;
         writer.SetTreeRoot(tree.get());
         SystemString text;
         if (!memory.Try([&] {
               text.reset(writer.GetXMLBSTR());
               return text != nullptr;
             }))
           return memory.Blames(writer.LastError()), Left();
         return ToUtf8(text.get());
       }},
      {"documents", "Write to a file, plainly",
       [](Memory& memory) -> Left {
         const Tree tree = LoadGolden<Tree>();
         const TempFolder folder;
         const Wide path((folder / "a.opml").u16string());
         CWriteColctTreeOPML writer;
         writer.SetTreeRoot(tree.get());
         if (!memory.Try([&] { return writer.SaveToFile(path); }))
           return memory.Blames(writer.LastError()), Left();
         return ReadBytes(folder / "a.opml");
       }},
      {"documents", "Write with a library path",
       [](Memory& memory) {
         const Tree tree = LoadGolden<Tree>();
         const Wide base(u"C:\\Programs\\Vosmere"), library(u"\\Library\\");
         return Get<SavedBytes>(
             memory,
             [&] { return SaveToBytes(tree, {.base = base, .library = library, .pages = true}); },
             [](const SavedBytes& saved) { return saved.bytes + Listed(saved.losses); });
       }},
      {"documents", "Convert an escaped value",
       [](Memory& memory) -> Left {
         struct Writer : CWriteColctTreeOPML {
         } writer;
         const SystemString value(SysAllocString(Wide(u"a < b & c " + LongText())));
         ConvertedText text;
         int length = 0;
         if (!memory.Try([&] { return writer.GetXMLUTF8(value.get(), Out(text), &length); }))
           return {};
         return std::string(text.get(), static_cast<std::size_t>(length));
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

// Items and trees.

/// A tree with a value in every field, and pages, folders and collections.
inline Tree AnyTree(unsigned seed = 7) {
  Tree tree = NewTree("root");
  test::RandomChanges random(seed);
  for (int i = 0; i < 60; ++i) random.Change(tree.get());
  Add<CUrlNode>(tree, "b page", "http://a.example/");
  CFolderNode* const folder = Add<CFolderNode>(tree, "A folder");
  Add<CUrlNode>(*folder, LongText(), "http://b.example/");
  // New items have the time at which they were made.
  const sys_seconds time(std::chrono::seconds(1'200'000'000));
  for (CBaseNode& item : Items(tree)) SetTimes(item, {time, time, time});
  SetTimes(*tree->item, {time, time, time});
  return tree;
}
/// Frees the local trees, too.
class WholeTree {
 public:
  explicit WholeTree(unsigned seed = 7) : tree(AnyTree(seed)) {}
  explicit WholeTree(Tree from) : tree(std::move(from)) {}
  ~WholeTree() { test::RandomChanges::Free(std::move(tree)); }
  Tree tree;
};

template <class Node>
Left NewItem(Memory& memory) {
  Item<Node> item;
  if (!memory.Try([&] {
        item.reset(Node::New());
        return item != nullptr;
      }))
    return {};
  return U8(item->GetName());
}

template <class Record>
Left NewRecord(Memory& memory) {
  Owned<Record, Record::Delete> record;
  return Result_(memory.Try([&] {
    record.reset(Record::New());
    return record != nullptr;
  }),
                 "made");
}

template <class Node>
Left CopyItem(Memory& memory) {
  const Tree tree = NewTree<CColctNode>(LongText(), LongText());
  Item<Node> source(Node::New());
  SetName(*source, LongText());
  SetDescription(*source, LongText());
  if constexpr (AddressItem<Node>) {
    SetAddress(*source, LongText());
    source->SetAuthor(Wide("author"));
    SetTags(*source, "a b c");
  }
  Item<Node> copy;
  if (!memory.Try([&] {
        copy.reset(Node::New(source.get()));
        return copy != nullptr;
      }))
    return {};
  std::string shown = U8(copy->GetName()) + U8(copy->GetDescription());
  if constexpr (AddressItem<Node>)
    shown += U8(copy->GetUrl()) + U8(copy->GetAuthor()) + Listed(Tags(*copy));
  return shown;
}

template <SortBy by>
Left SortTree(Memory& memory) {
  const WholeTree whole;
  return Change(
      memory, [&] { Sort(whole.tree, by); }, [&] { return Dump(whole.tree.get()); });
}

inline void AddTrees(std::vector<Row>& rows) {
  const Row more[] = {
      {"tree", "CFolderNode::New", NewItem<CFolderNode>},
      {"tree", "CUrlNode::New", NewItem<CUrlNode>},
      {"tree", "CColctNode::New", NewItem<CColctNode>},
      {"tree", "CEngineNode::New", NewItem<CEngineNode>},
      {"tree", "CEnginePool::New", NewItem<CEnginePool>},
      {"tree", "a copy of a CFolderNode", CopyItem<CFolderNode>},
      {"tree", "a copy of a CUrlNode", CopyItem<CUrlNode>},
      {"tree", "a copy of a CColctNode", CopyItem<CColctNode>},
      {"tree", "CNameValuePair",
       [](Memory& memory) -> Left {
         NameValueList pair;
         const Wide text(LongText());
         if (!memory.Try([&] {
               const unsigned long lost = LostTexts();
               pair.reset(CNameValuePair::New());
               if (pair) pair->SetName(text), pair->SetValue(text);
               return pair && LostTexts() == lost;
             }))
           return {};
         return U8(CNameValuePair::FindValue(pair.get(), text));
       }},
      {"tree", "CColctExData::New", NewRecord<CColctExData>},
      {"tree", "CColctItemID::New", NewRecord<CColctItemID>},
      {"tree", "CFtpConBase::New", NewRecord<CFtpConBase>},
      {"tree", "CVSMNotifyMsg::New", NewRecord<CVSMNotifyMsg>},
      {"tree", "RNode::New",
       [](Memory& memory) {
         Owned<RNode, RNode::Delete> link;
         return Result_(memory.Try([&] {
           link.reset(RNode::New(nullptr, NT_URL));
           return link != nullptr;
         }),
                        "made");
       }},
      {"tree", "RNode::New2",
       [](Memory& memory) {
         Item<CUrlNode> page(CUrlNode::New());
         Owned<RNode, RNode::Delete> link;
         const bool made = memory.Try([&] {
           link.reset(RNode::New2(page.get(), NT_URL));
           return link != nullptr;
         });
         Memory::Expect(page->GetRNode() == link.get(), "the item points elsewhere");
         return Result_(made, "made");
       }},
      {"tree", "NewTree",
       [](Memory& memory) {
         Tree tree;
         const bool made = memory.Try([&] {
           tree = NewTree<CUrlNode>(LongText(), LongText());
           return true;
         });
         return Result_(made, Dump(tree.get()));
       }},
      {"tree", "NewCollection",
       [](Memory& memory) {
         Collection colct;
         const bool made = memory.Try([&] {
           colct = NewCollection(LongText());
           return true;
         });
         return Result_(made, colct ? Dump(colct->GetLocRNodeRoot()) : "");
       }},
      {"tree", "Add a page",
       [](Memory& memory) {
         const WholeTree whole;
         const std::u16string name = LongText();
         return Change(
             memory, [&] { return Add<CUrlNode>(whole.tree, name, "http://c.example/"); },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "Add a tree",
       [](Memory& memory) {
         const WholeTree whole;
         Tree more = AnyTree(9);
         return Change(
             memory, [&] { return Add(whole.tree, std::move(more)); },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "Move",
       [](Memory& memory) {
         const WholeTree whole;
         return Change(
             memory,
             [&] {
               return Move(*Find(whole.tree, "b page"), Find<CFolderNode>(whole.tree, "A folder"));
             },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "Remove",
       [](Memory& memory) {
         const WholeTree whole;
         return Change(
             memory, [&] { return Remove(*Find(whole.tree, "A folder")) != nullptr; },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "RemoveIf",
       [](Memory& memory) {
         const WholeTree whole;
         return Change(
             memory, [&] { RemoveIf<CUrlNode>(whole.tree, AtAddress{"http://a.example/"}); },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "Sort by name", SortTree<SortBy::kName>},
      {"tree", "Sort by time added", SortTree<SortBy::kAdded>},
      {"tree", "Sort by time modified", SortTree<SortBy::kModified>},
      {"tree", "Sort by last visit", SortTree<SortBy::kLastVisited>},
      {"tree", "SortFolderChildrenByOrder",
       [](Memory& memory) {
         const WholeTree whole;
         return Change(
             memory, [&] { RNTool::SortFolderChildrenByOrder(whole.tree.get()); },
             [&] { return Dump(whole.tree.get()); });
       }},
      {"tree", "Copy a tree",
       [](Memory& memory) {
         const WholeTree whole;
         Tree copy;
         const bool made = memory.Try([&] {
           copy = Copy(whole.tree);
           return true;
         });
         return Result_(made, Dump(copy.get()));
       }},
      {"tree", "Copy a collection",
       [](Memory& memory) {
         const Collection colct = LoadGolden<Collection>();
         Collection copy;
         if (!memory.Try([&] {
               copy = Copy(*colct);
               return true;
             }))
           return Left();
         return Left(Written(copy));
       }},
      {"tree", "SetName, SetDescription, SetAddress",
       [](Memory& memory) -> Left {
         const Tree tree = NewTree<CUrlNode>("name", "address");
         CUrlNode& page = *As<CUrlNode>(tree);
         const std::u16string text = LongText();
         if (!memory.Try([&] {
               SetName(page, text);
               SetDescription(page, text);
               SetAddress(page, text);
               return true;
             })) {
           Memory::Expect(AddressOf(page) == "address", "fails and has changed the last one");
           return {};
         }
         return Dump(tree.get());
       }},
      {"tree", "the setters of a page",
       [](Memory& memory) {
         const Tree tree = NewTree<CUrlNode>("name", "address");
         CUrlNode& page = *As<CUrlNode>(tree);
         const Wide text(LongText());
         const auto set = [&] {
           page.SetName(text), page.SetDescription(text), page.SetUUID(text), page.SetUrl(text);
           page.SetAuthor(text), page.SetRelationUrl(text);
         };
         return Result_(memory.Try(set), Dump(tree.get()));
       }},
      {"tree", "the setters of CProperties",
       [](Memory& memory) {
         CProperties properties;
         const Wide text(LongText());
         const bool set = memory.Try([&] {
           properties.SetName(text), properties.SetDescription(text), properties.SetUrl(text);
         });
         return Result_(set, U8(properties.GetName()) + U8(properties.GetDescription()) +
                                 U8(properties.GetUrl()));
       }},
      {"tree", "GetUrlProp",
       [](Memory& memory) {
         Item<CUrlNode> page(CUrlNode::New());
         return Result_(memory.Try([&] { return page->GetUrlProp(); }), "made");
       }},
      {"tree", "GenerateRBstrItemList",
       [](Memory& memory) {
         std::vector<WChar> text = {'a', ' ', 'b', ',', 'c', 'c', 0};
         PageTagList tags;
         const bool made =
             memory.Try([&] { tags.reset(CUrlProp::GenerateRBstrItemList(text.data())); });
         return Result_(made, Listed(Each(tags)));
       }},
      {"tree", "SetTags",
       [](Memory& memory) {
         const Tree tree = NewTree<CUrlNode>("a");
         CUrlNode& page = *As<CUrlNode>(tree);
         SetTags(page, "before");
         return Change(
             memory,
             [&] {
               SetTags(page, "one two three");
               return true;
             },
             [&] { return Dump(tree.get()); });
       }},
      {"tree", "AddTag to a page",
       [](Memory& memory) {
         const Tree tree = NewTree<CUrlNode>("a");
         CUrlNode& page = *As<CUrlNode>(tree);
         SetTags(page, "before");
         return Change(
             memory,
             [&] {
               AddTag(page, "after");
               return true;
             },
             [&] { return Dump(tree.get()); });
       }},
      {"tree", "AddAllFolderChildren",
       [](Memory& memory) {
         const WholeTree whole;
         const Tree to = NewTree("to");
         return Change(
             memory,
             [&] {
               RNTool::AddAllFolderChildren(to.get(), whole.tree.get());
               return to->firstChild;
             },
             [&] { return Dump(to.get()); });
       }},
      {"tree", "AddFirstLevelFolderChildren",
       [](Memory& memory) {
         const WholeTree whole;
         const Tree to = NewTree("to");
         return Change(
             memory,
             [&] {
               RNTool::AddFirstLevelFolderChildren(to.get(), whole.tree.get());
               return to->firstChild;
             },
             [&] { return Dump(to.get()); });
       }},
      {"tree", "SetParent, FindRNodeByName, MarkRNodeGoThrough",
       [](Memory& memory) {
         const WholeTree whole;
         const Tree to = NewTree("to");
         const Wide name("b page");
         return Result_(memory.Try([&] {
           RNTool::MarkRNodeGoThrough(whole.tree.get(), 3, true);
           RNTool::SetParent(RNTool::FindRNodeByName(whole.tree.get(), name, NT_URL), to.get());
           return true;
         }),
                        Dump(to.get()));
       }},
      {"tree", "CreateUUID",
       [](Memory& memory) {
         SystemString uuid;
         return Result_(memory.Try([&] {
           uuid.reset(RNTool::CreateUUID());
           return uuid != nullptr;
         }),
                        std::to_string(SysStringLen(uuid.get())));
       }},
      {"tree", "walk, search, name, texts",
       [](Memory& memory) {
         const WholeTree whole;
         std::string found;
         return Result_(memory.Try([&] {
           for (CBaseNode& item : Items(whole.tree)) found += NameOf(item) + ";";
           if (Find(whole.tree, LongText())) found += "found";
           return true;
         }),
                        found);
       }},
      {"tree", "DeleteTree",
       [](Memory& memory) {
         WholeTree whole;
         RNode* folder = whole.tree.get();
         Tree part = Remove(*Find(folder, "A folder"));
         return Result_(memory.Try([&] {
           part.reset();
           return true;
         }),
                        Dump(folder));
       }},
      {"tree", "CSortRList",
       [](Memory& memory) {
         Item<CUrlNode> a(CUrlNode::New()), b(CUrlNode::New());
         SetName(*a, "b"), SetName(*b, "a");
         TList<CBaseNode*>* head = nullptr;
         const bool made = memory.Try([&] {
           return list::Append<CBaseNode*>(head, a.get()) &&
                  list::Append<CBaseNode*>(head, b.get());
         });
         if (made) head = CSortRList().Sort(head, true);
         const std::string first = head ? ToUtf8(head->data->GetName()) : "";
         list::Delete(head, [](CBaseNode*) {});
         return Result_(made, first);
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

}  // namespace rows
}  // namespace vosmere::report
