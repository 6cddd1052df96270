// Any bytes and any code units convert: as much as was announced, into exactly that room, and what
// was converted once converts back to itself. The first byte chooses a code page.
#include <cstring>
#include <iterator>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/posix/utf8.h"
#include "vosmere/platform/posix/utf8_avx2.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

std::vector<char> Encoded(const std::vector<WChar>& text) {
  const std::size_t size = utf8::EncodedLength(text.data(), text.size());
  std::vector<char> bytes(size);
  Require(utf8::Encode(text.data(), text.size(), bytes.data(), size) == size);
  Require(size == 0 ||
          utf8::Encode(text.data(), text.size(), bytes.data(), size - 1) == utf8::kNoRoom);
  utf8::Encode(text.data(), text.size(), bytes.data(), size);
  return bytes;
}

std::vector<WChar> Decoded(const std::vector<char>& bytes) {
  const std::size_t size = utf8::DecodedLength(bytes.data(), bytes.size());
  std::vector<WChar> text(size);
  Require(utf8::Decode(bytes.data(), bytes.size(), text.data(), size) == size);
  return text;
}

void CheckUtf8(const std::vector<char>& bytes, const std::vector<WChar>& units) {
  const std::vector<WChar> text = Decoded(bytes);
  Require(Decoded(Encoded(text)) == text);
  const std::vector<char> encoded = Encoded(units);
  Require(Encoded(Decoded(encoded)) == encoded);
#if defined(__x86_64__)
  const bool used = utf8::avx2::isUsed;
  utf8::avx2::isUsed = false;
  Require(Decoded(bytes) == text && Encoded(units) == encoded);
  utf8::avx2::isUsed = used;
#endif
}

void CheckCodePage(unsigned codePage, const std::vector<char>& bytes,
                   const std::vector<WChar>& units) {
  const int length = static_cast<int>(bytes.size()), count = static_cast<int>(units.size());
  const int size = BytesToWide(codePage, bytes.data(), length, nullptr, 0);
  std::vector<WChar> text(static_cast<std::size_t>(size));
  Require(BytesToWide(codePage, bytes.data(), length, text.data(), size) == size);
  const int back = WideToBytes(codePage, units.data(), count, nullptr, 0);
  std::vector<char> written(static_cast<std::size_t>(back));
  Require(WideToBytes(codePage, units.data(), count, written.data(), back) == back);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::vector<char> bytes(data + 1, data + size);
  std::vector<WChar> units(bytes.size() / sizeof(WChar));
  if (!units.empty()) std::memcpy(units.data(), bytes.data(), units.size() * sizeof(WChar));
  CheckUtf8(bytes, units);
  constexpr unsigned kCodePages[] = {kCodePageSystem, kCodePageUtf8, 1252, 932,  936,
                                     54936,           50220,         1255, 65000};
  CheckCodePage(kCodePages[data[0] % std::size(kCodePages)], bytes, units);
  return 0;
}
