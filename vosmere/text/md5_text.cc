// MD5 digests of the UTF-8 form of a text.
#include "vosmere/text/md5_text.h"

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/text/md5_digest.h"

namespace vosmere {
namespace {

/// Converts the text piece by piece on the stack, so that memory cannot run out: the interface has
/// no way to report it.
void Digest(WideView text, unsigned char (&digest)[16]) {
  CMD5Digest md5;
  while (!text.empty()) {
    char bytes[3 * 512];
    const WideView piece = FirstWhole(text, 512);  // each half of a character would become U+FFFD
    const int length =
        WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(piece.size), bytes, sizeof bytes);
    md5.Update(reinterpret_cast<const unsigned char*>(bytes), length);
    text = text.From(piece.size);
  }
  md5.Final(digest);
}

bool WriteDigest(const WChar* source, const char* digits, WChar* out) {
  unsigned char digest[16];
  Digest(WideView(source), digest);
  for (const unsigned char byte : digest) {
    *out++ = static_cast<unsigned char>(digits[byte >> 4]);
    *out++ = static_cast<unsigned char>(digits[byte & 0x0F]);
  }
  *out = 0;
  return true;
}

}  // namespace

CEncodingTool::~CEncodingTool() = default;

bool CEncodingTool::GetWideCharMD5(const WChar* source, WChar* digest) {
  return WriteDigest(source, "0123456789ABCDEF", digest);
}

bool CEncodingTool::GetWideCharLowerMD5(const WChar* source, WChar* digest) {
  return WriteDigest(source, "0123456789abcdef", digest);
}

}  // namespace vosmere
