// The registry of the current user, from a file.
#include "vosmere/platform/posix/registry.h"

#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/posix/path.h"
#include "vosmere/platform/posix/text_file.h"
#include "vosmere/platform/registry.h"

struct HKEY__ {
  std::shared_ptr<const vosmere::RegistryFile> file;
  std::u16string path;
};

namespace vosmere {
namespace {

constexpr char16_t kUserFile[] = u"/user.reg";

std::mutex chosenMutex;
std::u16string chosenPath;  // empty for the default

/// The path in an environment variable; empty when it is not set.
std::u16string PathIn(const char* variable) {
  const char* const name = std::getenv(variable);
  std::u16string path(name ? std::strlen(name) : 0, 0);
  if (name) path.resize(PathOfName(name, reinterpret_cast<WChar*>(path.data()), path.size()));
  return path;
}

std::u16string DefaultPath() {
  const std::u16string prefix = PathIn("WINEPREFIX");
  return prefix.empty() ? PathIn("HOME") + u"/.wine" : prefix;
}

/// The folder of a file, with a separator at its end.
std::u16string FolderOf(std::u16string path) {
  path.erase(path.find_last_of(u"/\\") + 1);
  return path.empty() ? u"./" : path;
}

/// Hives begin with the signature "regf".
bool StartsLikeAHive(const std::u16string& path) {
  File file;
  char mark[4] = {};
  std::size_t got = 0;
  return file.Open(Units(path)) && file.Read(mark, sizeof mark, &got) && got == sizeof mark &&
         std::memcmp(mark, "regf", sizeof mark) == 0;
}

/// Reads a registry file; a Wine prefix may also be given by its folder.
UserRegistry ReadRegistry(std::u16string path) {
  const std::u16string inPrefix = path + kUserFile;
  if (File().Open(Units(inPrefix))) path = inPrefix;
  UserRegistry registry{UserRegistry::kHive, FolderOf(path), nullptr};
  if (StartsLikeAHive(path)) {
    registry.file = OpenRegistryHive(Units(path));
    return registry;
  }
  std::string bytes;
  if (!ReadWholeFile(Units(path), kRegistryFileLimit, &bytes)) return registry;
  registry.kind = bytes.starts_with("WINE") ? UserRegistry::kWinePrefix : UserRegistry::kExported;
  registry.file = OpenRegistryText(std::move(bytes));
  return registry;
}

HKEY OpenKey(const std::shared_ptr<const RegistryFile>& file, const std::u16string& path) {
  if (!file || !file->HasKey(path)) return nullptr;
  return new HKEY__{file, path};
}

}  // namespace

UserRegistry ReadUserRegistry() {
  std::u16string path;
  {
    const std::lock_guard lock(chosenMutex);
    path = chosenPath;
  }
  return ReadRegistry(path.empty() ? DefaultPath() : path);
}

std::u16string ReadText(const RegistryFile& file, const char16_t* key, const char16_t* name) {
  std::string bytes;
  if (!file.ReadValue(key, name, &bytes)) return {};
  // The registry stores texts as UTF-16LE, which this byte-order mark tells TextOf.
  const std::u16string text = WideOf(TextOf("\xFF\xFE" + bytes));
  return text.substr(0, text.find(u'\0'));
}

bool SetUserRegistry(const WChar* path) {
  return UnlessNoMemory(false, [&] {
    std::u16string chosen = ToU16(path);
    // Read once now, so that a bad file is reported here rather than by every key that cannot be
    // opened.
    if (path && !ReadRegistry(chosen).file) return false;
    const std::lock_guard lock(chosenMutex);
    chosenPath.swap(chosen);
    return true;
  });
}

HKEY OpenUserKey(const WChar* path) {
  return UnlessLost(HKEY{}, [&] { return OpenKey(ReadUserRegistry().file, ToU16(path)); });
}

HKEY OpenSubKey(HKEY parent, const WChar* path) {
  if (!parent) return nullptr;
  return UnlessLost(HKEY{}, [&] {
    const std::u16string& above = parent->path;
    return OpenKey(parent->file, above.empty() ? ToU16(path) : JoinPath(above, ToU16(path)));
  });
}

void CloseKey(HKEY key) {
  delete key;
}

bool ReadKeyValue(HKEY key, const WChar* name, void* bytes, ULONG* size) {
  return UnlessLost(false, [&] {
    std::string value;
    if (!key || !key->file->ReadValue(key->path, ToU16(name), &value)) return false;
    if (bytes && value.size() > *size) return false;
    if (bytes) std::memcpy(bytes, value.data(), value.size());
    *size = static_cast<ULONG>(value.size());
    return true;
  });
}

}  // namespace vosmere
