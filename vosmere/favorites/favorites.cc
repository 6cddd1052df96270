// CFavorites: order records in both layouts, and the entries of the directory.
#include "vosmere/favorites/favorites.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "vosmere/base/internal/wide_string.h"
#include "vosmere/favorites/internal/order_value.h"
#include "vosmere/favorites/internal/path_set.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/folder.h"
#include "vosmere/platform/internal/shell.h"
#include "vosmere/platform/internal/system_version.h"

namespace vosmere {
namespace {

static_assert(CFavorite::kNameLimit == kShellPathLimit);

constexpr char16_t kOrder[] = u"Order";
constexpr char16_t kDesktopIni[] = u"Desktop.ini";
constexpr char16_t kMenuOrder[] =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\Favorites";

struct DeleteFavorite {
  void operator()(CFavorite* favorite) const { CFavorite::DeleteList(favorite); }
};
using FavoritePtr = std::unique_ptr<CFavorite, DeleteFavorite>;

/// Throws std::bad_alloc.
FavoritePtr NewFavorite() {
  FavoritePtr favorite(CFavorite::New());
  if (!favorite) throw std::bad_alloc();
  return favorite;
}

/// False, with nothing set, when the path is too long. The folder ends with a separator.
bool SetPath(CFavorite& favorite, const std::u16string& folder, WideView name) {
  if (folder.size() + name.size >= CFavorite::kNameLimit) return false;
  WChar* const end = std::copy(folder.begin(), folder.end(), favorite.name);
  *std::copy(name.begin(), name.end(), end) = 0;
  return true;
}

/// The name converted to the system's code page and back, as this layout has it: characters that
/// the code page lacks are replaced. Throws std::bad_alloc.
std::u16string ThroughCodePage(const std::u16string& name) {
  const std::string bytes = BytesOf(kCodePageSystem, {Units(name), name.size()});
  const int size = static_cast<int>(bytes.size());
  std::u16string back(bytes.size(), 0);
  back.resize(BytesToWide(kCodePageSystem, bytes.data(), size,
                          reinterpret_cast<WChar*>(back.data()), size));
  if (back.empty() && size > 0) throw std::bad_alloc();
  return back;
}

/// Reads the short name in the XP layout into the record. Returns the offset of what follows, or
/// nothing when the name is too long. Throws std::bad_alloc.
std::optional<std::size_t> TakeShortName(const OrderEntry& entry, COrderRecord& record) {
  const ByteView bytes = entry.bytes.From(OrderEntry::kNameAt);
  if (entry.Flags() & OrderEntry::kIsWide) {
    const std::optional<std::u16string> name = bytes.Text16();
    if (!name) return {};
    // Intended: the length in characters is used as a length in bytes. The fields that follow have
    // always been read from that offset.
    return OrderEntry::kNameAt + name->size() + 2;
  }
  const std::optional<std::string> name = bytes.Text8();
  if (!name) return {};
  record.shortName.Assign(new char[name->size() + 1]);
  std::copy_n(name->c_str(), name->size() + 1, record.shortName.get());
  record.shortNameLength = static_cast<LONG>(name->size());
  record.padded = (name->size() + 1) % 2 != 0;
  return OrderEntry::kNameAt + name->size() + 1 + record.padded;
}

/// Reads both names in the XP layout into the record and returns the long one, which is the item's
/// name. Nothing when they cannot be read. Throws std::bad_alloc.
std::optional<std::u16string> TakeXpNames(const OrderEntry& entry, COrderRecord& record) {
  const std::optional<std::size_t> at = TakeShortName(entry, record);
  constexpr std::size_t kHeader = sizeof record.extensionHeader;
  if (!at || entry.bytes.From(*at).size() <= kHeader) return {};
  const ByteView header = entry.bytes.From(*at);
  std::copy_n(header.data(), kHeader, record.extensionHeader);
  std::optional<std::u16string> name = header.From(kHeader).Text16();
  if (!name) return {};
  record.longName = HeapText(Units(*name));
  record.longNameLength = static_cast<LONG>(name->size());
  const ByteView trailer = header.From(kHeader + 2 * (name->size() + 1));
  record.trailer[0] = trailer.Word(0);
  record.trailer[1] = trailer.Word(4);
  return name;
}

/// The item's name in the other layout; nothing when it is too long. Throws std::bad_alloc.
std::optional<std::u16string> PlainName(const OrderEntry& entry) {
  std::optional<std::u16string> name = entry.Name();
  return name && entry.Flags() & OrderEntry::kIsWide ? ThroughCodePage(*name) : name;
}

/// The item that a record describes; null when its name cannot be read or its path is too long.
/// Throws std::bad_alloc.
FavoritePtr FavoriteOf(const OrderEntry& entry, const std::u16string& folder, bool xpLayout) {
  OwnedPointer<COrderRecord> record(new COrderRecord);
  entry.CopyTo(*record);
  const auto name = xpLayout ? TakeXpNames(entry, *record) : PlainName(entry);
  if (!name) return nullptr;
  FavoritePtr favorite = NewFavorite();
  if (!SetPath(*favorite, folder, {Units(*name), name->size()})) return nullptr;
  favorite->isFile = entry.Flags() & OrderEntry::kIsFile ? 1 : 0;
  favorite->orderRecord = std::move(record);
  return favorite;
}

struct Placed {
  LONG position;
  FavoritePtr favorite;

