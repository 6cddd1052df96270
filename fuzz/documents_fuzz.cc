// For every stored document: any bytes load or fail; what loads can be saved; what was saved loads
// again, and after that does not change any more. The first byte chooses the document: '0' is the
// first row of the table.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "tests/support/stored_documents.h"

using namespace vosmere;
using namespace vosmere::test;

namespace {

/// Reads a document that must load, and writes it again.
BSTR Again(const StoredDocument& document, BSTR text) {
  const auto reader = document.newReader();
  if (!reader->LoadBSTRXML(text)) std::abort();
  return document.write(*reader);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto row = static_cast<std::uint8_t>(data[0] - '0') % (std::size(kStoredDocuments) - 2);
  const StoredDocument& document = kStoredDocuments[row];
  const auto reader = document.newReader();
  reader->LoadXML(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size) - 1);
  const OwnedBstr first(document.write(*reader));
  if (!first.get()) return 0;
  const OwnedBstr settled(Again(document, first.get()));
  if (!settled.get()) std::abort();
  if (OwnedBstr(Again(document, settled.get())).utf8() != settled.utf8()) std::abort();
  return 0;
}
