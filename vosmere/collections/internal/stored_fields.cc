#include "vosmere/collections/internal/stored_fields.h"

#include <new>
#include <utility>

#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_node.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

constexpr WChar kEmpty[1] = {0};

template <class Visitor>
void VisitStat(CNodeStat& stat, Visitor& visit) {
  LONG added, modified, visited;
  stat.GetStatTime(&added, &modified, &visited);
  const auto set = [&](ULONG which) {
    return [&stat, which](LONG time) {
      LONG times[3];
      stat.GetStatTime(&times[0], &times[1], &times[2]);
      times[which] = time;
      stat.RestoreTimes(times[0], times[1], times[2], stat.GetSetTimes());
    };
  };
  // Always written: a new item has the time at which it was made.
  visit.Always(3, added, set(0));
  visit.Always(4, modified, set(1));
  visit.Always(5, visited, set(2));
  visit.Number(6, static_cast<LONG>(stat.GetSetTimes()), 0, [&](LONG times) {
    LONG at[3];
    stat.GetStatTime(&at[0], &at[1], &at[2]);
    stat.RestoreTimes(at[0], at[1], at[2], static_cast<ULONG>(times));
  });
  visit.Number(7, stat.IsUnread(), 0, [&](LONG unread) { stat.MarkAsUnread(unread); });
  visit.Number(8, stat.GetFlag(), 0, [&](LONG flag) { stat.SetFlag(flag); });
}

template <class Visitor>
void VisitBase(CBaseNode& item, Visitor& visit) {
  visit.Text(1, item.GetName(), kEmpty, [&](const WChar* text) { item.SetName(text); });
  visit.Text(2, item.GetDescription(), kEmpty,
             [&](const WChar* text) { item.SetDescription(text); });
  if (visit.Done()) return;
  VisitStat(*item.GetNodeStat(), visit);
  visit.Text(9, item.GetUUID(), kEmpty, [&](const WChar* text) { item.SetUUID(text); });
  visit.Number(10, item.GetVersion(), 1, [&](LONG version) { item.SetVersion(version); });
  visit.Number(11, item.GetOrder(), 1, [&](LONG order) { item.SetOrder(order); });
  int checkedIn = 0;
  item.HasCheckedIn(&checkedIn);
  visit.Number(12, checkedIn, CBaseNode::kCheckedIn, [&](LONG state) { item.SetCheckedIn(state); });
  visit.Number(13, item.GetBaseBuild(), 0, [&](LONG build) { item.SetBaseBuild(build); });
  visit.Number(14, item.IsDeleted(), 0, [&](LONG deleted) { item.SetAsDeleted(deleted); });
  visit.Number(15, static_cast<LONG>(item.GetNodeData()), 0,
               [&](LONG data) { item.SetNodeData(static_cast<ULONG>(data)); });
}

void WriteTags(const CUrlProp* prop, ByteWriter& writer) {
  CUrlProp::TagList* const head = prop ? prop->GetTagsHead() : nullptr;
  std::uint64_t count = 0;
  for ([[maybe_unused]] auto* tag : chain::Cells(head)) ++count;
  writer.Number(count);
  for (auto* tag : chain::Cells(head)) writer.Text(tag->data);
}

/// `page` is null where they are read past.
void ReadTags(CUrlNode* page, ByteReader& reader) {
  CUrlProp::TagList* tags = nullptr;
  for (std::uint64_t left = reader.Number(); left > 0 && !reader.failed(); --left) {
    const WChar* const text = reader.Text();
    auto* const tag = page ? CUrlProp::CreateRBstrItem(text) : nullptr;
    if (tag) chain::Append(tags, tag);
    if (!page || tag) continue;
    CUrlProp::DeleteTagsList(tags);
    throw std::bad_alloc();
  }
  CUrlProp* const prop = page && !reader.failed() ? page->GetUrlProp() : nullptr;
  if (!prop) return CUrlProp::DeleteTagsList(tags);
  CUrlProp::DeleteTagsList(prop->DetachTagsHead());
  prop->SetTagsList(tags);
}

CUrlProp& PropOf(CUrlNode& page) {
  CUrlProp* const prop = page.GetUrlProp();
  if (!prop) throw std::bad_alloc();
  return *prop;
}

/// The block is made by what is in it, or by the fact alone that it is there.
template <class Visitor>
void VisitProp(CUrlNode& page, Visitor& visit) {
  const CUrlProp* const prop = std::as_const(page).GetUrlProp();
  visit.Number(30, prop != nullptr, 0, [&](LONG isThere) {
    if (isThere) PropOf(page);
  });
  visit.Number(31, prop ? prop->GetFileType() : FT_OTHER, FT_OTHER,
               [&](LONG type) { PropOf(page).SetFileType(static_cast<tagVSMITEMFILETYPE>(type)); });
  visit.Text(32, prop ? prop->GetFileExtension() : nullptr, nullptr,
             [&](const WChar* text) { PropOf(page).SetFileExtension(text); });
  visit.Custom(
      33, !prop || !prop->GetTagsHead(), [&](ByteWriter& writer) { WriteTags(prop, writer); },
      [&](ByteReader& reader, bool use) { ReadTags(use ? &page : nullptr, reader); });
  visit.Number(34, prop && prop->DoNeedSaveKeyWords(), 0,
               [&](LONG need) { PropOf(page).SetNeedSaveKeyWords(need); });
  visit.Reference(35, prop ? prop->GetRefColctRNode() : nullptr,
                  [&](RNode* link) { PropOf(page).SetRefColctRNode(link); });
}

