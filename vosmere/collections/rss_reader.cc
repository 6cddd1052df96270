// Reads a collection from an RSS document.
#include "vosmere/collections/rss_reader.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "vosmere/collections/colct_node.h"
#include "vosmere/collections/internal/rss_words.h"
#include "vosmere/text/date_reader.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/internal/new_link.h"
#include "vosmere/xml/internal/item_fields.h"
#include "vosmere/xml/reader_scopes.h"

namespace vosmere {
namespace {

using namespace xml;

/// The collection that is being read. Every link is put into the tree as soon as it is made, so
/// that nothing leaks when a load fails. Only at the end of the document is it known which folder
/// an item belongs to, and at which position: Place then moves the links.
class Bookmarks {
 public:
  Bookmarks() = default;
  Bookmarks(const Bookmarks&) = delete;
  Bookmarks& operator=(const Bookmarks&) = delete;
  ~Bookmarks() { DeleteWithLocalTree(colct_); }

  void Begin();
  void OpenFolder();
  void CloseFolder() { folder_ = folder_->parent; }
  void OpenItem();
  void CloseItem();
  /// Moves every link to its folder and position.
  void Place();
  CColctNode* Detach() { return std::exchange(colct_, nullptr); }

  // The objects that the elements refer to.
  CColctNode* Colct() { return colct_; }
  CColctNetData* NetData() { return colct_->GetColctNetData(); }
  CBaseNode* Folder() { return folder_->item; }
  CUrlNode* Item() { return item_; }
  CNodeStat* ItemStat() { return item_->GetNodeStat(); }
  Bookmarks* This() { return this; }
  bool HasAddress() const { return hasAddress_; }

  /// Sets the position of the folder or item that was opened last.
  void SetOrder(LONG order);
  /// Sets the identity of the folder that contains the current item.
  void SetFolderID(const WChar* id);
  /// Remembers where the item refers to its folder, for SayMisplaced.
  void RememberReference(Report& report) { placed_.back().reference = report.Remember(); }
  /// Registers the open folder under its identity; false when another folder has the same one.
  bool NameFolder();
  /// Reports the items that refer to folders which are not in the document.
  void SayMisplaced(Report& report) const;
  void SetLink(const WChar* url);
  /// Sets an address that is used if there is no link.
  void SetXmlUrl(const WChar* url);

  // What only documents of other programs hold.

  void SetSiteUrl(const WChar* url) { colct_->SetRelationUrl(WithoutBlanks(url)); }
  void SetForeignLink(const WChar* url);
  void SetPermanentUrl(const WChar* url) { SetXmlUrl(WithoutBlanks(url)); }
  /// Sets the author if there is no other.
  void SetCreator(const WChar* name);
  void SetPublished(const WChar* date);
  void AddCategory(const WChar* text);
  bool HadUnread() const { return hadUnread_; }

 private:
  using Identity = std::array<WChar, CBaseNode::kMaxUuidLength>;
  using Folders = std::map<Identity, RNode*>;

  struct Placed {
    RNode* link;
    RNode* parent;         // used unless `named` leads to a folder
    std::size_t position;  // in the document
    std::int64_t order = std::numeric_limits<LONG>::max() + std::int64_t{1};
    RNode* const* named = nullptr;
    std::size_t reference = 0;
  };

  static Identity IdentityOf(const WChar* text);
  /// The text itself, or a copy that is valid until the next call.
  const WChar* WithoutBlanks(const WChar* text);
  static constexpr int kMostCategories = 256;  // each is compared with all before it

