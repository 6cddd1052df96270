// The operations whose memory is refused, continued: lists, texts, files, the store, services.
#pragma once

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "report/form_server.h"
#include "report/memory_rows.h"

namespace vosmere::report::rows {

// Lists.

inline void AddLists(std::vector<Row>& rows) {
  const Row more[] = {
      {"lists", "Append a collection",
       [](Memory& memory) {
         ColctList list = LoadGolden<ColctList>();
         return Change(
             memory,
             [&] {
               Append(list, NewCollection("new"));
               return true;
             },
             [&] { return Written(list); });
       }},
      {"lists", "Append an FTP site",
       [](Memory& memory) {
         FtpSiteList list = LoadGolden<FtpSiteList>();
         return Change(
             memory,
             [&] {
               Append(list);
               return true;
             },
             [&] { return Written(list); });
       }},
      {"lists", "Append an item name",
       [](Memory& memory) {
         ColctItemNameList list = LoadGolden<ColctItemNameList>();
         return Change(
             memory,
             [&] {
               Append(list);
               return true;
             },
             [&] { return Written(list); });
       }},
      {"lists", "RemoveDuplicates",
       [](Memory& memory) {
         ColctList list = LoadGolden<ColctList>();
         Join(list, LoadGolden<ColctList>());
         // Whatever memory there is, the collections are removed; only their trees may be left.
         if (!memory.Try([&] { return RemoveDuplicates(list); })) return Left();
         return Left(Written(list));
       }},
      {"lists", "RemoveAddress",
       [](Memory& memory) {
         ColctList list = LoadGolden<ColctList>();
         const std::u16string address = ToUtf16((*Each(list).begin()).GetUrl());
         return Change(
             memory, [&] { return RemoveAddress(list, address); }, [&] { return Written(list); });
       }},
      {"lists", "Merge lists of collections",
       [](Memory& memory) {
         ColctList list = LoadGolden<ColctList>(), fresh = LoadGolden<ColctList>();
         const std::string before = Written(list);
         ColctList removed;
         if (!memory.Try([&] {
               removed = Merge(list, std::move(fresh));
               return true;
             }))
           return Kept(before, Written(list));
         return Left(Written(list) + Written(removed));
       }},
      {"lists", "CRColctTool::UpdateRColctItemList",
       [](Memory& memory) {
         ColctList list = LoadGolden<ColctList>(), fresh = LoadGolden<ColctList>();
         RColctItem *old = list.release(), *gone = nullptr;
         const bool done = memory.Try([&] {
           CRColctTool().UpdateRColctItemList(fresh.get(), &old, &gone);
           return true;
         });
         list.reset(old);
         const ColctList removed(gone);
         return Result_(done, Written(fresh) + Written(list) + Written(removed));
       }},
      {"lists", "Resolve",
       [](Memory& memory) {
         const ColctList list = LoadGolden<ColctList>();
         const ColctItemName name(CColctItemID::New());
         return Result_(memory.Try([&] {
           Resolve(*name, list);
           return true;
         }),
                        name->GetRefColctNode() ? "found" : "not found");
       }},
      {"lists", "AddEngine",
       [](Memory& memory) {
         const EnginePool pool = LoadGolden<EnginePool>();
         const std::u16string name = LongText();
         return Change(
             memory,
             [&] {
               AddEngine(*pool, name, name, "news");
               return true;
             },
             [&] { return Written(pool); });
       }},
      {"lists", "RemoveEngine",
       [](Memory& memory) {
         const EnginePool pool = LoadGolden<EnginePool>();
         return Change(
             memory, [&] { return RemoveEngine(*pool, *Engines(*pool).begin()) != nullptr; },
             [&] { return Written(pool); });
       }},
      {"lists", "Copy a pool of engines",
       [](Memory& memory) {
         const EnginePool pool = LoadGolden<EnginePool>();
         EnginePool copy;
         if (!memory.Try([&] {
               copy = Copy(*pool);
               return true;
             }))
           return Left();
         return Left(Written(copy));
       }},
      {"lists", "AddGroup and AddTag",
       [](Memory& memory) {
         CTagStore store;
         const auto show = [&] {
           std::string shown;
           for (const CTagGroup& group : Groups(store)) {
             shown += U8(group.GetName());
             for (const CTagItem& tag : Tags(group)) shown += U8(tag.GetName());
           }
           return shown;
         };
         CTagGroup& group = AddGroup(store, "group");
         return Change(
             memory,
             [&] {
               AddTag(group, LongText());
               return true;
             },
             show);
       }},
      {"lists", "AddGroup",
       [](Memory& memory) {
         CTagStore store;
         return Change(
             memory,
             [&] {
               AddGroup(store, LongText());
               return true;
             },
             [&] {
               return std::string(
                   store.GetTagGroupHead() ? U8(store.GetTagGroupHead()->data->GetName()) : "");
             });
       }},
      {"lists", "SortTagItem",
       [](Memory& memory) {
         CTagStore store;
         CTagGroup& group = AddGroup(store, "group");
         for (const char* name : {"b", "a", "c"}) AddTag(group, name);
         return Result_(memory.Try([&] {
           group.SortTagItem(true);
           return true;
         }),
                        U8(group.GetTagItemHead()->data->GetName()));
       }},
      {"lists", "CFtpWebAddress::Add",
       [](Memory& memory) {
         const FtpSite site(CFtpConBase::New());
         const Wide text(LongText());
         return Change(
             memory, [&] { return site->GetFtpWebAddress()->Add(text, text); },
             [&] {
               return std::string(site->GetFtpWebAddress()->GetHead()
                                      ? U8(site->GetFtpWebAddress()->GetHead()->GetLink())
                                      : "");
             });
       }},
      {"lists", "AddBandInfoCopy",
       [](Memory& memory) {
         CTBarBandInfo bands;
         TBARBANDINFO band;
         return Change(
             memory, [&] { return bands.AddBandInfoCopy(&band); },
             [&] { return std::string(bands.GetRBandInfoItemHead() ? "one" : "none"); });
       }},
      {"lists", "RColctItem, REngineItem, RColctItemID, RColctExData",
       [](Memory& memory) {
         ColctCells a;
         Owned<REngineItem, REngineItem::Delete> b;
         ColctItemNameList c;
         ColctExtraList d;
         return Result_(memory.Try([&] {
           a.reset(RColctItem::New(nullptr, true));
           b.reset(REngineItem::New(nullptr));
           return a && b;
         }),
                        "made");
       }},
      // Tabs.
      {"tabs", "CHashtable",
       [](Memory& memory) {
         std::unique_ptr<CHashtable> table;
         return Result_(memory.Try([&] {
           table = std::make_unique<CHashtable>(7);
           return true;
         }),
                        "made");
       }},
      {"tabs", "Put, over the growth of the table",
       [](Memory& memory) {
         CHashtable table(3);
         const Wide value(LongText());
         for (int i = 0; i < 40; ++i) table.Put(Wide("k" + std::to_string(i)), value, false);
         const auto show = [&] { return std::to_string(table.GetTotalItems()); };
         const Wide key("new");
         const std::string before = show();
         if (!memory.Try([&] { return table.Put(key, value, false); })) return Kept(before, show());
         Memory::Expect(table.Contains(key), "the new entry is not found");
         return Left(show());
       }},
      {"tabs", "Get, Remove, GetNextKeyValue",
       [](Memory& memory) {
         CHashtable table(3);
         for (int i = 0; i < 40; ++i) table.Put(Wide("k" + std::to_string(i)), Wide("v"), false);
         const Wide key("k7"), other("k8");
         SystemString value, next, nextValue;
         table.ResetPosition();
         if (!memory.Try([&] {
               return table.Get(key, Out(value)) && table.Remove(other) &&
                      table.GetNextKeyValue(Out(next), Out(nextValue));
             }))
           return Left();
         return Left(U8(value.get()) + U8(next.get()) + U8(nextValue.get()) +
                     std::to_string(table.GetTotalItems()));
       }},
      {"tabs", "AddUrl",
       [](Memory& memory) {
         CTabUrlData tab;
         const Wide url("http://a.example/"), other("http://b.example/");
         tab.AddUrl(url, true, nullptr);
         return Change(
             memory, [&] { tab.AddUrl(other, false, &tab); },
             [&] { return std::to_string(tab.GetNumberItem()); });
       }},
      {"tabs", "GetUrlItemList and GetZone",
       [](Memory& memory) {
         CTabUrlData tab;
         const Wide urls[] = {"http://a.example/", "http://b.example/"};
         tab.AddUrl(urls[0], true, nullptr);
         tab.AddUrl(urls[1], false, &tab);
         TabUrlList list;
         bool less = false;
         int count = 0, got = 0;
         const bool done = memory.Try([&] {
           got = tab.GetUrlItemList(Out(list));
           return got > 0;
         });
         const LONG zone = tab.GetZone(&less, &count);
         return Result_(done, std::to_string(got) + std::to_string(zone) + std::to_string(count));
       }},
      {"tabs", "CTabUrlItem::New",
       [](Memory& memory) {
         TabUrlList cell;
         const Wide url("http://a.example/");
         return Result_(memory.Try([&] {
           cell.reset(CTabUrlItem::New(url, 3));
           return cell != nullptr;
         }),
                        "made");
       }},
      {"tabs", "CUrlMapItem",
       [](Memory& memory) {
         Item<CUrlNode> page(CUrlNode::New());
         UrlMapEntry entry;
         const Wide url("http://a.example/");
         return Result_(memory.Try([&] {
           entry.reset(CUrlMapItem::New(url, page.get()));
           return entry != nullptr;
         }),
                        "made");
       }},
      {"tabs", "AddUrlNode and DeleteUrlNode",
       [](Memory& memory) {
         std::vector<Item<CUrlNode>> pages;
         for (int i = 0; i < 40; ++i) pages.emplace_back(CUrlNode::New());
         const Wide url("http://a.example/");
         const UrlMapEntry entry(CUrlMapItem::New(url, pages[0].get()));
         for (int i = 1; i < 39; ++i) entry->AddUrlNode(pages[i].get());
         const auto show = [&] { return std::to_string(entry->GetNumberUrlNodes()); };
         const std::string before = show();
         if (!memory.Try([&] { return entry->AddUrlNode(pages[39].get()); }))
           return Kept(before, show());
         entry->DeleteUrlNode(pages[5].get());
         return Left(show());
       }},
      {"tabs", "DeleteUrlNode",
       [](Memory& memory) {
         std::vector<Item<CUrlNode>> pages;
         for (int i = 0; i < 40; ++i) pages.emplace_back(CUrlNode::New());
         const Wide url("http://a.example/");
         const UrlMapEntry entry(CUrlMapItem::New(url, pages[0].get()));
         for (int i = 1; i < 40; ++i) entry->AddUrlNode(pages[i].get());
         return Result_(memory.Try([&] {
           entry->DeleteUrlNode(pages[30].get());
           return true;
         }),
                        std::to_string(entry->GetNumberUrlNodes()));
       }},
      {"tabs", "ModifyURL",
       [](Memory& memory) {
         Item<CUrlNode> page(CUrlNode::New());
         const Wide url("http://a.example/"), other(u"http://b.example/" + LongText());
         page->SetUrl(url);
         const UrlMapEntry entry(CUrlMapItem::New(url, page.get()));
         return Result_(memory.Try([&] { entry->ModifyURL(other); }),
                        U8(entry->GetUrl()) + U8(page->GetUrl()));
       }},
      {"tabs", "CTranslationItem",
       [](Memory& memory) {
         CTranslationItem item;
         const Wide text(LongText());
         return Result_(memory.Try([&] { item.SetItem(text, text); }),
                        U8(item.GetName()) + U8(item.GetCmdText()));
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

// Texts, dates, files.

template <bool (*Convert)(const WChar*, char**, int*)>
Left ConvertText(Memory& memory) {
  const SystemString source(SysAllocString(Wide(LongText(5000))));
  ConvertedText text;
  int length = 0;
  return Result_(memory.Try([&] { return Convert(source.get(), Out(text), &length); }),
                 text ? std::string(text.get(), static_cast<std::size_t>(length)) : "");
}

template <BSTR (*Show)(LONG)>
Left ShowDate(Memory& memory) {
  SystemString text;
  return Result_(memory.Try([&] {
    text.reset(Show(1'000'000'000));
    return text != nullptr;
  }),
                 U8(text.get()));
}

inline std::string* traced = nullptr;

inline void AddTexts(std::vector<Row>& rows) {
  const Row more[] = {
      {"text", "Wide",
       [](Memory& memory) {
         std::string back;
         const std::string utf8 = ToUtf8(LongText());
         return Result_(memory.Try([&] {
           back = ToUtf8(Wide(utf8).get());
           return true;
         }),
                        back);
       }},
      {"text", "ToUtf16, ToWString, TextView",
       [](Memory& memory) {
         std::u16string back;
         std::string sum;
         const Wide text(LongText());
         return Result_(memory.Try([&] {
           back = ToUtf16(text.get());
           sum = "a" + TextView(text.get());
           return TextView(text.get()) == back;
         }),
                        sum);
       }},
      {"text", "SysAllocString, SysReAllocString",
       [](Memory& memory) {
         SystemString text(SysAllocString(Wide("old")));
         const Wide other(LongText());
         BSTR raw = text.release();
         const bool done = memory.Try([&] { return SysReAllocString(&raw, other); });
         text.reset(raw);
         Memory::Expect(done || U8(text.get()) == "old", "fails and has changed the text");
         return Result_(done, U8(text.get()));
       }},
      {"text", "BSTRGetUTF8", ConvertText<CUnicodeTool::BSTRGetUTF8>},
      {"text", "TCHARGetUTF8", ConvertText<CUnicodeTool::TCHARGetUTF8>},
      {"text", "TCHARGetASCII", ConvertText<CUnicodeTool::TCHARGetASCII>},
      {"text", "UTF8GetBSTR",
       [](Memory& memory) {
         const std::string utf8 = ToUtf8(LongText(5000));
         SystemString text;
         return Result_(memory.Try([&] {
           return CUnicodeTool::UTF8GetBSTR(Out(text), utf8.data(), static_cast<int>(utf8.size()));
         }),
                        U8(text.get()));
       }},
      {"text", "CChunkBuffer",
       [](Memory& memory) {
         CChunkBuffer buffer;
         const std::string bytes(20000, 'x');
         OwnedPointer<char, WithArrayDelete> joined;
         const bool done = memory.Try([&] {
           buffer.Append(bytes.data(), 100);
           buffer.Append(bytes.data(), static_cast<int>(bytes.size()));
           return static_cast<bool>(joined = buffer.Joined());
         });
         Chunk* head;
         return Result_(done, std::to_string(buffer.Get(&head)));
       }},
      {"text", "MD5",
       [](Memory& memory) {
         WChar digest[33] = {};
         const Wide text(LongText(5000));
         return Result_(memory.Try([&] { return CEncodingTool::GetWideCharMD5(text, digest); }),
                        U8(digest));
       }},
      {"text", "MD5 of lower-case text",
       [](Memory& memory) {
         WChar digest[33] = {};
         const Wide text(LongText(5000));
         return Result_(
             memory.Try([&] { return CEncodingTool::GetWideCharLowerMD5(text, digest); }),
             U8(digest));
       }},
      {"text", "ParseDate",
       [](Memory& memory) {
         const std::u16string date = u"Sun, 06 Nov 1994 08:49:37 GMT" + std::u16string(300, u' ');
         std::optional<sys_seconds> time;
         return Result_(memory.Try([&] {
           time = ParseDate(date);
           return true;
         }),
                        time ? std::to_string(time->time_since_epoch().count()) : "none");
       }},
      {"text", "ParseDate of UTF-8",
       [](Memory& memory) {
         std::optional<sys_seconds> time;
         return Result_(memory.Try([&] {
           time = ParseDate("2008-03-01T10:20:30+05:30");
           return true;
         }),
                        time ? std::to_string(time->time_since_epoch().count()) : "none");
       }},
      {"text", "CKQTime",
       [](Memory& memory) -> Left {
         LONG a = 0, b = 0;
         char text[26] = {};
         const SystemString dc(SysAllocString(Wide("2008-03-01T10:20:30Z")));
         if (!memory.Try([&] {
               const CKQTime times;
               return times.GetTime("Sun, 06 Nov 1994 08:49:37 GMT", &a) &&
                      times.GetDCDate(a, text) && times.GetEpochTimeFromDCDateBSTR(&b, dc.get());
             }))
           return {};
         return std::to_string(a) + text + std::to_string(b);
       }},
      {"text", "ToIsoDate and ToDisplayDate",
       [](Memory& memory) {
         std::string text;
         const sys_seconds time(std::chrono::seconds(1'000'000'000));
         return Result_(memory.Try([&] {
           text = *ToIsoDate(time);
           text += *ToDisplayDate(time);
           return true;
         }),
                        text);
       }},
      {"text", "GetShowDate", ShowDate<DisplayDate::GetShowDate>},
      {"text", "GetShowDate2", ShowDate<DisplayDate::GetShowDate2>},
      {"text", "GetShowDateShort", ShowDate<DisplayDate::GetShowDateShort>},
      {"text", "GetPubDate",
       [](Memory& memory) {
         WChar text[64] = {};
         return Result_(memory.Try([&] { return CBaseTool::GetPubDate(1'000'000'000, text, 64); }),
                        U8(text));
       }},
      {"text", "GetUUID and AssignUUID",
       [](Memory& memory) {
         WChar text[64] = {};
         Item<CUrlNode> page(CUrlNode::New());
         return Result_(memory.Try([&] {
           return CBaseTool::GetUUID(text, 64) && CBaseTool::AssignUUID(page.get());
         }),
                        std::to_string(WideLength(text)));
       }},
      {"text", "Trace",
       [](Memory& memory) {
         std::string lines;
         traced = &lines;
         SetTraceHook([](const char* line) { *traced = line; });
         const Wide text(LongText());
         const bool done = memory.Try([&] {
           Trace("%s %d", text.get(), 7);
           return true;
         });
         SetTraceHook(nullptr);
         // A line that is cut or missing is all that a trace without memory may be.
         return Result_(done && !memory.wasRefused(), lines);
       }},
      {"files", "CReadFile::ReadToBuffer",
       [](Memory& memory) {
         const Wide path(test::TestPath("note.html").u16string());
         FileBytes bytes;
         int count = 0;
         const bool done = memory.Try([&] {
           CReadFile file;
           return file.OpenFile(path) && file.ReadToBuffer(Out(bytes), &count);
         });
         return Result_(
             done, std::string(bytes.get() ? bytes.get() : "", static_cast<std::size_t>(count)));
       }},
      {"files", "CReadFile::ReadAllToBuffer",
       [](Memory& memory) {
         const Wide path(test::TestPath("note.html").u16string());
         SystemString text;
         const bool done = memory.Try([&] {
           CReadFile file;
           return file.OpenFile(path) && file.ReadAllToBuffer(Out(text)) > 0;
         });
         return Result_(done, U8(text.get()));
       }},
      {"files", "CWriteFile",
       [](Memory& memory) {
         const TempFolder folder;
         const Wide path((folder / "a").u16string()), text(LongText(5000));
         const bool done = memory.Try([&] {
           CWriteFile file;
           return file.OpenFile(path) && file.WriteData(text) && file.WriteStreamData("abc", 3) &&
                  file.CloseFile();
         });
         return Result_(done, ReadBytes(folder / "a"));
       }},
      {"files", "FilePath",
       [](Memory& memory) {
         const std::u16string text = LongText(250);
         std::string name;
         return Result_(memory.Try([&] {
           name = FilePath(text).name();
           return true;
         }),
                        name);
       }},
      {"files", "PathFromName and NameFromPath",
       [](Memory& memory) {
         SystemString path;
         char name[300] = {};
         return Result_(memory.Try([&] {
           path.reset(PathFromName("a/b"));
           return path && NameFromPath(path.get(), name, sizeof name);
         }),
                        std::string(name));
       }},
      {"files", "CWriteNoteHtml",
       [](Memory& memory) {
         const TempFolder folder;
         WriteBytes(folder / "a.html", "old");
         const Wide path((folder / "a.html").u16string());
         const Tree page = NewTree<CUrlNode>(LongText(), "http://a.example/");
         SetDescription(*page->item, LongText(5000));
         const bool done =
             memory.Try([&] { return CWriteNoteHtml().WriteToFile(page->item, path); });
         Memory::Expect(done || ReadBytes(folder / "a.html") == "old",
                        "fails and has changed the note");
         return Result_(done, ReadBytes(folder / "a.html"));
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

// Import, comparing, merging.

inline const char kBookmarks[] =
    "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<TITLE>Bookmarks</TITLE>\n<H1>Bookmarks</H1>\n<DL><p>\n"
    "<DT><H3 ADD_DATE=\"1200000000\">News & more</H3>\n<DL><p>\n"
    "<DT><A HREF=\"http://a.example/?a=1&b=2\" ADD_DATE=\"1200000000\" TAGS=\"x,y\">A &eacute; "
    "page</A>\n"
    "<DD>A description\n<DT><A HREF=\"javascript:alert(1)\">Runs</A>\n</DL><p>\n</DL><p>\n";
inline const char kBrokenList[] =
    "<?xml version='1.0'?>\n<opml version=1.1><head><title>A & B</title></head><body>"
    "<outline text='a' xmlUrl='http://a.example/feed' type='rss'/><outline text='b &nbsp; c'>"
    "<outline text='d' url=' http://d.example/ '></outline></body>";
inline const char kFeed[] =
    "<?xml version='1.0'?><rss version='2.0'><channel><title>A &copy; "
    "feed</title><link>http://a.example/</link>"
    "<item><title>One</title><link>http://a.example/1</link><pubDate>Sun, 06 Nov 94 08:49:37 "
    "GMT</pubDate>"
    "<description>a <b>bold</b> text</description></item></channel></rss>";

inline std::string Show(const Imported& imported) {
  std::string shown = Listed(imported.repairs) + std::to_string(imported.moreRepairs);
  if (imported.tree) shown += Dump(imported.tree.get());
  if (imported.collection) shown += Dump(imported.collection->GetLocRNodeRoot());
  return shown;
}

template <const char* kDocument>
Left ImportBytes(Memory& memory) {
  return Get<Imported>(
      memory, [] { return Import(Bytes(std::string_view(kDocument))); },
      [](const Imported& imported) { return Show(imported); });
}

inline Left MergeWith(Memory& memory, unsigned seed) {
  const WholeTree base(seed), ours(Copy(base.tree)), theirs(Copy(base.tree));
  test::RandomChanges mine(3), others(4);
  SetName(*Find(ours.tree, "b page"), "ours");
  SetName(*Find(theirs.tree, "b page"), "theirs");
  Add<CUrlNode>(theirs.tree, "new");
  Move(*Find(ours.tree, "ours"), Find<CFolderNode>(ours.tree, "A folder"));
  Merged merged;
  if (!memory.Try([&] {
        merged = Merge(base.tree, ours.tree, theirs.tree);
        return merged.tree != nullptr;
      }))
    return {};
  return Dump(merged.tree.get()) + Listed(merged.conflicts);
}

inline void AddMerging(std::vector<Row>& rows) {
  const Row more[] = {
      {"import", "Import a bookmark file", ImportBytes<kBookmarks>},
      {"import", "Import a broken list", ImportBytes<kBrokenList>},
      {"import", "Import a feed", ImportBytes<kFeed>},
      {"import", "Import from a file",
       [](Memory& memory) {
         const std::string path = test::TestPath("favorites.html");
         return Get<Imported>(
             memory, [&] { return Import(path); },
             [](const Imported& imported) { return Show(imported); });
       }},
      {"import", "SaveBookmarks",
       [](Memory& memory) {
         const WholeTree whole;
         const TempFolder folder;
         WriteBytes(folder / "a.html", "old");
         const std::string path = folder / "a.html";
         const Left left = Get<Saved>(
             memory, [&] { return SaveBookmarks(path, whole.tree); },
             [&](const Saved& saved) {
               return ReadBytes(folder / "a.html") + Listed(saved.losses);
             });
         Memory::Expect(left || ReadBytes(folder / "a.html") == "old",
                        "fails and has changed the file");
         return left;
       }},
      {"import", "BookmarksToBytes",
       [](Memory& memory) {
         const WholeTree whole;
         return Get<SavedBytes>(
             memory, [&] { return BookmarksToBytes(whole.tree); },
             [](const SavedBytes& saved) { return saved.bytes + Listed(saved.losses); });
       }},
      {"merge", "Diff of trees",
       [](Memory& memory) {
         const WholeTree a(3), b(4);
         std::vector<ItemChange> changes;
         const bool done = memory.Try([&] {
           changes = Diff(a.tree, b.tree);
           return true;
         });
         return Result_(done, Listed(changes));
       }},
      {"merge", "Diff of collections",
       [](Memory& memory) {
         const Collection a = LoadGolden<Collection>(), b = LoadGolden<Collection>();
         SetName(*b, "other");
         std::vector<ItemChange> changes;
         const bool done = memory.Try([&] {
           changes = Diff(a, b);
           return true;
         });
         return Result_(done, Listed(changes));
       }},
      {"merge", "Merge of trees with a base", [](Memory& memory) { return MergeWith(memory, 5); }},
      {"merge", "Merge of trees without a base",
       [](Memory& memory) {
         const WholeTree a(3), b(4);
         Merged merged;
         if (!memory.Try([&] {
               merged = Merge(a.tree, b.tree);
               return merged.tree != nullptr;
             }))
           return Left();
         return Left(Dump(merged.tree.get()) + Listed(merged.conflicts));
       }},
      {"merge", "Merge of collections",
       [](Memory& memory) {
         const Collection a = LoadGolden<Collection>(), b = LoadGolden<Collection>();
         MergedCollection merged;
         if (!memory.Try([&] {
               merged = Merge(a, b);
               return merged.collection != nullptr;
             }))
           return Left();
         return Left(Written(merged.collection) + Listed(merged.conflicts));
       }},
      {"merge", "FindBase",
       [](Memory& memory) {
         const WholeTree a(3), b(3);
         Tree generations[] = {Copy(a.tree)};
         bool found = false;
         return Result_(memory.Try([&] {
           found = FindBase(generations, a.tree, b.tree);
           return true;
         }),
                        found ? "found" : "not found");
       }},
      {"merge", "SaveMerged",
       [](Memory& memory) {
         const TempFolder folder;
         const std::string path = folder / "a.opml";
         const Tree base = LoadGolden<Tree>(), theirs = LoadGolden<Tree>();
         Tree ours = LoadGolden<Tree>();
         const Result<FileMark> mark = MarkOf(path);
         Add<CFolderNode>(theirs, "theirs");
         Add<CFolderNode>(ours, "ours");
         (void)Save(path, theirs);
         const std::string before = Dump(ours.get()), stored = ReadBytes(path);
         const Left left = Get<SavedMerge>(
             memory, [&] { return SaveMerged(path, base, ours, {.expected = *mark}); },
             [&](const SavedMerge& saved) {
               return ReadBytes(path) + Listed(saved.conflicts) + Listed(saved.losses);
             });
         Memory::Expect(left || Dump(ours.get()) == before, "fails and has changed the tree");
         Memory::Expect(left || ReadBytes(path) == stored, "fails and has changed the file");
         return left;
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

// Safe saves and the store.

inline std::string Shown(const Store& store) {
  return Dump(store.tree()) + std::to_string(store.sequence());
}

/// A store with a checkpoint and a log, and what it holds.
struct Stored {
  Stored() {
    Result<Store> store = Open();
    test::RandomChanges random(5);
    for (int i = 0; i < 12; ++i) random.Change(store->tree());
    (void)store->Checkpoint();
    for (int i = 0; i < 12; ++i) random.Change(store->tree());
    Add<CFolderNode>(store->tree(), "A folder");
    Add<CUrlNode>(store->tree(), "a page", "http://a.example/");
    before = Shown(*store);
  }
  Result<Store> Open(bool readOnly = false) const {
    StoreOptions options;
    options.readOnly = readOnly;
    return Store::Open(path.u16string(), options);
  }
  /// What is on the disk now.
  std::string Again() const {
    const Result<Store> store = Open();
    Memory::Expect(static_cast<bool>(store), "cannot be opened any more");
    return Shown(*store);
  }
  const TempFolder folder;
  const fs::path path = folder / "store";
  const test::FastDisk fast;
  std::string before;
};

/// A change in the tree of a store. It is made, or it throws; afterwards a flush that succeeds has
/// stored what the tree is then.
inline Left ChangeStore(Memory& memory, void (*make)(Store&)) {
  const Stored stored;
  std::string now;
  bool done;
  {
    Result<Store> store = stored.Open();
    Memory::Expect(Shown(*store) == stored.before, "opens with another tree");
    done = memory.Try([&] {
      make(*store);
      return true;
    });
    now = Dump(store->tree());
    Memory::Expect(done || memory.wasRefused(), "fails");
    const std::optional<Error> flushed = store->Flush();
    Memory::Expect(!flushed, "cannot be flushed with memory");
  }
  const Result<Store> again = stored.Open();
  Memory::Expect(static_cast<bool>(again), "cannot be opened any more");
  Memory::Expect(Dump(again->tree()) == now, "has stored another tree than it had");
  return Result_(done, now);
}

inline RNode* PageIn(Store& store) {
  const CBaseNode* const page = Find(store.tree(), "a page");
  return page ? page->GetRNode() : nullptr;
}

/// On failure the tree is that before or that after the step.
inline Left UndoOrRedo(Memory& memory, bool redo) {
  const Stored stored;
  Result<Store> store = stored.Open();
  const std::string first = Dump(store->tree());
  Remove(PageIn(*store));
  const std::string second = Dump(store->tree());
  if (redo) (void)store->Undo();
  const Left left = Get<bool>(
      memory, [&] { return redo ? store->Redo() : store->Undo(); },
      [&](bool done) { return (done ? "done" : "none") + Dump(store->tree()); });
  const std::string now = Dump(store->tree());
  Memory::Expect(left || now == first || now == second, "fails and leaves another tree");
  const bool flushed = !store->Flush();
  Memory::Expect(flushed, "cannot be flushed with memory");
  return left;
}

inline std::optional<Error> WriteNew(const fs::path& scratch) {
  std::ofstream file(scratch);
  file << "new" << std::flush;
  if (file) return {};
  throw std::bad_alloc();
}

inline void AddStorage(std::vector<Row>& rows) {
  const Row more[] = {
      {"storage", "SafeSave",
       [](Memory& memory) -> Left {
         const TempFolder folder;
         const test::FastDisk fast;
         WriteBytes(folder / "a", "old");
         const Wide path((folder / "a").u16string());
         const FilePiece piece{"the new one", 11};
         FileMark saved;
         DocumentError error;
         if (memory.Try([&] { return SafeSave(path, &piece, 1, nullptr, &saved, &error); }))
           return ReadBytes(folder / "a");
         memory.Blames(error);
         return Kept("old", ReadBytes(folder / "a"));
       }},
      {"storage", "SafeCopy",
       [](Memory& memory) -> Left {
         const TempFolder folder;
         const test::FastDisk fast;
         WriteBytes(folder / "a", "old");
         const Wide path((folder / "a").u16string()), from(test::TestPath("note.html").u16string());
         DocumentError error;
         if (memory.Try([&] { return SafeCopy(from, path, nullptr, nullptr, &error); }))
           return ReadBytes(folder / "a");
         memory.Blames(error);
         return Kept("old", ReadBytes(folder / "a"));
       }},
      {"storage", "CanSaveTo",
       [](Memory& memory) -> Left {
         const TempFolder folder;
         const Wide path((folder / "a").u16string());
         DocumentError error;
         if (memory.Try([&] { return CanSaveTo(path, &error); })) return "can";
         memory.Blames(error);
         return {};
       }},
      {"storage", "MarkOf",
       [](Memory& memory) {
         const std::string path = test::TestPath("note.html");
         return Get<FileMark>(
             memory, [&] { return MarkOf(path); },
             [](const FileMark& mark) { return std::to_string(mark.size); });
       }},
      {"storage", "ReplaceFile",
       [](Memory& memory) {
         const TempFolder folder;
         const test::FastDisk fast;
         WriteBytes(folder / "a", "old");
         const std::string path = folder / "a";
         const Left left = Do(
             memory, [&] { return ReplaceFile(path, WriteNew); }, [&] { return ReadBytes(path); });
         Memory::Expect(left || ReadBytes(path) == "old", "fails and has changed the file");
         return left;
       }},
      {"storage", "open a new store",
       [](Memory& memory) {
         const TempFolder folder;
         const test::FastDisk fast;
         const std::u16string path = (folder / "store").u16string();
         const Left left = Get<Store>(
             memory, [&] { return Store::Open(path); },
             [](const Store& store) { return std::to_string(store.sequence()); });
         Memory::Expect(static_cast<bool>(Store::Open(path)), "cannot be opened any more");
         return left;
       }},
      {"storage", "open a store with a log",
       [](Memory& memory) {
         const Stored stored;
         const Left left = Get<Store>(
             memory, [&] { return stored.Open(); },
             [](const Store& store) {
               return Shown(store) + std::to_string(store.notes().size());
             });
         Memory::Expect(stored.Again() == stored.before, "another tree is stored afterwards");
         return left;
       }},
      {"storage", "open a store for reading",
       [](Memory& memory) {
         const Stored stored;
         return Get<Store>(
             memory, [&] { return stored.Open(true); },
             [](const Store& store) {
               return std::to_string(store.sequence()) + std::to_string(store.notes().size());
             });
       }},
      {"storage", "Add to a store",
       [](Memory& memory) {
         return ChangeStore(
             memory, [](Store& store) { Add<CUrlNode>(store.tree(), "x", "http://x.example/"); });
       }},
      {"storage", "Move in a store",
       [](Memory& memory) {
         return ChangeStore(memory, [](Store& store) {
           Move(PageIn(store), Find<CFolderNode>(store.tree(), "A folder"));
         });
       }},
      {"storage", "Remove from a store",
       [](Memory& memory) {
         return ChangeStore(memory, [](Store& store) { Remove(PageIn(store)); });
       }},
      {"storage", "Sort in a store",
       [](Memory& memory) {
         return ChangeStore(memory, [](Store& store) { Sort(store.tree()); });
       }},
      {"storage", "SetName in a store",
       [](Memory& memory) {
         return ChangeStore(memory, [](Store& store) { SetName(*PageIn(store)->item, "y"); });
       }},
      {"storage", "Update in a store",
       [](Memory& memory) {
         return ChangeStore(memory, [](Store& store) {
           Update(*As<CUrlNode>(PageIn(store)),
                  [](CUrlNode& page) { page.SetVersion(7), page.SetOrder(3); });
         });
       }},
      {"storage", "SetTree",
       [](Memory& memory) {
         const Stored stored;
         Result<Store> store = stored.Open();
         Tree tree = NewTree("fresh");
         return Do(
             memory, [&] { return store->SetTree(std::move(tree)); },
             [&] { return Dump(store->tree()); });
       }},
      {"storage", "Undo", [](Memory& memory) { return UndoOrRedo(memory, false); }},
      {"storage", "Redo", [](Memory& memory) { return UndoOrRedo(memory, true); }},
      {"storage", "Flush",
       [](Memory& memory) {
         const Stored stored;
         Result<Store> store = stored.Open();
         SetName(*PageIn(*store)->item, "y");
         const Left left = Do(
             memory, [&] { return store->Flush(); }, [] { return std::string("flushed"); });
         Memory::Expect(!store->Flush(), "cannot be flushed with memory");
         return left;
       }},
      {"storage", "Checkpoint",
       [](Memory& memory) {
         const Stored stored;
         std::string now;
         Left left;
         {
           Result<Store> store = stored.Open();
           SetName(*PageIn(*store)->item, "y");
           now = Shown(*store);
           left = Do(
               memory, [&] { return store->Checkpoint(); }, [] { return std::string("made"); });
           Memory::Expect(!store->Flush(), "cannot be flushed with memory");
         }
         Memory::Expect(stored.Again() == now, "another tree is stored afterwards");
         return left;
       }},
      {"storage", "Changes",
       [](Memory& memory) {
         const Stored stored;
         Result<Store> store = stored.Open();
         std::string changes;
         return Do(
             memory,
             [&] {
               return store->Changes(0, [&](std::uint64_t number, CVSMNotifyMsg& message) {
                 changes += std::to_string(number) + U8(message.GetName());
               });
             },
             [&] { return changes; });
       }},
      {"storage", "Checkpoints",
       [](Memory& memory) {
         const Stored stored;
         const std::u16string path = stored.path.u16string();
         return Get<std::vector<StoredCheckpoint>>(
             memory, [&] { return Store::Checkpoints(path); },
             [](const std::vector<StoredCheckpoint>& found) {
               std::string shown;
               for (const StoredCheckpoint& one : found)
                 shown += std::to_string(one.number) + (one.loads ? "+" : "-") + one.problem;
               return shown;
             });
       }},
      {"storage", "NumberOf and LinkOf",
       [](Memory& memory) {
         const Stored stored;
         Result<Store> store = stored.Open();
         std::uint64_t number = 0;
         return Result_(memory.Try([&] {
           number = store->NumberOf(PageIn(*store));
           return store->LinkOf(number) == PageIn(*store);
         }),
                        std::to_string(number));
       }},
      {"storage", "Listen",
       [](Memory& memory) {
         const Stored stored;
         Result<Store> store = stored.Open();
         int heard = 0;
         const bool done = memory.Try([&] {
           store->Listen([&](std::uint64_t, CVSMNotifyMsg&) { ++heard; });
           return true;
         });
         SetName(*PageIn(*store)->item, "y");
         return Result_(done, std::to_string(heard));
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

// Favorites, the registry, jobs, the network.

/// A Favorites folder, and a registry with the order of its menu.
struct Favorites {
  Favorites() {
    fs::create_directory(folder / "sub");
    for (const char* name : {"a.url", "b.url", "sub/c.url"})
      WriteBytes(folder / name, "[InternetShortcut]\r\nURL=http://a.example/\r\n");
    order = test::Order(
        {{"b.url", 0}, {"SUB", 1, test::kFolder, u"sub"}, {"A~1.URL", 2, test::kFile, u"a.url"}});
    std::string exported =
        "\xEF\xBB\xBFWindows Registry Editor Version "
        "5.00\r\n\r\n[HKEY_CURRENT_USER\\Menu]\r\n\"Order\"=hex:";
    for (const char byte : order) {
      char digits[8];
      std::snprintf(digits, sizeof digits, "%02x,", static_cast<unsigned char>(byte));
      exported += digits;
    }
    WriteBytes(registry / "user.reg", exported + "\r\n");
    SetUserRegistry(Wide((registry / "user.reg").u16string()));
  }
  ~Favorites() { SetUserRegistry(nullptr); }
  std::string order;
  const TempFolder folder, registry;
  const Wide path{(folder / "").parent_path().u16string()};
  const Wide key{"Menu"};
};

/// Without the folder, which is another one each time.
inline std::string Shown(const FavoriteList& list) {
  std::string shown;
  for (CFavorite* item = list.get(); item; item = item->next) {
    const std::string name = U8(item->name);
    shown += name.substr(name.rfind('\\') + 1) + U8(item->url.get()) + ";";
  }
  return shown;
}

inline Left SendForm(Memory& memory, bool isFile) {
  static FormServer server;  // one for the process of the row
  const std::string path = test::TestPath("note.html");
  std::optional<Result<Reply>> reply;
  if (!memory.Try([&] {
        Upload upload(server.host(), "/receive");
        upload.Field("name", "value");
        reply.emplace(isFile ? upload.SendFile(path) : upload.SendText("a.xml", LongText()));
        return true;
      }))
    return {};
  if (*reply) return std::to_string((*reply)->status) + (*reply)->text;
  const Error& error = reply->error();
  // What libcurl says instead of its lack of memory: that it cannot look up the server, or, once a
  // reply may come, the same as of a reply with a line without end. A reply of which only a part
  // was kept is said to be incomplete.
  constexpr unsigned kNoMemory[] = {8, 14}, kNotResolved = 12007, kInvalidReply = 12152;
  Memory::Expect(error.systemError == kNoMemory[0] || error.systemError == kNoMemory[1] ||
                     error.systemError == kNotResolved || error.systemError == kInvalidReply ||
                     error.reason.ends_with("the reply is incomplete"),
                 ("says '" + ToString(error) + "'").c_str());
  return {};
}

struct NoEvent : CTimeEvent {
  void DoEvent() override {}
};

inline void AddServices(std::vector<Row>& rows) {
  const Row more[] = {
      {"favorites", "LoadFavorites",
       [](Memory& memory) {
         const Favorites favorites;
         Tree tree;
         FavoritesReport report;
         const bool done = memory.Try([&] {
           tree.reset(ImportFavorites(favorites.key, favorites.path, &report));
           return tree != nullptr;
         });
         if (tree) tree->item->SetName(nullptr);
         std::string shown;
         for (CBaseNode& item : Items(tree)) shown += U8(item.GetName()) + ";";
         return Result_(
             done, shown + std::to_string(report.items) + std::to_string(report.foldersInOrder));
       }},
      {"favorites", "ShortcutAddress",
       [](Memory& memory) {
         const Favorites favorites;
         const std::string path = favorites.folder / "a.url";
         std::string address;
         return Result_(memory.Try([&] {
           const unsigned long lost = LostTexts();
           address = ShortcutAddress(path);
           return LostTexts() == lost;
         }),
                        address);
       }},
      {"favorites", "ExtractFavorites",
       [](Memory& memory) {
         const Favorites favorites;
         FavoriteList list;
         COrderHead head;
         CFavorites extract;
         return Result_(memory.Try([&] {
           return extract.ExtractFavorites(favorites.key, favorites.path, Out(list), &head, 1);
         }),
                        Shown(list));
       }},
      {"favorites", "ExtractFavoritesFromFileFolders",
       [](Memory& memory) {
         const Favorites favorites;
         FavoriteList list;
         CFavorites extract;
         const bool done = memory.Try([&] {
           return extract.ExtractFavoritesFromFileFolders(favorites.path, Out(list), 0, 0);
         });
         std::size_t count = 0;
         for (CFavorite* item = list.get(); item; item = item->next) ++count;
         return Result_(done, std::to_string(count));
       }},
      {"favorites", "ExtractFavoritesFromOrderBuffer",
       [](Memory& memory) {
         const Favorites favorites;
         FavoriteList list;
         COrderHead head;
         CFavorites extract;
         return Result_(memory.Try([&] {
           return extract.ExtractFavoritesFromOrderBuffer(
               nullptr, nullptr, favorites.path, Out(list), &head, 0,
               reinterpret_cast<const unsigned char*>(favorites.order.data()),
               static_cast<ULONG>(favorites.order.size()));
         }),
                        Shown(list));
       }},
      {"favorites", "CFavorite and its record",
       [](Memory& memory) {
         FavoriteList item;
         return Result_(memory.Try([&] {
           item.reset(CFavorite::New());
           return item && item->CreateOrderRecord();
         }),
                        "made");
       }},
      {"favorites", "the registry",
       [](Memory& memory) -> Left {
         const Favorites favorites;
         char bytes[4096];
         ULONG size = sizeof bytes;
         const Wide name("Order");
         if (!memory.Try([&] {
               const RegistryKey key(OpenUserKey(favorites.key));
               return key && ReadKeyValue(key.get(), name, bytes, &size);
             }))
           return {};
         return std::string(bytes, size);
       }},
      {"sched", "CTimeEventQueue",
       [](Memory& memory) -> Left {
         NoEvent events[3];
         for (int i = 0; i < 3; ++i) events[i].SetTime(1000 - i, 0);
         CTimeEventQueue queue, other;
         queue.InsertEvent(&events[0]);
         CTimeEvent* replaced = nullptr;
         bool headChanged = false;
         const bool done = memory.Try([&] {
           return queue.InsertAndReplaceEvent(&events[1], &replaced, &headChanged) &&
                  queue.InsertOrReplaceEvent(&events[2], true, &replaced, &headChanged) &&
                  other.InsertEvent(&events[0]);
         });
         std::string shown = std::to_string(done && other.GetPeepHeadEvent() == &events[0]);
         for (; CTimeEvent* head = queue.GetPeepHeadEvent(); queue.RemoveHead())
           shown += std::to_string(static_cast<NoEvent*>(head) - events);
         return Result_(done && shown[0] == '1', shown);
       }},
      {"sched", "CScheduleThread",
       [](Memory& memory) {
         struct Thread : CScheduleThread {
           ~Thread() override {
             StopThread();
             StopAndWait();
           }
         };
         NoEvent event;
         event.SetDelayTime(1000, 0);
         bool runs = false;
         return Result_(memory.Try([&] {
           Thread thread;
           CTimeEvent* replaced;
           runs = thread.CreateThread(0, 0, nullptr) != 0;
           return runs && thread.InsertAndReplaceEvent(&event, &replaced) &&
                  thread.GetHeadEvent() == &event;
         }),
                        "runs");
       }},
      {"sched", "Scheduler",
       [](Memory& memory) {
         return Result_(memory.Try([&] {
           const Scheduler scheduler;
           return scheduler.IsRunning();
         }),
                        "runs");
       }},
      {"sched", "After and Every",
       [](Memory& memory) {
         using namespace std::chrono_literals;
         Scheduler scheduler;
         const Job first = scheduler.After(1h, [] {});
         Job second, third;
         return Result_(memory.Try([&] {
           second = scheduler.After(2h, [] {});
           third = scheduler.Every(1h, [] {});
           return second.IsPending() && third.IsPending();
         }),
                        "pending");
       }},
      {"net", "AddResponse and DetachResponse",
       [](Memory& memory) {
         CNetBase net;
         const Wide text(LongText(5000));
         const std::string utf8 = ToUtf8(LongText(5000));
         SystemString response;
         const bool done = memory.Try([&] {
           const unsigned long lost = LostTexts();
           net.AddResponse(text);
           net.AddResponseUnicodingIt(utf8.data(), static_cast<int>(utf8.size()));
           response.reset(net.DetachResponse());
           return response && LostTexts() == lost;
         });
         return Result_(done, U8(response.get()));
       }},
      {"net", "the setters and the login of CNetBase",
       [](Memory& memory) {
         CNetBase net;
         const Wide text("http.example");
         const bool done = memory.Try([&] {
           const unsigned long lost = LostTexts();
           net.SetHost(text), net.SetPostAcceptor(text), net.SetUserNamePswMD5(text, text),
               net.AddParameter(text, text);
           return net.GetFormUserNamePswString() && LostTexts() == lost;
         });
         return Result_(done, std::string(net.GetParaString()));
       }},
      {"net", "ShowRequest",
       [](Memory& memory) -> Left {
         const Wide file(test::TestPath("note.html").u16string()), host("a.example"), path("/p");
         std::string request;
         request.reserve(1 << 20);
         LONG code = 0;
         const bool done = memory.Try([&] {
           CNetUploadFile upload;
           const unsigned long lost = LostTexts();
           upload.SetHost(host), upload.SetPostAcceptor(path), upload.SetLocalFile(file),
               upload.SetBoundary(host);
           upload.AddParameter(host, path);
           const auto take = [](void* to, const void* bytes, std::size_t size) {
             static_cast<std::string*>(to)->append(static_cast<const char*>(bytes), size);
             return true;
           };
           const bool shown = upload.ShowRequest(take, &request);
           code = upload.GetErrorCode();
           return shown && LostTexts() == lost;
         });
         return Result_(done, request);
       }},
      {"net", "get_head, get_tail, FormNameValue",
       [](Memory& memory) {
         CNetUploadFile upload;
         const Wide text("value");
         upload.SetLocalFile(text), upload.SetBoundary(text);
         SystemString head, tail, field;
         const bool done = memory.Try([&] {
           head.reset(upload.get_head()), tail.reset(upload.get_tail()),
               field.reset(upload.FormNameValue(text, text));
           return head && tail && field;
         });
         return Result_(done, U8(head.get()) + U8(tail.get()) + U8(field.get()));
       }},
      {"net", "SendText to a server", [](Memory& memory) { return SendForm(memory, false); }},
      {"net", "SendFile to a server", [](Memory& memory) { return SendForm(memory, true); }},
      {"platform", "SecurityZone",
       [](Memory& memory) {
         const Wide url("http://a.example/"), local("file:///a"), plain("http://intranet/");
         std::string zones;
         zones.reserve(100);
         return Result_(memory.Try([&] {
           for (const Wide* each : {&url, &local, &plain})
             zones += std::to_string(SecurityZone(*each));
           return true;
         }),
                        zones);
       }},
      {"platform", "KeyState",
       [](Memory& memory) {
         return Result_(memory.Try([&] { return CBaseTool::GetModifyKeyState() >= 0; }), "asked");
       }},
  };
  rows.insert(rows.end(), std::begin(more), std::end(more));
}

}  // namespace vosmere::report::rows

namespace vosmere::report {

inline std::vector<Row> Rows() {
  std::vector<Row> rows;
  rows::AddDocuments(rows);
  rows::AddTrees(rows);
  rows::AddLists(rows);
  rows::AddTexts(rows);
  rows::AddMerging(rows);
  rows::AddStorage(rows);
  rows::AddServices(rows);
  return rows;
}

}  // namespace vosmere::report
