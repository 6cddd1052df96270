// Reads a registry in the form in which Windows stores it in a profile's "NTUSER.DAT", by hivex.
#include <hivex.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <new>

#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/posix/path.h"
#include "vosmere/platform/posix/registry_file.h"
#include "vosmere/platform/posix/text_file.h"

namespace vosmere {
namespace {

struct CloseHive {
  void operator()(hive_h* hive) const { hivex_close(hive); }
};
using Hive = std::unique_ptr<hive_h, CloseHive>;

/// Checks a result of hivex; `errno` has to be 0 before the call. A null result may mean that
/// memory ran out. If hivex cannot allocate a converter for names, it continues with an invalid
/// one, which gives EBADF.
template <class Answer>
Answer Found(Answer answer) {
  if (!answer && (errno == ENOMEM || errno == EBADF)) throw std::bad_alloc();
  return answer;
}

class RegistryHive : public RegistryFile {
 public:
  explicit RegistryHive(Hive hive) : hive_(std::move(hive)) {}

  bool HasKey(const std::u16string& key) const override { return FindKey(key) != 0; }

  bool ReadValue(const std::u16string& key, const std::u16string& name,
                 std::string* bytes) const override {
    const hive_node_h node = FindKey(key);
    if (!node) return false;
    const std::string wanted = Utf8Of(name);
    errno = 0;
    const hive_value_h value = Found(hivex_node_get_value(hive_.get(), node, wanted.c_str()));
    if (!value) return false;
    hive_type type;
    std::size_t size = 0;
    const std::unique_ptr<char, decltype(&std::free)> data(
        Found(hivex_value_value(hive_.get(), value, &type, &size)), &std::free);
    if (!data) return false;
    bytes->assign(data.get(), size);
    return true;
  }

 private:
  hive_node_h FindKey(const std::u16string& key) const {
    hive_node_h node = hivex_root(hive_.get());
    for (std::size_t at = 0; node && at < key.size();) {
      const std::size_t end = std::min(key.find(u'\\', at), key.size());
      const std::string name = Utf8Of(key.substr(at, end - at));
      errno = 0;
      if (!name.empty()) node = Found(hivex_node_get_child(hive_.get(), node, name.c_str()));
      at = end + 1;
    }
    return node;
  }

  Hive hive_;
};

}  // namespace

// Opened for writing, although nothing is ever written. hivex then reads the whole file into memory
// instead of mapping it, so that truncating the file meanwhile does no harm. A hive consists of
// whole pages; hivex reads beyond the end of one that does not.
std::unique_ptr<RegistryFile> OpenRegistryHive(const WChar* path) {
  constexpr std::size_t kPage = 4096;
  File file;
  std::uint64_t size = 0;
  char name[PATH_MAX];
  if (!file.Open(path) || !file.Size(&size) || size > kRegistryFileLimit || size % kPage != 0)
    return nullptr;
  if (!NativePath(path, name)) return nullptr;
  errno = 0;
  Hive hive(Found(hivex_open(name, HIVEX_OPEN_WRITE)));
  if (!hive) return nullptr;
  return std::make_unique<RegistryHive>(std::move(hive));
}

}  // namespace vosmere
