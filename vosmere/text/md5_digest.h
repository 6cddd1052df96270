#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The MD5 message digest of RFC 1321. Copies carry the whole state of a digest in progress.
class VOSMERE_API CMD5Digest {
 public:
  CMD5Digest() { Init(); }
  CMD5Digest(const CMD5Digest&) = default;
  CMD5Digest& operator=(const CMD5Digest&) = default;
  virtual ~CMD5Digest();

  /// Begins a message.
  void Init();
  /// Adds bytes to it. Null is allowed with a length of 0.
  void Update(const unsigned char* input, unsigned length);
  /// Writes the 16 bytes of the digest and clears everything to zero.
  /// Intended: the object is not ready for another message; that takes Init first.
  void Final(unsigned char* digest);

  /// Digests one text. A `length` of -1, as any below 0, stops at the first zero byte; null counts
  /// as empty. `digest` holds 17 bytes: the 16 of the digest and a zero.
  void MD5String(unsigned char* digest, const char* text, int length);

 protected:
  /// Digests one block of 64 bytes.
  static void MD5Transform(ULONG (&state)[4], const unsigned char* block);
  /// Words to bytes and back, low byte first; `length` in bytes, a multiple of 4.
  static void Encode(unsigned char* output, const ULONG* input, unsigned length);
  static void Decode(ULONG* output, const unsigned char* input, unsigned length);
  static void MD5_memcpy(unsigned char* output, const unsigned char* input, unsigned length);
  static void MD5_memset(unsigned char* output, int value, unsigned length);

  ULONG state_[4];
  ULONG count_[2];  ///< bits, low word first
  unsigned char buffer_[64];
};

}  // namespace vosmere
