// Any bytes: what the fast parser accepts, it reads exactly as libxml2 does; and a document that
// comes in pieces is the same as in one.
#include <algorithm>
#include <optional>
#include <string>

#include "fuzz/support.h"
#include "tests/support/xml_trees.h"

using namespace vosmere;
using namespace vosmere::fuzz;
using namespace vosmere::test;

namespace {

/// Delivers bytes in pieces of up to `most`.
class Pieces : public posix::MemorySource {
 public:
  Pieces(std::string_view bytes, int most) : MemorySource(bytes), most_(most) {}
  int Read(char* bytes, int capacity) override {
    return MemorySource::Read(bytes, std::min(capacity, most_));
  }

 private:
  int most_;
};

std::optional<std::string> InPieces(std::string_view document, int most) {
  posix::XmlTree tree;
  Pieces source(document, most);
  try {
    BuildXmlTree(tree, source, nullptr);
  } catch (const DocumentFailure&) {
    return {};
  }
  return Shown(tree);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view document = View(data, size);
  for (const char* const encoding : {static_cast<const char*>(nullptr), "UTF-8"}) {
    const auto parsed = ByTheParser(document, encoding);
    const auto shown = ByTheFastPath(document, encoding);
    Require(!shown || shown == parsed);
    if (!encoding && size > 0) Require(InPieces(document, data[size / 2] % 7 + 1) == parsed);
  }
  return 0;
}
