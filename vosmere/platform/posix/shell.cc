// The shell's services: the Favorites folder of a registry file, and shortcut files read directly.
#include "vosmere/platform/internal/shell.h"
#include "vosmere/base/ascii.h"

#include <algorithm>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/platform/posix/registry.h"
#include "vosmere/platform/posix/shortcut.h"
#include "vosmere/platform/posix/text_file.h"

namespace vosmere {
namespace {

constexpr std::size_t kShortcutLimit = 1 << 20;  // bytes
constexpr char16_t kFolders[] =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\User Shell Folders";
constexpr std::u16string_view kProfile = u"%userprofile%\\";

/// Converts a Windows path to the path of its file in a Wine prefix, which has a link for each
/// drive; empty for a path without a drive.
std::u16string InPrefix(const UserRegistry& prefix, std::u16string path) {
  if (path.size() < 2 || path[1] != u':') return {};
  path[0] = static_cast<char16_t>(ascii::Fold(path[0]));
  return prefix.folder + u"dosdevices/" + path;
}

/// The Favorites folder of a registry; empty when it is not known. For a profile's hive, only a
/// folder within the profile can be found, since the hive does not say where its drives are on this
/// system.
std::u16string FavoritesOf(const UserRegistry& registry) {
  std::u16string path = ReadText(*registry.file, kFolders, u"Favorites");
  const bool inProfile = Folded(path).starts_with(kProfile);
  if (inProfile) path.erase(0, kProfile.size());
  switch (registry.kind) {
    case UserRegistry::kHive: return registry.folder + (inProfile ? path : u"Favorites");
    case UserRegistry::kWinePrefix:
      if (inProfile)
        path = ReadText(*registry.file, u"Volatile Environment", u"USERPROFILE") + u'\\' + path;
      return InPrefix(registry, path);
    default: return {};
  }
}

/// Copies a text with its terminating null. False when it does not fit in `capacity` code units.
bool CopyTo(const std::u16string& text, WChar* out, std::size_t capacity) {
  if (text.size() >= capacity) return false;
  std::copy_n(text.c_str(), text.size() + 1, out);
  return true;
}

}  // namespace

bool FavoritesFolder(WChar (&path)[kShellPathLimit]) {
  path[0] = 0;
  return UnlessNoMemory(false, [&] {
    const UserRegistry registry = ReadUserRegistry();
    const std::u16string folder = registry.file ? FavoritesOf(registry) : std::u16string();
    return !folder.empty() && CopyTo(folder, path, kShellPathLimit);
  });
}

ShellAllocator::ShellAllocator() : allocator_(nullptr) {}

ShellAllocator::~ShellAllocator() {}

void ShellAllocator::Free(WChar* text) const {
  delete[] text;
}

WChar* ShortcutAddress(const WChar* path) {
  return UnlessLost(static_cast<WChar*>(nullptr), [&]() -> WChar* {
    std::string bytes;
    if (!ReadWholeFile(path, kShortcutLimit, &bytes)) return nullptr;
    std::u16string address = ShortcutAddressIn(std::move(bytes));
    address.resize(std::min(address.find(u'\0'), address.size()));
    if (address.empty()) return nullptr;
    auto* const units = new WChar[address.size() + 1];
    CopyTo(address, units, address.size() + 1);
    return units;
  });
}

}  // namespace vosmere
