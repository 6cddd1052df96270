// Any bytes load or fail; what loads can be saved, loads again, and after that does not change any
// more. Plain text loads as UTF-16 as it does as bytes.
#include <string>

#include "fuzz/support.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/cpp.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

/// As the plain writer has it, which does not escape everything.
std::u16string PlainlyWritten(const Tree& tree) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(tree.get());
  const SystemString text(writer.GetXMLBSTR());
  Require(!!text);
  return ToUtf16(text.get());
}

std::string SavedText(const Tree& tree) {
  const Result<SavedBytes> saved = SaveToBytes(tree);
  Require(!!saved);
  return saved->bytes;
}

Tree Again(const std::string& document) {
  Result<Tree> tree = Load<Tree>(Bytes(document));
  Require(!!tree);
  return *std::move(tree);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CReadColctTreeOPML reader, textReader;
  const bool loads = reader.LoadXML(reinterpret_cast<const char*>(data), static_cast<int>(size));
  const Tree tree(reader.DetachTreeRoot());
  if (const std::u16string text = AsText(View(data, size)); !text.empty()) {
    Require(textReader.LoadBSTRXML(Wide(text)) == loads);
    const Tree same(textReader.DetachTreeRoot());
    Require(!tree == !same && (!tree || PlainlyWritten(tree) == PlainlyWritten(same)));
  }
  if (!tree) return 0;
  const std::string settled = SavedText(Again(SavedText(tree)));
  Require(SavedText(Again(settled)) == settled);
  return 0;
}
