// ImportFavorites: walks the directories and sorts their entries by the stored orders.
#include "vosmere/favorites/import_favorites.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <tuple>
#include <unordered_map>
#include <vector>

#include "vosmere/base/internal/wide_string.h"
#include "vosmere/favorites/favorites.h"
#include "vosmere/favorites/internal/order_value.h"
#include "vosmere/platform/internal/folder.h"
#include "vosmere/platform/registry.h"
#include "vosmere/tree/folder_node.h"
#include "vosmere/tree/tree_tool.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

struct FreeTree {
  void operator()(RNode* root) const { DeleteTree(root); }
};
using TreePtr = std::unique_ptr<RNode, FreeTree>;

struct FreeKey {
  void operator()(HKEY key) const { CloseKey(key); }
};
using KeyPtr = std::unique_ptr<HKEY__, FreeKey>;

/// The name of a file as well-formed text: unpaired surrogates become U+FFFD.
std::u16string TextOf(std::u16string name) {
  const WideView units{Units(name), name.size()};
  for (std::size_t at = 0; (at += WellFormedLength(units.From(at))) < name.size();)
    name[at] = u'\xFFFD';
  return name;
}

/// Adds a new item, named after a file, as the last child of `parent`; a null `parent` makes a
/// root. Throws std::bad_alloc.
template <class Node>
RNode* AddItem(RNode* parent, tagNODETYPE type, const std::u16string& fileName) {
  const std::u16string name = TextOf(fileName);
  Node* const item = Node::New();
  RNode* const link = item ? RNode::New2(item, type) : nullptr;
  if (!link) {
    CBaseNode::Delete(item);
    throw std::bad_alloc();
  }
  if (parent) RNTool::InsertAsChild(parent, link);
  item->SetName(Units(name));
  return link;
}

/// One entry of a directory, and its position in the menu. They are sorted by position; entries
/// without one come last, folders first, by name.
struct Entry {
  std::u16string name;
  std::u16string folded;
  bool isFolder;
  bool isLink;
  bool isPlaced = false;
  LONG position = 0;
  ULONG index = 0;  // of the record: decides between equal positions

  friend bool operator<(const Entry& a, const Entry& b) {
    const auto rank = [](const Entry& entry) {
      return std::tuple(!entry.isPlaced, entry.position, entry.index, !entry.isFolder);
    };
    return rank(a) != rank(b)     ? rank(a) < rank(b)
           : a.folded != b.folded ? a.folded < b.folded
                                  : a.name < b.name;
  }
};

/// The entries of a directory without "Desktop.ini"; nothing when it cannot be read completely.
/// Throws std::bad_alloc.
std::optional<std::vector<Entry>> ReadDirectory(const std::u16string& path) {
  FolderListing listing;
  if (!listing.Open(Units(path))) return {};
  std::vector<Entry> entries;
  while (listing.Next()) {
    const std::u16string name = ToU16(listing.Name());
    const std::u16string folded = Folded(name);
    if (folded != u"desktop.ini")
      entries.push_back({name, folded, listing.IsFolder(), listing.IsLink()});
  }
  if (listing.Failed()) return {};
  return entries;
}

/// The stored order of a folder; empty when there is none. Throws std::bad_alloc.
std::vector<unsigned char> ReadOrder(HKEY key) {
  const WChar* const name = Units(u"Order");
  ULONG size = 0;
  if (!ReadKeyValue(key, name, nullptr, &size)) return {};
  std::vector<unsigned char> bytes(size);
  if (!ReadKeyValue(key, name, bytes.data(), &size)) return {};
  // The value may have become shorter since its size was read.
  bytes.resize(std::min<std::size_t>(size, bytes.size()));
  return bytes;
}

/// Sets the positions of entries from a stored order. Each entry takes the position of the first
/// record that names it.
class Placing {
 public:
  Placing(std::vector<Entry>& entries, FavoritesReport& report) : report_(report) {
    for (Entry& entry : entries) byName_.emplace(entry.folded, &entry);
  }

  void Apply(const std::vector<unsigned char>& order) {
    OrderValue value(order.data(), order.size());
    ULONG records = 0;
    for (; const std::optional<OrderEntry> record = value.Next(); ++records) Apply(*record);
    // A value that ends early counts once, however many records are missing.
    if (!value.HasHead() || records < value.Count()) ++report_.recordsNotUnderstood;
  }

 private:
  void Apply(const OrderEntry& record) {
    // The long name is tried first, because the other one may be a short 8.3 name.
    const std::optional<std::u16string> longName = record.LongName(), name = record.Name();
    const bool isNamed = longName || (name && !name->empty());
    if (record.Position() < 0 || !isNamed)
      ++report_.recordsNotUnderstood;
    else if (!(longName && Place(record, *longName)) && !(name && Place(record, *name)))
      ++report_.recordsWithoutFile;
  }