template <class Visitor>
void VisitPage(CUrlNode& page, Visitor& visit) {
  visit.Always(20, page.GetUrl(), [&](const WChar* text) { page.SetUrl(text); });
  visit.Text(21, page.GetAuthor(), nullptr, [&](const WChar* text) { page.SetAuthor(text); });
  visit.Number(22, page.GetItemType(), IT_URL,
               [&](LONG type) { page.SetItemType(static_cast<tagVSMITEMTYPE>(type)); });
  visit.Text(23, page.GetRelationUrl(), nullptr,
             [&](const WChar* text) { page.SetRelationUrl(text); });
  VisitProp(page, visit);
}

template <class Visitor>
void VisitColct(CColctNode& colct, Visitor& visit) {
  CColctNetData& net = *colct.GetColctNetData();
  visit.Number(40, colct.GetColctType(), CT_DEFAULT,
               [&](LONG type) { colct.SetColctType(static_cast<tagCOLCTTYPE>(type)); });
  visit.Number(41, colct.HasNewData(), 0, [&](LONG isNew) { colct.SetHasNewData(isNew); });
  visit.Number(42, colct.GetLoadingState(), 0, [&](LONG state) { colct.SetLoadingState(state); });
  visit.Number(50, net.IsOrdered(), 0, [&](LONG ordered) { net.SetOrdered(ordered); });
  visit.Text(51, net.GetOwner(), nullptr, [&](const WChar* text) { net.SetOwner(text); });
  visit.Number(52, net.GetSharingDomain(), -1, [&](LONG domain) { net.SetSharingDomain(domain); });
  visit.Number(53, net.IsForeignColct(), 0, [&](LONG is) { net.SetBeForeignColct(is); });
  visit.Number(54, net.GetRole(), 0, [&](LONG role) { net.SetRole(role); });
  visit.Number(55, net.IsSynced(), 0, [&](LONG synced) { net.SetSynced(synced); });
  visit.Number(56, net.GetPollingInterval(), 20, [&](LONG to) { net.SetPollingInterval(to); });
  visit.Number(57, net.GetIssuedTimeEventID(), 0, [&](LONG id) { net.SetIssuedTimeEventID(id); });
  visit.Number(58, net.GetColctExpandState(), 0, [&](LONG is) { net.SetColctExpandState(is); });
}

/// Every field, in the order of the numbers.
template <class Visitor>
void Visit(RNode& link, Visitor& visit) {
  if (link.item) {
    VisitBase(*link.item, visit);
    if (visit.Done()) return;
    if (link.type != NT_FOLDER) VisitPage(static_cast<CUrlNode&>(*link.item), visit);
    if (link.type == NT_COLCT) VisitColct(static_cast<CColctNode&>(*link.item), visit);
  }
  visit.Number(60, static_cast<LONG>(link.extData), 0,
               [&](LONG data) { link.extData = static_cast<ULONG>(data); });
}

/// What the visitors that write share. `Begin` says whether a value is wanted.
template <class Derived>
class Writing {
 public:
  Writing(LinkLookup& lookup, std::string& bytes) : writer_(bytes), lookup_(lookup) {}

  template <class Set>
  void Text(unsigned number, const WChar* text, const WChar* usual, Set) {
    if (Begin(number, text == usual || (text && usual && SameText(text, usual))))
      writer_.Text(text);
  }
  template <class Set>
  void Number(unsigned number, LONG value, LONG usual, Set) {
    if (Begin(number, value == usual)) writer_.Signed(value);
  }
  template <class Set>
  void Always(unsigned number, LONG value, Set) {
    if (Begin(number, false)) writer_.Signed(value);
  }
  template <class Set>
  void Always(unsigned number, const WChar* text, Set) {
    if (Begin(number, false)) writer_.Text(text);
  }
  template <class Write, class Read>
  void Custom(unsigned number, bool isUsual, Write write, Read) {
    if (Begin(number, isUsual)) write(writer_);
  }
  template <class Set>
  void Reference(unsigned number, const RNode* link, Set) {
    const std::uint64_t target = link ? lookup_.NumberOf(link) : 0;
    if (Begin(number, target == 0)) writer_.Number(target);
  }

  static constexpr bool Done() { return false; }

 protected:
  ByteWriter writer_;

 private:
  bool Begin(unsigned number, bool isUsual) {
    return static_cast<Derived*>(this)->Wants(number, isUsual);
  }
  LinkLookup& lookup_;
};

