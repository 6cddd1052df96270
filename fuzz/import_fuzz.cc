// Any bytes are repaired to a document that the parser takes, unless it is too deep or empty; and
// what was imported can be saved as a bookmark file that has as many items.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vosmere/cpp.h"
#include "vosmere/import/internal/decode.h"
#include "vosmere/import/internal/well_formed.h"
#include "vosmere/tree/tree_walk.h"

using namespace vosmere;

namespace {

struct AnyRoot : CReadXML {
  void InvokeParser(XmlNode) override {}
};

void CheckRepair(std::string_view bytes) {
  importing::RepairList repairs;
  const std::string text = importing::Decode(bytes, repairs);
  const std::string document = importing::MakeWellFormed(text, repairs);
  if (document.empty()) return;
  AnyRoot reader;
  if (!reader.LoadXML(document.data(), static_cast<int>(document.size())) &&
      reader.LastError().fault != DocumentFault::kTooDeep)
    std::abort();
}

std::size_t ItemsIn(RNode* root) {
  std::size_t count = 0;
  WalkBelow(
      root, [&](RNode*) { return ++count, true; }, [](RNode*) {});
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  CheckRepair(bytes);
  const Result<Imported> imported = Import(Bytes(bytes));
  if (!imported || !imported->tree) return 0;
  const Result<SavedBytes> saved = BookmarksToBytes(imported->tree);
  if (!saved) std::abort();
  const Result<Imported> again = Import(Bytes(saved->bytes));
  if (!again || ItemsIn(again->tree.get()) != ItemsIn(imported->tree.get())) std::abort();
  return 0;
}
