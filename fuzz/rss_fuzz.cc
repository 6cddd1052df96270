// Any bytes load or fail; what loads can be saved; what was saved loads again with all its items,
// and after that does not change any more. Plain text loads as UTF-16 as it does as bytes.
#include <string>

#include "fuzz/support.h"
#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/tree_walk.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

std::u16string SavedText(CColctNode* colct) {
  CWriteColctRSS writer;
  writer.SetColctNode(colct);
  const SystemString text(writer.GetXMLBSTR());
  Require(!!text);
  return ToUtf16(text.get());
}

Collection Loaded(const std::u16string& document) {
  CReadBkmarkXML reader;
  Require(reader.LoadBSTRXML(Wide(document)));
  return Collection(reader.DetachColctNode());
}

std::size_t ItemsIn(const std::u16string& document) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = document.find(u"<item>", at)) != document.npos; ++at) ++count;
  return count;
}

std::size_t ItemsIn(CColctNode* colct) {
  std::size_t count = 0;
  WalkBelow(
      colct->GetLocRNodeRoot(), [&](RNode* link) { return count += link->type == NT_URL, true; },
      [](RNode*) {});
  return count;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CReadBkmarkXML reader, textReader;
  const bool loads = reader.LoadXML(reinterpret_cast<const char*>(data), static_cast<int>(size));
  const Collection first(reader.DetachColctNode());
  Collection same;
  const std::u16string text = AsText(View(data, size));
  if (!text.empty()) {
    Require(textReader.LoadBSTRXML(Wide(text)) == loads);
    same = Collection(textReader.DetachColctNode());
    Require(!same == !first);
  }
  if (!first) return 0;
  const std::u16string document = SavedText(first.get());
  if (same) Require(ItemsIn(same.get()) == ItemsIn(first.get()));
  const Collection second = Loaded(document);
  Require(ItemsIn(second.get()) == ItemsIn(document));
  const std::u16string settled = SavedText(second.get());
  Require(SavedText(Loaded(settled).get()) == settled);
  return 0;
}