class FieldWriter : public Writing<FieldWriter> {
 public:
  using Writing::Writing;
  bool Wants(unsigned number, bool isUsual) {
    if (!isUsual) writer_.Number(number);
    return !isUsual;
  }
  void End() { writer_.Number(0); }
};

class ValueTaker : public Writing<ValueTaker> {
 public:
  ValueTaker(LinkLookup& lookup, FieldValues& values)
      : Writing(lookup, values.bytes), values_(values) {}
  bool Wants(unsigned number, bool) {
    values_.fields.push_back({number, values_.bytes.size()});
    return true;
  }

 private:
  FieldValues& values_;
};

/// Which of the values in a list count.
enum class Taking { kOne, kFirstOfTwo, kSecondOfTwo };

class FieldReader {
 public:
  FieldReader(RNode& link, LinkLookup& lookup, ByteReader& reader, Taking taking)
      : link_(link), lookup_(lookup), reader_(reader), taking_(taking), next_(reader.Number()) {}

  template <class Set>
  void Text(unsigned number, const WChar*, const WChar*, Set set) {
    Always(number, nullptr, set);
  }
  template <class Set>
  void Number(unsigned number, LONG, LONG, Set set) {
    Always(number, LONG{0}, set);
  }
  template <class Set>
  void Always(unsigned number, LONG, Set set) {
    Take(number, [&](bool use) {
      const LONG value = reader_.Signed();
      if (use && !reader_.failed()) set(value);
    });
  }
  template <class Set>
  void Always(unsigned number, const WChar*, Set set) {
    Take(number, [&](bool use) {
      if (!use) return reader_.SkipText();
      const WChar* const text = reader_.Text();
      if (!reader_.failed()) set(text);
    });
  }
  template <class Write, class Read>
  void Custom(unsigned number, bool, Write, Read read) {
    Take(number, [&](bool use) { read(reader_, use); });
  }
  template <class Set>
  void Reference(unsigned number, const RNode*, Set set) {
    Take(number, [&](bool use) {
      const std::uint64_t target = reader_.Number();
      if (reader_.failed()) return;
      if (use && taking_ == Taking::kOne) return lookup_.ReferLater(&link_, target);
      if (use) set(target ? lookup_.LinkOf(target) : nullptr);
    });
  }
  /// Nothing more is in the list.
  bool Done() const { return next_ == 0; }
  bool End() const { return next_ == 0 && !reader_.failed(); }

 private:
  template <class Read>
  void Take(unsigned number, Read read) {
    if (next_ != number || reader_.failed()) return;
    read(taking_ != Taking::kSecondOfTwo);
    if (taking_ != Taking::kOne) read(taking_ == Taking::kSecondOfTwo);
    next_ = reader_.Number();
  }

  RNode& link_;
  LinkLookup& lookup_;
  ByteReader& reader_;
  Taking taking_;
  std::uint64_t next_;
};

bool Read(RNode& link, LinkLookup& lookup, ByteReader& reader, Taking taking) {
  FieldReader fields(link, lookup, reader, taking);
  Visit(link, fields);
  return fields.End();
}

CBaseNode* NewItem(std::uint64_t type) {
  switch (type) {
    case NT_FOLDER: return CFolderNode::New();
    case NT_URL: return CUrlNode::New();
    default: return CColctNode::New();
  }
}

}  // namespace

RNode* NewLink(std::uint64_t type, bool hasItem) {
  if (type > NT_COLCT) return nullptr;
  CBaseNode* const item = hasItem ? NewItem(type) : nullptr;
  RNode* const link =
      item || !hasItem ? RNode::New2(item, static_cast<tagNODETYPE>(type)) : nullptr;
  if (link) return link;
  CBaseNode::Delete(item);
  throw std::bad_alloc();
}

void DeleteLink(RNode* link) {
  CBaseNode::Delete(link->item);
  RNode::Delete(link);
}

void WriteFields(RNode& link, LinkLookup& lookup, std::string& bytes) {
  FieldWriter writer(lookup, bytes);
  Visit(link, writer);
  writer.End();
}

bool ReadFields(RNode& link, LinkLookup& lookup, ByteReader& reader) {
  return Read(link, lookup, reader, Taking::kOne);
}

void TakeFieldValues(RNode& link, LinkLookup& lookup, FieldValues* values) {
  values->fields.clear();
  values->bytes.clear();
  ValueTaker taker(lookup, *values);
  Visit(link, taker);
}

bool WriteChangedFields(const FieldValues& before, const FieldValues& after, std::string& bytes) {
  ByteWriter writer(bytes);
  bool any = false;
  for (std::size_t i = 0; i < before.fields.size(); ++i) {
    if (before.Bytes(i) == after.Bytes(i)) continue;
    any = true;
    writer.Number(before.fields[i].number);
    writer.Raw(before.Bytes(i));
    writer.Raw(after.Bytes(i));
  }
  writer.Number(0);
  return any;
}

bool ReadChangedFields(RNode& link, LinkLookup& lookup, ByteReader& reader, bool undone) {
  return Read(link, lookup, reader, undone ? Taking::kFirstOfTwo : Taking::kSecondOfTwo);
}

}  // namespace vosmere
