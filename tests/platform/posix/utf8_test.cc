#include <random>

#include "tests/support/test.h"
#include "vosmere/platform/posix/utf8.h"
#include "vosmere/platform/posix/utf8_avx2.h"

namespace vosmere::test::utf8_blocks {

struct Converted {
  std::vector<char> bytes;
  std::vector<WChar> units;
  bool operator==(const Converted&) const = default;
};

/// The text in UTF-8, and back again after some bytes of that were changed.
Converted Convert(const std::vector<WChar>& text, std::mt19937 random) {
  Converted result;
  result.bytes.resize(utf8::EncodedLength(text.data(), text.size()));
  const std::size_t size = result.bytes.size();
  EXPECT_EQ(utf8::Encode(text.data(), text.size(), result.bytes.data(), size), size);
  std::vector<char> changed = result.bytes;
  for (std::size_t faults = size ? random() % 4 : 0; faults > 0; --faults)
    changed[random() % size] = static_cast<char>(random());
  result.units.resize(utf8::DecodedLength(changed.data(), size));
  EXPECT_EQ(utf8::Decode(changed.data(), size, result.units.data(), result.units.size()),
            result.units.size());
  return result;
}

#if defined(__x86_64__)
TEST(Utf8, OlderProcessorsConvertTheSame) {
  if (!utf8::avx2::isUsed) GTEST_SKIP() << "this is one of them";
  std::mt19937 random(3);
  for (int round = 0; round < 5000 && !testing::Test::HasFailure(); ++round) {
    std::vector<WChar> text(random() % 2 * (random() % 200));  // ASCII at the start
    for (WChar& unit : text) unit = static_cast<WChar>(random() % 0x80);
    for (std::size_t runs = random() % 6; runs > 0; --runs) {
      const WChar pieces[] = {'a', 0x80, 0x7FF, 0x800, 0xD83D, 0xDE00, 0xFFFF, 0x4E2D};
      const WChar first = pieces[random() % 8], second = pieces[random() % 8];
      for (std::size_t times = random() % 30; times > 0; --times)
        text.insert(text.end(), {first, second});
    }
    utf8::avx2::isUsed = false;
    const Converted plain = Convert(text, random);
    utf8::avx2::isUsed = true;
    EXPECT_EQ(Convert(text, random), plain);
  }
}
#endif

}  // namespace vosmere::test::utf8_blocks
