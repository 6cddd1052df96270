#pragma once

#include <vector>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"

namespace vosmere {

/// One entry of a CHashtable: copies of its key and value, and the next entry of the same bucket.
struct VOSMERE_API CHashData {
  SystemText key;    ///< never null
  SystemText value;  ///< may be null
  CHashData* next = nullptr;

  /// Throws std::bad_alloc.
  CHashData(const WChar* entryKey, const WChar* entryValue) : key(entryKey), value(entryValue) {}
};

/// A table of texts by text. Keys compare exactly, letter case included; values may be null. Texts
/// are copied, both ways: what is handed out is freed by the caller with SysFreeString. A null key
/// is in no table.
///
/// What callers may build on: HashString gives a key's bucket, a walk goes through the buckets in
/// order and within a bucket from the newest entry to the oldest, and neither the hash nor the
/// number of buckets ever changes, however many entries there are. Finding a key takes time in
/// proportion to the entries of its bucket. The hash sees little but the last eight units of a key,
/// so whoever chooses the keys can put them all into one bucket: no table for keys of strangers
/// without a bound on their number.
class VOSMERE_API CHashtable {
 public:
  /// The number of buckets; one for a number below 1. Throws std::bad_alloc.
  explicit CHashtable(int bucketCount = 23);
  CHashtable(const CHashtable&) = delete;
  CHashtable& operator=(const CHashtable&) = delete;
  virtual ~CHashtable();

  /// True when the key was added. False when it is there already, and then its value is replaced
  /// exactly when `overwrite`; false also when memory runs out, and then nothing changes and
  /// LostTexts counts it.
  bool Put(const WChar* key, const WChar* value, bool overwrite);
  /// Stores a copy of the value, which may be null. False, with null stored, for a missing key and
  /// when memory runs out, which LostTexts counts.
  bool Get(const WChar* key, WChar** value) const;
  bool Contains(const WChar* key) const { return Find(key) != nullptr; }
  /// True when the key was there. A walk that stands on it goes on with the next.
  bool Remove(const WChar* key);
  /// Removes every entry. A walk is over.
  void RemoveAll();
  int GetTotalItems() const { return totalItems_; }

  /// The walk over all entries, one for each table, over until the first ResetPosition. Entries
  /// that are added meanwhile may or may not come up.
  void ResetPosition();
  bool HasNext() const { return cursorEntry_ != nullptr; }
  /// Stores copies of the next key and value through the pointers that are not null, and steps on.
  /// False, with null stored, when the walk is over; also when memory runs out, which LostTexts
  /// counts, and then the walk stays where it is.
  bool GetNextKeyValue(WChar** key, WChar** value);

 protected:
  /// The bucket of a key: over its units, h = (h >> 2) + unit; then the remainder by the number of
  /// buckets.
  int HashString(const WChar* key) const;
  /// The entry of a key, or null.
  CHashData* Find(const WChar* key) const;

 private:
  int BucketCount() const { return static_cast<int>(buckets_.size()); }
  void Seek(int bucket);
  void Step();

  std::vector<CHashData*> buckets_;
  LONG totalItems_ = 0;
  LONG cursorBucket_;
  CHashData* cursorEntry_ = nullptr;
};

}  // namespace vosmere
