// Benchmarks of text conversions, compared with ICU, and of MD5, compared with OpenSSL.
#define UCHAR_TYPE unsigned short
#include <benchmark/benchmark.h>
#include <openssl/evp.h>
#include <unicode/ustring.h>

#include <random>
#include <string>
#include <vector>

#include "vosmere/base/system_string.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/text/md5_digest.h"
#include "vosmere/text/unicode_tool.h"

namespace vosmere::bench {
namespace {

constexpr const char* kKinds[] = {"ascii", "accents", "cyrillic",  "cjk",
                                  "emoji", "mixed",   "ill-formed"};

struct Text {
  std::vector<WChar> units;
  std::string utf8;

  int size() const { return static_cast<int>(units.size()); }
  int bytes() const { return static_cast<int>(utf8.size()); }
};

unsigned NextCode(const std::string& kind, std::minstd_rand& random, std::size_t position) {
  const unsigned r = random() >> 4;
  if (kind == "cyrillic") return r % 7 ? 0x430 + r % 32 : ' ';
  if (kind == "cjk") return 0x4E00 + r % 0x5000;
  if (kind == "emoji") return 0x1F600 + r % 64;
  if (kind == "ill-formed") return r % 6 ? 0xD800 + r % 0x800 : 'a';
  if (kind == "mixed") return NextCode(kKinds[r % 5], random, position);
  return kind == "accents" && position % 40 == 20 ? 0xE9 : 'a' + r % 26;
}

Text MakeText(const std::string& kind, std::size_t length) {
  std::minstd_rand random(1);
  Text text;
  while (text.units.size() < length) {
    const unsigned code = NextCode(kind, random, text.units.size());
    if (code >= 0x10000) text.units.push_back(static_cast<WChar>(0xD7C0 + (code >> 10)));
    text.units.push_back(static_cast<WChar>(code < 0x10000 ? code : 0xDC00 | (code & 0x3FF)));
  }
  text.utf8.resize(3 * text.units.size());
  text.utf8.resize(
      WideToBytes(kCodePageUtf8, text.units.data(), text.size(), text.utf8.data(), text.bytes()));
  if (kind == "ill-formed")
    for (char& byte : text.utf8)
      if (random() % 4 == 0) byte = static_cast<char>(random());
  return text;
}

int IcuToUtf8(const Text& text, char* out, int capacity) {
  UErrorCode error = U_ZERO_ERROR;
  int32_t length = 0;
  u_strToUTF8WithSub(out, capacity, &length, text.units.data(), text.size(), 0xFFFD, nullptr,
                     &error);
  return length;
}

int IcuFromUtf8(const Text& text, WChar* out, int capacity) {
  UErrorCode error = U_ZERO_ERROR;
  int32_t length = 0;
  u_strFromUTF8WithSub(out, capacity, &length, text.utf8.data(), text.bytes(), 0xFFFD, nullptr,
                       &error);
  return length;
}

template <class Step>
void Measure(const std::string& name, Step step) {
  benchmark::RegisterBenchmark(name.c_str(), [step](benchmark::State& state) mutable {
    for (auto _ : state) {
      step();
      benchmark::ClobberMemory();
    }
  })->MinTime(0.02);
}

/// Conversions into memory that was allocated before.
void MeasureConversions(const std::string& name, const Text& text) {
  std::vector<char> bytes(3 * text.units.size());
  const int capacity = static_cast<int>(bytes.size());
  Measure("ToUtf8/" + name + "/vosmere", [=]() mutable {
    benchmark::DoNotOptimize(
        WideToBytes(kCodePageUtf8, text.units.data(), text.size(), bytes.data(), capacity));
  });
  Measure("ToUtf8/" + name + "/icu",
          [=]() mutable { benchmark::DoNotOptimize(IcuToUtf8(text, bytes.data(), capacity)); });

  std::vector<WChar> units(text.utf8.size());
  Measure("FromUtf8/" + name + "/vosmere", [=]() mutable {
    benchmark::DoNotOptimize(
        BytesToWide(kCodePageUtf8, text.utf8.data(), text.bytes(), units.data(), text.bytes()));
  });
  Measure("FromUtf8/" + name + "/icu", [=]() mutable {
    benchmark::DoNotOptimize(IcuFromUtf8(text, units.data(), text.bytes()));
  });
}

/// Conversions into new memory. The peer gets the largest size that could be needed, so that it
/// does not have to compute the length first.
void MeasureNewTexts(const std::string& name, const Text& text) {
  BSTR const source = SysAllocStringLen(text.units.data(), text.units.size());
  Measure("BSTRGetUTF8/" + name + "/vosmere", [=] {
    char* bytes = nullptr;
    int length = 0;
    CUnicodeTool::BSTRGetUTF8(source, &bytes, &length);
    benchmark::DoNotOptimize(bytes);
    CUnicodeTool::DeleteBuffer(bytes);
  });
  Measure("BSTRGetUTF8/" + name + "/icu", [=] {
    char* const bytes = new char[3 * text.units.size() + 1];
    benchmark::DoNotOptimize(IcuToUtf8(text, bytes, 3 * text.size() + 1));
    delete[] bytes;
  });
  Measure("UTF8GetBSTR/" + name + "/vosmere", [=] {
    BSTR units = nullptr;
    CUnicodeTool::UTF8GetBSTR(&units, text.utf8.data(), text.bytes());
    benchmark::DoNotOptimize(units);
    SysFreeString(units);
  });
  Measure("UTF8GetBSTR/" + name + "/icu", [=] {
    WChar* const units = new WChar[text.utf8.size() + 1];
    benchmark::DoNotOptimize(IcuFromUtf8(text, units, text.bytes() + 1));
    delete[] units;
  });
}

void MeasureDigest(const std::string& name, unsigned size) {
  const std::vector<unsigned char> data(size, 'x');
  Measure("Md5/" + name + "/vosmere", [=] {
    unsigned char digest[16];
    CMD5Digest md5;
    md5.Update(data.data(), size);
    md5.Final(digest);
    benchmark::DoNotOptimize(digest);
  });
  Measure("Md5/" + name + "/openssl", [=] {
    unsigned char digest[EVP_MAX_MD_SIZE];
    EVP_Digest(data.data(), size, digest, nullptr, EVP_md5(), nullptr);
    benchmark::DoNotOptimize(digest);
  });
}

[[maybe_unused]] const bool registered = [] {
  for (const char* const kind : kKinds)
    for (const int length : {8, 50, 1000}) {
      const std::string name = std::string(kind) + "/" + std::to_string(length);
      const Text text = MakeText(kind, length);
      MeasureConversions(name, text);
      if (length == 1000) MeasureNewTexts(name, text);
    }
  MeasureDigest("64KiB", 64 * 1024);
  MeasureDigest("64 bytes", 64);
  return true;
}();

}  // namespace
}  // namespace vosmere::bench
