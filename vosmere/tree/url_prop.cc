// The property block of a web page, and its chain of tags.
#include "vosmere/tree/url_prop.h"

#include <unordered_set>

#include "vosmere/base/ascii.h"
#include "vosmere/base/chain.h"
#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/internal/text_hash.h"

namespace vosmere {
namespace {

/// Case-insensitive (ASCII) hash and equality of texts.
struct NoCase {
  std::size_t operator()(const WChar* text) const {
    std::size_t hash = kTextHashStart;
    for (; *text; ++text) hash = TextHashWith(hash, ascii::Fold(*text));
    return hash;
  }
  bool operator()(const WChar* a, const WChar* b) const { return SameTextNoCase(a, b); }
};

}  // namespace

CUrlProp::CUrlProp(CUrlProp* source)
    : fileType_(source->fileType_), fileExtension_(source->fileExtension_.get()) {
  for (TagList* tag : chain::Cells(source->tags_)) {
    TagList* const copy = CreateRBstrItem(tag->data);
    // The destructor does not run when a constructor throws.
    if (!copy) {
      DeleteTagsList(tags_);
      throw std::bad_alloc();
    }
    chain::Append(tags_, copy);
  }
}

CUrlProp::~CUrlProp() {
  DeleteTagsList(tags_);
}

CUrlProp::TagList* CUrlProp::DetachTagsHead() {
  return std::exchange(tags_, nullptr);
}

bool CUrlProp::HasTag(const WChar* tag) const {
  return tag &&
         chain::Find(tags_, [tag](TagList* cell) { return SameTextNoCase(cell->data, tag); });
}

CUrlProp::TagList* CUrlProp::CreateRBstrItem(const WChar* text) {
  return NullIfNoMemory([text] {
    SystemText copy(text);
    // The cell first: if it cannot be allocated, `copy` still owns the string.
    auto* const cell = new TagList(nullptr);
    cell->data = copy.Detach();
    return cell;
  });
}

void CUrlProp::DeleteOneRBstrItem(TagList* cell) {
  if (!cell) return;
  SysFreeString(cell->data);
  delete cell;
}

void CUrlProp::DeleteTagsList(TagList* head) {
  for (TagList* cell : chain::Cells(head)) DeleteOneRBstrItem(cell);
}

CUrlProp::TagList* CUrlProp::GenerateRBstrItemList(WChar* text) {
  TagList* tags = nullptr;
  try {
    // A set, because comparing each tag with all earlier ones would take quadratic time.
    std::unordered_set<const WChar*, NoCase, NoCase> seen;
    for (WChar* at = text; at && *at;) {
      while (IsSeparator(*at)) ++at;
      if (!*at) break;
      WChar* const token = at;
      while (*at && !IsSeparator(*at)) ++at;
      if (*at) *at++ = 0;
      if (!seen.insert(token).second) continue;
      TagList* const tag = CreateRBstrItem(token);
      if (!tag) throw std::bad_alloc();
      chain::Append(tags, tag);
    }
  } catch (const std::bad_alloc&) {
    detail::CountLostText();  // the tags so far are the result
  }
  return tags;
}

}  // namespace vosmere
