// Any text is read as a bookmark file; what was read is written, and from then on stays as it is.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vosmere/cpp.h"
#include "vosmere/import/internal/bookmarks_reader.h"
#include "vosmere/import/internal/decode.h"

using namespace vosmere;

namespace {

std::string Written(std::string_view bytes) {
  importing::RepairList repairs;
  const std::string text = importing::Decode(bytes, repairs);
  const Result<SavedBytes> saved =
      BookmarksToBytes(Tree(importing::ReadBookmarkFile(text, repairs)));
  if (!saved) std::abort();
  return saved->bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string once = Written({reinterpret_cast<const char*>(data), size});
  const std::string settled = Written(once);
  if (Written(settled) != settled) std::abort();
  return 0;
}