  friend bool operator<(const Placed& a, const Placed& b) { return a.position < b.position; }
};

/// The items of an order value by position. Of records with the same position, the last one comes
/// first. Throws std::bad_alloc.
std::vector<Placed> FavoritesOf(OrderValue& value, const WChar* dirPath, bool xpLayout) {
  std::vector<Placed> items;
  const std::u16string folder = JoinPath(ToU16(dirPath), {});
  while (const std::optional<OrderEntry> entry = value.Next()) {
    const LONG position = entry->Position();
    if (position < 0 || static_cast<ULONG>(position) >= value.Count()) continue;
    if (FavoritePtr favorite = FavoriteOf(*entry, folder, xpLayout))
      items.push_back({position, std::move(favorite)});
  }
  std::reverse(items.begin(), items.end());
  std::stable_sort(items.begin(), items.end());
  return items;
}

/// Reads the address of a shortcut file. Running out of memory must not look like a shortcut
/// without an address, so LostTexts is compared. Throws std::bad_alloc.
void Resolve(CFavorites& favorites, CFavorite& favorite) {
  const unsigned long lostBefore = LostTexts();
  WChar* url = nullptr;
  favorites.ResolveInternetShortcut(favorite.name, &url);
  if (url) favorite.url.AssignOrEmpty(url);
  favorites.FreeUrl(url);
  if (LostTexts() != lostBefore) throw std::bad_alloc();
}

}  // namespace

CFavorites::CFavorites() : allocator_(new ShellAllocator) {
  CheckOS();
}

CFavorites::~CFavorites() = default;

int CFavorites::ExtractFavorites(const WChar* regPath, const WChar* dirPath, CFavorite** list,
                                 COrderHead* head, int resolve) {
  *list = nullptr;
  const HKEY key = OpenUserKey(regPath);
  if (!key) return 0;
  const int result = GetOrderBufferFromKey(key, regPath, dirPath, list, head, resolve);
  CloseKey(key);
  return result;
}

int CFavorites::GetOrderBufferFromKey(HKEY key, const WChar* regPath, const WChar* dirPath,
                                      CFavorite** list, COrderHead* head, int resolve) {
  *list = nullptr;
  const WChar* const name = Units(kOrder);
  ULONG size = 0;
  const unsigned long lostBefore = LostTexts();
  if (!ReadKeyValue(key, name, nullptr, &size) || size == 0)
    // A key that could not be read for lack of memory must not look like one without an order.
    return LostTexts() == lostBefore ? ExtractFavoritesFromFileFolders(dirPath, list, resolve, 0)
                                     : 0;
  const std::unique_ptr<unsigned char[]> bytes(new (std::nothrow) unsigned char[++size]);
  if (!bytes || !ReadKeyValue(key, name, bytes.get(), &size)) return 0;
  return ExtractFavoritesFromOrderBuffer(key, regPath, dirPath, list, head, resolve, bytes.get(),
                                         size);
}

int CFavorites::ExtractFavoritesFromOrderBuffer(HKEY, const WChar*, const WChar* dirPath,
                                                CFavorite** list, COrderHead* head, int resolve,
                                                const unsigned char* buffer, ULONG length) try {
  *list = nullptr;
  OrderValue value(buffer, length);
  if (!value.HasHead()) return ExtractFavoritesFromFileFolders(dirPath, list, resolve, 0);
  if (head) value.CopyTo(*head);
  if (value.Count() == 0) return 1;
  CFavorite** end = list;
  LONG last = -1;
  for (auto& [position, favorite] : FavoritesOf(value, dirPath, runningOnXP_)) {
    if (std::exchange(last, position) == position) continue;
    if (favorite->isFile && resolve) Resolve(*this, *favorite);
    *end = favorite.release();
    end = &(*end)->next;
  }
  return ExtractFavoritesFromFileFolders(dirPath, list, resolve, 1);
} catch (const std::bad_alloc&) {
  return 0;
}

int CFavorites::ExtractFavoritesFromFileFolders(const WChar* dirPath, CFavorite** list, int resolve,
                                                int) try {
  PathSet listed;
  CFavorite** end = list;
  for (; *end; end = &(*end)->next) listed.Add((*end)->name);
  FolderListing listing;
  if (!listing.Open(dirPath)) return 1;
  const std::u16string folder = JoinPath(ToU16(dirPath), {});
  FavoritePtr favorite;  // stays for the next name when this one is listed already
  while (listing.Next()) {
    const WideView name(listing.Name());
    if (SameTextNoCase(name.data, Units(kDesktopIni))) continue;
    if (!favorite) favorite = NewFavorite();
    if (!SetPath(*favorite, folder, name) || !listed.Add(favorite->name)) continue;
    favorite->isFile = listing.IsFolder() ? 0 : 1;
    if (favorite->isFile && resolve) Resolve(*this, *favorite);
    *end = favorite.release();
    end = &(*end)->next;
  }
  return 1;
} catch (const std::bad_alloc&) {
  return 0;
}

void CFavorites::GetFavoritesRegPath(WChar* out) {
  std::copy_n(Units(kMenuOrder), std::size(kMenuOrder), out);
}

void CFavorites::GetFavoritesFilePath(WChar* out) {
  WChar path[kShellPathLimit];
  FavoritesFolder(path);
  std::copy_n(path, WideLength(path) + 1, out);
}

void CFavorites::ResolveInternetShortcut(const WChar* path, WChar** url) {
  *url = ShortcutAddress(path);
}

void CFavorites::FreeUrl(WChar* url) {
  allocator_->Free(url);
}

void CFavorites::CheckOS() {
  const SystemVersion version = GetSystemVersion();
  runningOnXP_ = version.isNt && version.major == 5 && version.minor != 0;
}

}  // namespace vosmere
