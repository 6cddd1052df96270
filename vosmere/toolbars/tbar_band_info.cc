// The list of toolbar bands, and the texts of fixed size in its records.
#include "vosmere/toolbars/tbar_band_info.h"

#include <memory>
#include <new>

#include "vosmere/base/chain.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {
namespace {

template <std::size_t N>
void CutToFit(WChar (&field)[N], const WChar* text) {
  const WideView whole(text);
  const WideView part = FirstWhole(whole, N - 1);
  if (part.size < whole.size) detail::CountCutText();
  // memmove, because the text may be the field itself.
  if (!part.empty()) std::memmove(field, part.data, part.size * sizeof(WChar));
  field[part.size] = 0;
}

}  // namespace

void TBARBANDINFO::SetClsid(const WChar* text) {
  CutToFit(clsid, text);
}

void TBARBANDINFO::SetTitle(const WChar* text) {
  CutToFit(title, text);
}

CTBarBandInfo::~CTBarBandInfo() {
  for (TList<TBARBANDINFO*>* cell : chain::Cells(head_)) {
    delete cell->data;
    delete cell;
  }
}

TBARBANDINFO* CTBarBandInfo::AddBandInfoCopy(const TBARBANDINFO* band) {
  std::unique_ptr<TBARBANDINFO> copy(new (std::nothrow) TBARBANDINFO(*band));
  auto* const cell = copy ? TList<TBARBANDINFO*>::New(copy.get()) : nullptr;
  if (!cell) return nullptr;
  // The copy is complete before the lock is taken, which is thus held only briefly.
  const SynchGuard guard(*this);
  chain::Append(head_, cell);
  return copy.release();
}

}  // namespace vosmere
