// A hash table from texts to texts.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

class HashIndex;

/// One entry of a CHashtable: copies of key and value, and the next entry of the same bucket.
struct VOSMERE_API CHashData {
  SystemText key;    ///< never null
  SystemText value;  ///< may be null
  CHashData* next = nullptr;

  /// Throws std::bad_alloc when memory runs out.
  CHashData(const WChar* entryKey, const WChar* entryValue) : key(entryKey), value(entryValue) {}

  WideView Key() const { return {key.get(), SysStringLen(key.get())}; }

 private:
  friend class CHashtable;
  CHashData* previous_ = nullptr;  // of the same bucket
};

/// A hash table from texts to texts. Keys are case-sensitive. Keys and values are copied when they
/// are stored, and copied again when they are returned: the caller frees those copies with
/// SysFreeString. Values may be null; there is never an entry for a null key. Not thread-safe.
///
/// Callers may rely on this: HashString gives the bucket of a key, and an iteration visits the
/// buckets in order and the entries of a bucket from the newest to the oldest. Neither the hash
/// function nor the number of buckets ever changes. Finding, adding and removing an entry takes
/// constant time however many entries its bucket has, also when somebody has chosen the keys for
/// that: an index with a hash of its own finds the entry.
class VOSMERE_API CHashtable {
 public:
  /// `bucketCount` below 1 is treated as 1. Throws std::bad_alloc when memory runs out.
  explicit CHashtable(int bucketCount = 23);
  CHashtable(const CHashtable&) = delete;
  CHashtable& operator=(const CHashtable&) = delete;
  virtual ~CHashtable();

  /// Returns true when the key was added. If the key exists, returns false and replaces the value
  /// only if `overwrite` is true. When memory runs out, returns false, nothing changes, and
  /// LostTexts counts it.
  bool Put(const WChar* key, const WChar* value, bool overwrite);
  /// Stores a copy of the value, which is null for a null value. Returns false and stores null for
  /// an unknown key, and when memory runs out, which LostTexts counts.
  bool Get(const WChar* key, WChar** value) const;
  bool Contains(const WChar* key) const { return Find(key) != nullptr; }
  /// Returns true when the key existed. If the iteration is at this entry, it continues with the
  /// next one.
  bool Remove(const WChar* key);
  /// Removes all entries and ends the iteration.
  void RemoveAll();
  int GetTotalItems() const { return totalItems_; }

  /// Starts the iteration over all entries. Every table has one; before the first call of
  /// ResetPosition it is at its end. Entries added during the iteration may or may not be visited.
  void ResetPosition();
  /// False at the end of the iteration.
  bool HasNext() const { return cursorEntry_ != nullptr; }
  /// Stores copies of the current key and value, each unless its pointer is null, and goes to the
  /// next entry. Returns false and stores null at the end, and when memory runs out; in the latter
  /// case LostTexts counts it and the iteration stays at the entry.
  bool GetNextKeyValue(WChar** key, WChar** value);

 protected:
  /// The index of a key's bucket: starting from h = 0, h = (h >> 2) + unit for each code unit; then
  /// h modulo the number of buckets.
  int HashString(const WChar* key) const;
  /// The entry of a key; null when there is none, and for a null key.
  CHashData* Find(const WChar* key) const;

 private:
  void Seek(int bucket);
  void Step();

  CHashData** buckets_;
  LONG bucketCount_;
  HashIndex* index_;  // finds the entries; the buckets make their order
  LONG totalItems_ = 0;
  LONG cursorBucket_;
  CHashData* cursorEntry_ = nullptr;
};

}  // namespace vosmere
