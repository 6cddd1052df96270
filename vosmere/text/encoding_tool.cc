#include "vosmere/text/encoding_tool.h"

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/code_page.h"
#include "vosmere/text/md5_digest.h"

namespace vosmere {
namespace {

constexpr int kDigestBytes = 16;

/// Digests piece by piece, so that no text is too long for the memory there is.
void Digest(WideView text, unsigned char (&digest)[kDigestBytes]) {
  constexpr std::size_t kPiece = 512;
  unsigned char bytes[kPiece * 3];
  CMD5Digest md5;
  while (!text.empty()) {
    WideView piece = text.First(kPiece);
    const bool partsPair = piece.size < text.size && (piece[piece.size - 1] & 0xFC00) == 0xD800;
    if (partsPair) --piece.size;
    md5.Update(bytes, WideToBytes(kCodePageUtf8, piece.data, static_cast<int>(piece.size),
                                  reinterpret_cast<char*>(bytes), sizeof bytes));
    text = text.From(piece.size);
  }
  md5.Final(digest);
}

bool HexDigest(const WChar* source, WChar* text, const char* digits) {
  unsigned char digest[kDigestBytes];
  Digest(WideView(source), digest);
  for (const unsigned char byte : digest) {
    *text++ = static_cast<WChar>(digits[byte >> 4]);
    *text++ = static_cast<WChar>(digits[byte & 15]);
  }
  *text = 0;
  return true;
}

}  // namespace

CEncodingTool::~CEncodingTool() = default;

bool CEncodingTool::GetWideCharMD5(const WChar* source, WChar* digest) {
  return HexDigest(source, digest, "0123456789ABCDEF");
}

bool CEncodingTool::GetWideCharLowerMD5(const WChar* source, WChar* digest) {
  return HexDigest(source, digest, "0123456789abcdef");
}

}  // namespace vosmere
