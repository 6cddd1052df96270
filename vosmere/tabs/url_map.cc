// Groups of web pages that have the same address.
#include "vosmere/tabs/url_map.h"

#include <memory>
#include <unordered_map>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/tree/url_node.h"

namespace vosmere {
namespace {

bool IsShortEnough(const WChar* url) {
  return url && WideLength(url) < CUrlNode::kTextLimit;
}

}  // namespace

/// The cell of each page, for removing pages from a long list.
class CUrlMapItem::PageIndex {
 public:
  /// False when the page is there already: this would not know all cells. Throws std::bad_alloc.
  bool Add(PageList* cell) { return cells_.emplace(cell->data, cell).second; }
  /// Null when the page has no cell. The cell is then no longer known here.
  PageList* Take(const CBaseNode* page) {
    const auto node = cells_.extract(page);
    return node ? node.mapped() : nullptr;
  }
  int size() const { return static_cast<int>(cells_.size()); }

 private:
  std::unordered_map<const CBaseNode*, PageList*> cells_;
};

CUrlMapItem::~CUrlMapItem() {
  delete index_;
  list::Delete(pages_, [](CBaseNode*) {});
}

CUrlMapItem* CUrlMapItem::New(const WChar* url, CUrlNode* page) {
  return NullIfNoMemory([=] {
    std::unique_ptr<CUrlMapItem> item(new CUrlMapItem);
    item->url_ = HeapText(IsShortEnough(url) ? url : nullptr);
    return item->AddUrlNode(page) ? item.release() : nullptr;
  });
}

void CUrlMapItem::Delete(CUrlMapItem* item) {
  delete item;
}

void CUrlMapItem::ResetHead(PageList* pages) {
  pages_ = pages;
  delete std::exchange(index_, nullptr);
}

bool CUrlMapItem::AddUrlNode(CUrlNode* page) {
  PageList* const cell = list::Append(pages_, page);
  if (cell && index_ && !UnlessNoMemory(false, [=, this] { return index_->Add(cell); }))
    delete std::exchange(index_, nullptr);
  return cell != nullptr;
}

/// An index of the whole list; null when the list is short, has a page twice, or memory runs out.
CUrlMapItem::PageIndex* CUrlMapItem::FreshIndex() {
  constexpr int kShortList = 16;
  if (index_) return index_;
  if (GetNumberUrlNodes() <= kShortList) return nullptr;
  return index_ = NullIfNoMemory([this]() -> PageIndex* {
           auto index = std::make_unique<PageIndex>();
           for (PageList* cell = pages_; cell; cell = cell->next)
             if (!index->Add(cell)) return nullptr;
           return index.release();
         });
}

int CUrlMapItem::DeleteUrlNode(CUrlNode* page) {
  if (PageIndex* const index = FreshIndex()) {
    if (PageList* const cell = index->Take(page)) {
      chain::Unlink(pages_, cell);
      delete cell;
    }
    return index->size();
  }
  const int count = GetNumberUrlNodes();
  return list::Remove(pages_, page) ? count - 1 : count;
}

int CUrlMapItem::GetNumberUrlNodes() const {
  int count = 0;
  for (const PageList* cell = pages_; cell; cell = cell->next) ++count;
  return count;
}

void CUrlMapItem::ModifyURL(const WChar* url) {
  if (!IsShortEnough(url)) return;
  HeapText copy;  // `url` may be one of the texts that are about to be replaced
  copy.AssignOrNull(url);
  if (!copy.get()) return;
  for (PageList* cell : chain::Cells(pages_))
    static_cast<CUrlNode*>(cell->data)->SetUrl(copy.get());
  url_ = std::move(copy);
}

}  // namespace vosmere
