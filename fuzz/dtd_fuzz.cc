// A document type with generated declarations before any content: what loads without it loads the
// same with it or is refused, and nothing takes memory out of proportion. The content follows the
// first zero byte; the bytes before it choose the declarations.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "tests/support/xml_trees.h"

using namespace vosmere::test;

namespace {

/// The most bytes that a tree may show for a small document.
constexpr std::size_t kMost = std::size_t{64} << 20;

class Declarations {
 public:
  Declarations(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

  std::string Text() {
    std::string text = "<!DOCTYPE a [";
    while (data_ < end_ && text.size() < 100'000) text += Next();
    return text + "]>";
  }

 private:
  unsigned Take(unsigned bound) { return data_ < end_ ? *data_++ % bound : 0; }

  std::string Next() {
    const std::string name = "e" + std::to_string(Take(8));
    switch (Take(8)) {
      case 0: return "<!ENTITY " + name + " '" + std::string(Take(256) * 16, 'x') + "'>";
      case 1: return "<!ENTITY " + name + " '" + Times("&e" + Digit() + ";") + "'>";
      case 2: return "<!ENTITY % " + name + " '" + Times("&#37;e" + Digit() + ";") + "'>";
      case 3: return "<!ENTITY % " + name + " '<!ENTITY e" + Digit() + " \"&e" + Digit() + ";\">'>";
      case 4: return Times("%" + name + ";");
      case 5: return "<!ELEMENT " + name + " (" + Times("(b|c)*,") + "d)>";
      case 6: return "<!ENTITY " + name + " '<i k=\"&e" + Digit() + ";\"/>'>";
      default: return "<!--" + name + "--><?p?>\n";
    }
  }
  std::string Digit() { return std::to_string(Take(8)); }
  std::string Times(const std::string& part) {
    std::string all;
    for (unsigned i = Take(200); i > 0; --i) all += part;
    return all;
  }

  const std::uint8_t* data_;
  const std::uint8_t* end_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::uint8_t* const zero = std::find(data, data + size, 0);
  std::string content;
  if (zero != data + size) content.assign(zero + 1, data + size);
  const std::string type = Declarations(data, static_cast<std::size_t>(zero - data)).Text();
  const auto without = ByTheParser(content), with = ByTheParser(type + content);
  if (without && with && without != with) std::abort();
  if (with && with->size() > kMost) std::abort();
  return 0;
}
