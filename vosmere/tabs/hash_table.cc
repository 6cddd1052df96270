// The hash table: buckets, which make the order of an iteration, and beside them an index, which
// finds the entries. New entries are put at the front of a bucket.
#include "vosmere/tabs/hash_table.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tabs/internal/hash_index.h"

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
    : bucketCount_(std::max(bucketCount, 1)), cursorBucket_(bucketCount_) {
  auto index = std::make_unique<HashIndex>();
  buckets_ = new CHashData* [bucketCount_] {};
  index_ = index.release();
}

CHashtable::~CHashtable() {
  RemoveAll();
  delete index_;
  delete[] buckets_;
}

bool CHashtable::Put(const WChar* key, const WChar* value, bool overwrite) {
  if (!key) return false;
  if (CHashData* const entry = Find(key)) {
    if (overwrite) entry->value.AssignOrNull(value);
    return false;
  }
  return UnlessLost(false, [=, this] {
    auto entry = std::make_unique<CHashData>(key, value);
    index_->Reserve();
    index_->Add(entry.get());
    CHashData*& bucket = buckets_[HashString(key)];
    if (bucket) bucket->previous_ = entry.get();
    entry->next = bucket;
    bucket = entry.release();
    ++totalItems_;
    return true;
  });
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
  index_->Remove(entry);
  (entry->previous_ ? entry->previous_->next : buckets_[HashString(key)]) = entry->next;
  if (entry->next) entry->next->previous_ = entry->previous_;
  delete entry;
  --totalItems_;
  return true;
}

void CHashtable::RemoveAll() {
  for (LONG bucket = 0; bucket < bucketCount_; ++bucket)
    for (CHashData* entry = std::exchange(buckets_[bucket], nullptr); entry;)
      delete std::exchange(entry, entry->next);
  index_->Clear();
  totalItems_ = 0;
  Seek(bucketCount_);
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
  return hash % bucketCount_;
}

CHashData* CHashtable::Find(const WChar* key) const {
  return key ? index_->Find(WideView(key)) : nullptr;
}

/// Goes to the first entry of `bucket` or, if that is empty, of the next bucket that is not.
void CHashtable::Seek(int bucket) {
  while (bucket < bucketCount_ && !buckets_[bucket]) ++bucket;
  cursorBucket_ = bucket;
  cursorEntry_ = bucket < bucketCount_ ? buckets_[bucket] : nullptr;
}

void CHashtable::Step() {
  if (cursorEntry_->next)
    cursorEntry_ = cursorEntry_->next;
  else
    Seek(cursorBucket_ + 1);
}

}  // namespace vosmere
