// The hash table: a vector of singly linked buckets. New entries are put at the front of a bucket.
#include "vosmere/tabs/hash_table.h"

#include <algorithm>

#include "vosmere/base/internal/no_memory.h"

namespace vosmere {
namespace {

/// Stores a copy; null for a null text. Returns false when memory runs out.
bool CopyOut(const SystemText& text, WChar** out) {
  *out = SysAllocString(text.get());
  const bool lost = !*out && text.get();
  if (lost) detail::CountLostText();
  return !lost;
}

}  // namespace

CHashtable::CHashtable(int bucketCount)
    : buckets_(std::max(bucketCount, 1)), cursorBucket_(BucketCount()) {}

CHashtable::~CHashtable() {
  RemoveAll();
}

bool CHashtable::Put(const WChar* key, const WChar* value, bool overwrite) {
  if (!key) return false;
  if (CHashData* const entry = Find(key)) {
    if (overwrite) entry->value.AssignOrNull(value);
    return false;
  }
  CHashData* const entry =
      UnlessLost(static_cast<CHashData*>(nullptr), [=] { return new CHashData(key, value); });
  if (!entry) return false;
  CHashData*& bucket = buckets_[HashString(key)];
  entry->next = std::exchange(bucket, entry);
  ++totalItems_;
  return true;
}

bool CHashtable::Get(const WChar* key, WChar** value) const {
  *value = nullptr;
  const CHashData* const entry = Find(key);
  return entry && CopyOut(entry->value, value);
}

bool CHashtable::Remove(const WChar* key) {
  CHashData* const entry = Find(key);
  if (!entry) return false;
  // The iteration must not stay at an entry that is about to be freed.
  if (entry == cursorEntry_) Step();
  CHashData** link = &buckets_[HashString(key)];
  while (*link != entry) link = &(*link)->next;
  *link = entry->next;
  delete entry;
  --totalItems_;
  return true;
}

void CHashtable::RemoveAll() {
  for (CHashData*& bucket : buckets_)
    while (bucket) delete std::exchange(bucket, bucket->next);
  totalItems_ = 0;
  Seek(BucketCount());
}

void CHashtable::ResetPosition() {
  Seek(0);
}

bool CHashtable::GetNextKeyValue(WChar** key, WChar** value) {
  if (key) *key = nullptr;
  if (value) *value = nullptr;
  if (!cursorEntry_) return false;
  if (key && !CopyOut(cursorEntry_->key, key)) return false;
  if (value && !CopyOut(cursorEntry_->value, value)) {
    // The caller gets both or neither.
    if (key) SysFreeString(std::exchange(*key, nullptr));
    return false;
  }
  Step();
  return true;
}

int CHashtable::HashString(const WChar* key) const {
  LONG hash = 0;  // never negative, and below twice the largest code unit
  for (const WChar unit : WideView(key)) hash = (hash >> 2) + unit;
  return hash % BucketCount();
}

CHashData* CHashtable::Find(const WChar* key) const {
  if (!key) return nullptr;
  const WideView wanted(key);
  CHashData* entry = buckets_[HashString(key)];
  // The length of a stored key is in its prefix, so keys of another length are rejected at once.
  while (entry && !(WideView(entry->key.get(), SysStringLen(entry->key.get())) == wanted))
    entry = entry->next;
  return entry;
}

/// Goes to the first entry of `bucket` or, if that is empty, of the next bucket that is not.
void CHashtable::Seek(int bucket) {
  while (bucket < BucketCount() && !buckets_[bucket]) ++bucket;
  cursorBucket_ = bucket;
  cursorEntry_ = bucket < BucketCount() ? buckets_[bucket] : nullptr;
}

void CHashtable::Step() {
  if (cursorEntry_->next)
    cursorEntry_ = cursorEntry_->next;
  else
    Seek(cursorBucket_ + 1);
}

}  // namespace vosmere
