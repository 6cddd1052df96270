// Any bytes: what the fast parser accepts, it reads exactly as libxml2 does.
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "tests/support/xml_trees.h"

using namespace vosmere::test;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view document(reinterpret_cast<const char*>(data), size);
  for (const char* const encoding : {static_cast<const char*>(nullptr), "UTF-8"}) {
    const auto parsed = ByTheParser(document, encoding);
    const auto shown = ByTheFastPath(document, encoding);
    if (shown && shown != parsed) std::abort();
  }
  return 0;
}
