// For every stored document: any bytes load or fail; what loads can be saved; what was saved loads
// again, and after that does not change any more. The first byte chooses the document: '0' is the
// first row of the table. From 128 on the others are UTF-16.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string>

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
  if (data[0] < 128) {
    reader->LoadXML(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size) - 1);
  } else {
    std::u16string text(size / 2, u'\0');
    std::memcpy(text.data(), data + 1, (size - 1) / 2 * 2);
    reader->LoadBSTRXML(Wide(text));
  }
  const OwnedBstr first(document.write(*reader));
  if (!first.get()) return 0;
  const OwnedBstr settled(Again(document, first.get()));
  if (!settled.get()) std::abort();
  if (OwnedBstr(Again(document, settled.get())).utf8() != settled.utf8()) std::abort();
  return 0;
}
