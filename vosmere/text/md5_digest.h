// The MD5 message digest.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// Computes the MD5 message digest of RFC 1321. A copy has the whole state of a digest in progress.
/// Not thread-safe.
class VOSMERE_API CMD5Digest {
 public:
  CMD5Digest() { Init(); }
  CMD5Digest(const CMD5Digest&) = default;
  CMD5Digest& operator=(const CMD5Digest&) = default;
  virtual ~CMD5Digest();

  /// Starts a new message.
  void Init();
  /// Adds `length` bytes to the message. `input` may be null if `length` is 0.
  void Update(const unsigned char* input, unsigned length);
  /// Writes the 16 bytes of the digest and overwrites the whole state with zeros.
  /// Intended: the object is not ready for another message then; call Init first.
  void Final(unsigned char* digest);

  /// Computes the digest of one text. If `length` is -1 or any other negative number, the text is
  /// null-terminated; a null pointer is treated as the empty text. Writes 17 bytes to `digest`: the
  /// 16 of the digest and a null byte. May be called again without Init.
  void MD5String(unsigned char* digest, const char* text, int length);

 protected:
  /// Processes one block of 64 bytes.
  static void MD5Transform(ULONG (&state)[4], const unsigned char* block);
  /// Convert 32-bit words to bytes and back, little-endian. `length` is in bytes and a multiple of
  /// 4.
  static void Encode(unsigned char* output, const ULONG* input, unsigned length);
  static void Decode(ULONG* output, const unsigned char* input, unsigned length);
  static void MD5_memcpy(unsigned char* output, const unsigned char* input, unsigned length);
  static void MD5_memset(unsigned char* output, int value, unsigned length);

  ULONG state_[4];
  ULONG count_[2];  ///< length of the message in bits, low word first
  unsigned char buffer_[64];
};

}  // namespace vosmere