  bool Place(const OrderEntry& record, const std::u16string& name) {
    const auto found = byName_.find(Folded(name));
    if (found == byName_.end()) return false;
    Entry& entry = *found->second;
    entry.isPlaced = true;
    entry.position = record.Position();
    entry.index = record.index;
    byName_.erase(found);
    return true;
  }

  FavoritesReport& report_;
  std::unordered_multimap<std::u16string, Entry*> byName_;
};

/// Imports a folder with its subfolders. Folders that are still to be read wait in a list rather
/// than on the stack, so that deep nesting cannot overflow it.
class Import {
 public:
  Import(HKEY key, FavoritesReport& report) : key_(key), report_(report) {}

  /// Fills the tree under `root`. False when the top folder cannot be read. Throws std::bad_alloc.
  bool Run(RNode* root, const std::u16string& path) {
    pending_.push_back({root, path, u""});
    bool isTop = true;
    while (!pending_.empty()) {
      const Folder folder = std::move(pending_.back());
      pending_.pop_back();
      if (!Fill(folder)) {
        if (isTop) return false;
        ++report_.foldersNotRead;
      }
      isTop = false;
    }
    return true;
  }

 private:
  struct Folder {
    RNode* link;
    std::u16string path;
    std::u16string key;  ///< relative to the key of the top folder
  };

  bool Fill(const Folder& folder) {
    std::optional<std::vector<Entry>> entries = ReadDirectory(folder.path);
    if (!entries) return false;
    const KeyPtr subKey(folder.key.empty() ? nullptr : OpenSubKey(key_, Units(folder.key)));
    const std::vector<unsigned char> order = ReadOrder(folder.key.empty() ? key_ : subKey.get());
    if (!order.empty()) {
      ++report_.foldersInOrder;
      Placing(*entries, report_).Apply(order);
    }
    std::sort(entries->begin(), entries->end());
    for (const Entry& entry : *entries) Add(folder, entry);
    return true;
  }

  void Add(const Folder& folder, const Entry& entry) {
    const std::u16string path = JoinPath(folder.path, entry.name);
    if (!entry.isFolder) {
      AddFile(folder.link, entry, path);
      return;
    }
    RNode* const link = AddItem<CFolderNode>(folder.link, NT_FOLDER, entry.name);
    ++report_.folders;
    if (entry.isLink)  // a link may lead back to a folder above: an endless walk
      ++report_.foldersNotRead;
    else
      pending_.push_back(
          {link, path, folder.key.empty() ? entry.name : folder.key + u'\\' + entry.name});
  }

  void AddFile(RNode* parent, const Entry& entry, const std::u16string& path) {
    constexpr std::u16string_view kExtension = u".url";
    if (!entry.folded.ends_with(kExtension)) {
      ++report_.otherFiles;
      return;
    }
    const std::u16string name = entry.name.substr(0, entry.name.size() - kExtension.size());
    auto* const page = static_cast<CUrlNode*>(AddItem<CUrlNode>(parent, NT_URL, name)->item);
    ++report_.items;
    WChar* url = nullptr;
    favorites_.ResolveInternetShortcut(Units(path), &url);
    if (url && WideLength(url) < CUrlNode::kTextLimit)
      page->SetUrl(url);
    else
      ++report_.shortcutsWithoutAddress;
    favorites_.FreeUrl(url);
  }

  CFavorites favorites_;
  HKEY key_;
  FavoritesReport& report_;
  std::vector<Folder> pending_;
};

/// The last component of a path, whatever separators follow it.
std::u16string LastName(std::u16string path) {
  const auto isSeparator = [](char16_t unit) { return unit == u'\\' || unit == u'/'; };
  while (!path.empty() && isSeparator(path.back())) path.pop_back();
  return {std::find_if(path.rbegin(), path.rend(), isSeparator).base(), path.end()};
}

}  // namespace

RNode* ImportFavorites(const WChar* regPath, const WChar* dirPath, FavoritesReport* report) try {
  FavoritesReport ignored;
  if (!report) report = &ignored;
  *report = {};
  const unsigned long lostBefore = LostTexts();
  WChar usual[CFavorite::kNameLimit];
  if (!dirPath) CFavorites().GetFavoritesFilePath(usual);
  const std::u16string path = ToU16(dirPath ? dirPath : usual);
  if (!regPath) CFavorites().GetFavoritesRegPath(usual);
  const KeyPtr key(OpenUserKey(regPath ? regPath : usual));

  TreePtr tree(AddItem<CFolderNode>(nullptr, NT_FOLDER, LastName(path)));
  const bool read = Import(key.get(), *report).Run(tree.get(), path);
  // Items lose texts silently when memory runs out; such a tree is not returned.
  return read && LostTexts() == lostBefore ? tree.release() : nullptr;
} catch (const std::bad_alloc&) {
  return nullptr;
}

}  // namespace vosmere