  CColctNode* colct_ = nullptr;
  RNode* folder_ = nullptr;  // the innermost open one, or the root
  CUrlNode* item_ = nullptr;
  bool hasLink_ = false;
  bool hasAddress_ = false;
  bool hadUnread_ = false;
  std::optional<LONG> published_;  // of the current item
  int categories_ = 0;             // of the current item
  std::basic_string<WChar> trimmed_;
  std::vector<Placed> placed_;  // all but the root, in document order until Place sorts them
  Folders folders_;             // null for a folder that was only referred to so far
  Folders::value_type* lastNamed_ = nullptr;
};

Bookmarks::Identity Bookmarks::IdentityOf(const WChar* text) {
  Identity identity = {};
  const WideView view = WideView(text).First(identity.size());
  std::copy(view.begin(), view.end(), identity.begin());
  return identity;
}

void Bookmarks::Begin() {
  if (!(colct_ = CColctNode::New())) throw std::bad_alloc();
  folder_ = NewLink(CFolderNode::New(), NT_FOLDER, nullptr);
  colct_->SetLocRNodeRoot(folder_);
}

void Bookmarks::OpenFolder() {
  RNode* const parent = folder_;
  folder_ = NewLink(CFolderNode::New(), NT_FOLDER, parent);
  placed_.push_back({folder_, parent, placed_.size()});
}

void Bookmarks::OpenItem() {
  RNode* const root = colct_->GetLocRNodeRoot();
  RNode* const link = NewLink(CUrlNode::New(), NT_URL, root);
  placed_.push_back({link, root, placed_.size()});
  item_ = static_cast<CUrlNode*>(link->item);
  hasLink_ = hasAddress_ = false;
  published_.reset();
  categories_ = 0;
}

// Some properties follow from what the element does not contain: the writer writes no link for a
// note, web page or file with an empty address, and leaves out items that are checked in and
// deleted, so a deleted item is not checked in.
void Bookmarks::CloseItem() {
  constexpr WChar kNone[] = {0};
  if (!hasAddress_ && item_->GetItemType() != IT_URL) item_->SetUrl(kNone);
  if (item_->IsDeleted() && item_->GetBaseBuild() == 0) item_->SetCheckedIn(0);
  if (published_ && !(ItemStat()->GetSetTimes() & CNodeStat::kModified))
    ItemStat()->SetStatTime(0, *published_, 0, CNodeStat::kModified);
}

void Bookmarks::SetOrder(LONG order) {
  placed_.back().order = order;
  placed_.back().link->item->SetOrder(order);
}

// The items of a folder mostly follow each other, so the last folder is remembered to save the
// lookup.
void Bookmarks::SetFolderID(const WChar* id) {
  const Identity identity = IdentityOf(id);
  if (!lastNamed_ || lastNamed_->first != identity)
    lastNamed_ = &*folders_.try_emplace(identity).first;
  placed_.back().named = &lastNamed_->second;
}

bool Bookmarks::NameFolder() {
  if (!*folder_->item->GetUUID()) return true;
  RNode*& known = folders_[IdentityOf(folder_->item->GetUUID())];
  if (!known) known = folder_;
  return known == folder_;
}

void Bookmarks::SayMisplaced(Report& report) const {
  for (const Placed& placed : placed_)
    if (placed.named && !*placed.named)
      report.LoseAt(placed.reference, LossKind::kChanged,
                    "an item's folder is not in the document");
}

void Bookmarks::SetLink(const WChar* url) {
  hasLink_ = hasAddress_ = true;
  item_->SetUrl(url);
}

void Bookmarks::SetXmlUrl(const WChar* url) {
  if (!hasLink_) item_->SetUrl(url);
  hasAddress_ = true;
}

const WChar* Bookmarks::WithoutBlanks(const WChar* text) {
  WideView view(text);
  if (view.empty() || !(ascii::IsBlank(view[0]) || ascii::IsBlank(view[view.size - 1])))
    return text;
  while (!view.empty() && ascii::IsBlank(view[view.size - 1])) --view.size;
  while (!view.empty() && ascii::IsBlank(view[0])) view = view.From(1);
  trimmed_.assign(view.begin(), view.end());
  return trimmed_.c_str();
}

void Bookmarks::SetForeignLink(const WChar* url) {
  const WChar* const address = WithoutBlanks(url);
  if (*address) SetLink(address);
}

void Bookmarks::SetCreator(const WChar* name) {
  if (!item_->GetAuthor()) item_->SetAuthor(name);
}

// Seconds beyond 32 bits are no time of an item.
void Bookmarks::SetPublished(const WChar* text) {
  DateReading date;
  const bool isRead = ReadDate(text, &date) && date.seconds == LONG(date.seconds);
  if (isRead)
    published_ = LONG(date.seconds);
  else
    hadUnread_ = true;
}

void Bookmarks::AddCategory(const WChar* text) {
  const WChar* const tag = WithoutBlanks(text);
  CUrlProp* const prop = item_->GetUrlProp();
  if (!*tag || !prop || prop->HasTag(tag)) return;
  hadUnread_ |= categories_ == kMostCategories;
  if (categories_++ >= kMostCategories) return;
  CUrlProp::TagList* const cell = CUrlProp::CreateRBstrItem(tag);
  if (!cell) throw std::bad_alloc();
  CUrlProp::TagList* tags = prop->DetachTagsHead();
  chain::Append(tags, cell);
  prop->SetTagsList(tags);
}

void Bookmarks::Place() {
  std::sort(placed_.begin(), placed_.end(), [](const Placed& a, const Placed& b) {
    return std::tie(a.order, a.position) < std::tie(b.order, b.position);
  });
  colct_->GetLocRNodeRoot()->firstChild = nullptr;
  for (const Placed& placed : placed_) placed.link->firstChild = nullptr;
  for (const Placed& placed : placed_) {
    RNode* const named = placed.named ? *placed.named : nullptr;
    RNTool::InsertAsChild(named ? named : placed.parent, placed.link);
  }
}

// Attributes and texts for which a setter is not enough.

template <std::size_t N>
int IndexOf(const std::string_view (&words)[N], const WChar* text) {
  for (std::size_t i = 1; i < N; ++i)
    if (IsNamed(WideView(text), words[i])) return static_cast<int>(i);
  return 0;
}

CUrlProp& PropOf(CUrlNode& item) {
  CUrlProp* const prop = item.GetUrlProp();
  if (!prop) throw std::bad_alloc();
  return *prop;
}

template <auto& Words>
bool FitsWord(const WChar* text) {
  return IndexOf(Words, text) > 0 || IsNamed(WideView(text), Words[0]);
}

void ItemType(CUrlNode& item, const WChar* value) {
  item.SetItemType(static_cast<tagVSMITEMTYPE>(IndexOf(kItemTypeWords, value)));
}

void FileType(CUrlNode& item, const WChar* value) {
  const int type = IndexOf(kFileTypeWords, value);
  if (type != FT_OTHER) PropOf(item).SetFileType(static_cast<tagVSMITEMFILETYPE>(type));
}

void Tags(CUrlNode& item, const WChar* text) {
  const SystemText cutUp(text);
  PropOf(item).SetTagsList(CUrlProp::GenerateRBstrItemList(cutUp.get()));
}

void IdentityUnlessEmpty(CBaseNode& item, const WChar* value) {
  if (*value)
    item.SetUUID(value);
  else
    Trace("Empty UUID id\n");
}

constexpr Field<CBaseNode> kIdentityFields[] = {
    {"id", IdentityUnlessEmpty},
    {"version", Number<&CBaseNode::SetVersion>},
    {"deleted", WhenTrue<&CBaseNode::SetAsDeleted>},
};

// The writer leaves out a version of 0, so that is the default.
template <auto Target>
void Sync(Bookmarks& bookmarks, const Element& element) {
  (bookmarks.*Target)()->SetVersion(0);
  AttributesTo<Target, kIdentityFields>(bookmarks, element);
}

// The writer writes the versions of folders only in a synchronised collection; only there does a
// missing one mean 0.
void FolderSync(Bookmarks& bookmarks, const Element& element) {
  if (bookmarks.NetData()->IsSynced()) bookmarks.Folder()->SetVersion(0);
  AttributesTo<&Bookmarks::Folder, kIdentityFields>(bookmarks, element);
  if (!bookmarks.NameFolder() && element.report())
    element.report()->Lose(LossKind::kChanged,
                           "several folders have the same identity: items may move between them");
}

constexpr Field<CColctNetData> kActionFields[] = {
    {"sync", WhenTrue<&CColctNetData::SetSynced>},
    {"ordered", WhenTrue<&CColctNetData::SetOrdered>},
};

constexpr Field<CUrlNode> kRelationFields[] = {
    {"type", ItemType, FitsWord<kItemTypeWords>},
    {"subtype", FileType, FitsWord<kFileTypeWords>},
    {"href", Text<&CUrlNode::SetRelationUrl>},
};

constexpr Field<Bookmarks> kFolderFields[] = {
    {"order", Number<&Bookmarks::SetOrder>},
};

constexpr Field<Bookmarks> kFolderRefFields[] = {
    {"folderid", Text<&Bookmarks::SetFolderID>},
    {"order", Number<&Bookmarks::SetOrder>},
};

void FolderReference(Bookmarks& bookmarks, const Element& element) {
  AttributesTo<&Bookmarks::This, kFolderRefFields>(bookmarks, element);
  if (element.report()) bookmarks.RememberReference(*element.report());
}

// Reports what the document lacks, so that a copy gets a made-up value.

template <auto Target>
void SayNoIdentity(Bookmarks& bookmarks, Report& report) {
  if (!*Invoke(Target, bookmarks)->GetUUID())
    report.Lose(LossKind::kUnsaid, "no identity in the document: a copy gets a new one");
}

void SayUnsaid(Bookmarks& bookmarks, Report& report) {
  SayNoIdentity<&Bookmarks::Item>(bookmarks, report);
  SayTimes(report, *bookmarks.ItemStat());
  if (report.Says("pubDate") && !report.Says("vsm:stat", "modified"))
    report.Lose(LossKind::kNotKept, "the publication date (pubDate) is not read");
  if (report.Says("link") && report.Says("xmlUrl"))
    report.Lose(LossKind::kRepeated, "'xmlUrl' is not kept, because there is a 'link'");
  if (!report.Says("link") && !report.Says("xmlUrl") && !report.Says("vsm:rel", "type"))
    report.Lose(LossKind::kUnsaid, "no link in the document: a copy gets about:blank");
}

// The document.

void OpenFolder(Bookmarks& bookmarks, const Element& element) {
  bookmarks.OpenFolder();
  AttributesTo<&Bookmarks::This, kFolderFields>(bookmarks, element);
}

enum Scope : unsigned {
  kRss = 1,
  kChannel = 2,
  kFolder = 4,
  kItem = 8,
  kRepeated = 16,  // inside elements of which all count
};

// Rows are searched from the top. Those of items are first because items are the most frequent.
using B = Bookmarks;
constexpr ScopedElement<Bookmarks> kElements[] = {
    {kItem, "title", TextTo<&B::Item, &CBaseNode::SetName>},
    {kItem, "link", TextTo<&B::This, &B::SetLink>},
    {kItem, "xmlUrl", TextTo<&B::This, &B::SetXmlUrl>},
    {kItem, "description", TextTo<&B::Item, &CBaseNode::SetDescription>},
    {kItem, "author", TextTo<&B::Item, &CUrlNode::SetAuthor>},
    {kItem, "vsm:folderref", FolderReference},
    {kItem, "pubDate", NoLoss},
    {kItem, "vsm:rel", AttributesTo<&B::Item, kRelationFields>},
    {kItem, "vsm:stat", AttributesTo<&B::ItemStat, kStatFields>},
    {kItem, "sx:sync", Sync<&B::Item>},
    {kItem, "vsm:build", AttributesTo<&B::Item, kBuildFields>},
    {kItem, "vsm:tags", TextTo<&B::Item, Tags>},
    {kRss, "channel", nullptr, kChannel, nullptr, SayNoIdentity<&B::Colct>},
    {kChannel, "title", TextTo<&B::Colct, &CBaseNode::SetName>},
    {kChannel, "description", TextTo<&B::Colct, &CBaseNode::SetDescription>},
    {kChannel, "generator", NoLoss},  // names the writing program
    {kChannel, "dc:creator", TextTo<&B::NetData, &CColctNetData::SetOwner>},
    {kChannel, "vsm:action", AttributesTo<&B::NetData, kActionFields>},
    {kChannel, "vsm:build", AttributesTo<&B::Colct, kBuildFields>},
    {kChannel, "sx:sync", Sync<&B::Colct>},
    {kChannel | kFolder, "vsm:folder", OpenFolder, kFolder, Call<&B::CloseFolder>,
     SayNoIdentity<&B::Folder>},
    {kFolder, "title", TextTo<&B::Folder, &CBaseNode::SetName>},
    {kFolder, "description", TextTo<&B::Folder, &CBaseNode::SetDescription>},
    {kFolder, "sx:sync", FolderSync},
    {kChannel, "item", Call<&B::OpenItem>, kItem, Call<&B::CloseItem>, SayUnsaid},
};

// What documents of other programs hold beside that.

// A guid is an address unless it says that it is none.
void PermanentUrl(Bookmarks& bookmarks, const Element& element) {
  bool isAddress = true;
  ForEachAttribute(element, [&](WideView name, const WChar* value) {
    if (IsNamed(name, "isPermaLink")) isAddress = !IsNamed(WideView(value), "false");
  });
  const XmlText text = element.Text();
  const bool isOne =
      isAddress && std::find(text.view().begin(), text.view().end(), ':') != text.view().end();
  if (isOne && !bookmarks.HasAddress()) bookmarks.SetPermanentUrl(text.c_str());
}

constexpr ScopedElement<Bookmarks> kForeignElements[] = {
    {kItem, "link", TextTo<&B::This, &B::SetForeignLink>},
    {kItem, "guid", PermanentUrl},
    {kItem, "pubDate", TextTo<&B::This, &B::SetPublished>},
    {kItem, "dc:date", TextTo<&B::This, &B::SetPublished>},
    {kItem, "dc:creator", TextTo<&B::This, &B::SetCreator>},
    {kItem, "category", TextTo<&B::This, &B::AddCategory>, kRepeated},
    {kItem, "dc:subject", TextTo<&B::This, &B::AddCategory>, kRepeated},
    {kChannel, "link", TextTo<&B::This, &B::SetSiteUrl>},
    {kRss, "item", Call<&B::OpenItem>, kItem, Call<&B::CloseItem>, SayUnsaid},
};

/// One table after the other: rows of the first win.
template <class Row, std::size_t M, std::size_t N>
struct Joined {
  Row rows[M + N];

