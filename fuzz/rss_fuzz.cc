// Any bytes load or fail; what loads can be saved; what was saved loads again with all its items,
// and after that does not change any more.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "vosmere/collections/rss_reader.h"
#include "vosmere/collections/rss_writer.h"
#include "vosmere/cpp.h"
#include "vosmere/tree/tree_walk.h"

using namespace vosmere;

namespace {

std::u16string SavedText(CColctNode* colct) {
  CWriteColctRSS writer;
  writer.SetColctNode(colct);
  const SystemString text(writer.GetXMLBSTR());
  if (!text) std::abort();
  return ToUtf16(text.get());
}

Collection Loaded(const std::u16string& document) {
  CReadBkmarkXML reader;
  if (!reader.LoadBSTRXML(Wide(document))) std::abort();
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
  CReadBkmarkXML reader;
  reader.LoadXML(reinterpret_cast<const char*>(data), static_cast<int>(size));
  const Collection first(reader.DetachColctNode());
  if (!first) return 0;
  const std::u16string document = SavedText(first.get());
  const Collection second = Loaded(document);
  if (ItemsIn(second.get()) != ItemsIn(document)) std::abort();
  const std::u16string settled = SavedText(second.get());
  if (SavedText(Loaded(settled).get()) != settled) std::abort();
  return 0;
}