  constexpr Joined(const Row (&first)[M], const Row (&second)[N])
      : Joined(first, second, std::make_index_sequence<M + N>()) {}

 private:
  template <std::size_t... I>
  constexpr Joined(const Row (&first)[M], const Row (&second)[N], std::index_sequence<I...>)
      : rows{(I < M ? first[I] : second[I - M])...} {}
};
constexpr Joined kAllElements(kForeignElements, kElements);

}  // namespace

CReadBkmarkXML::~CReadBkmarkXML() {
  DeleteWithLocalTree(colct_);
}

CColctNode* CReadBkmarkXML::DetachColctNode() {
  return std::exchange(colct_, nullptr);
}

void CReadBkmarkXML::InvokeParser(XmlNode root) {
  Bookmarks bookmarks;
  if (IsRootNamed(root, "rss")) {
    bookmarks.Begin();
    if (readsForeign_)
      ReadChildren(kAllElements.rows, bookmarks, Reported(root), kRss, Repeats::kFirst);
    else
      ReadChildren(kElements, bookmarks, Reported(root), kRss, Repeats::kFirst);
    bookmarks.Place();
    if (xml::Report* const report = Reported(root).report()) bookmarks.SayMisplaced(*report);
  }
  ThrowIfTextsWereLost();
  DeleteWithLocalTree(colct_);
  colct_ = bookmarks.Detach();
  hadUnread_ = bookmarks.HadUnread();
}

}  // namespace vosmere
