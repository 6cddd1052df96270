// Lists of collections in tests, written as their addresses with blanks between them.
//
//   ColctList list("x y x");
//   CRColctTool().DeleteDuplcateColct(list.head);
//   EXPECT_EQ(list.Urls(), "x y");
#pragma once

#include <sstream>
#include <string>

#include "tests/support/row.h"
#include "tests/support/wide.h"
#include "vosmere/base/chain.h"
#include "vosmere/collections/colct_item.h"
#include "vosmere/collections/colct_node.h"

namespace vosmere::test {

/// Owns the cells and the collections. A collection's identity is its address with "id-" before.
struct ColctList {
  explicit ColctList(const std::string& urls = "") {
    std::istringstream words(urls);
    for (std::string url; words >> url;) {
      CColctNode* const colct = CColctNode::New();
      colct->SetUrl(W(url));
      colct->SetUUID(W("id-" + url));
      chain::Append(head, RColctItem::New(colct));
    }
  }
  ColctList(const ColctList&) = delete;
  ColctList& operator=(const ColctList&) = delete;
  ~ColctList() { RColctItem::DeleteList(head); }

  RColctItem* operator[](const std::string& url) const {
    for (RColctItem* cell = head; cell; cell = cell->next)
      if (Utf8(cell->item->GetUrl()) == url) return cell;
    return nullptr;
  }

  /// The addresses in order, or what is wrong with the chain.
  std::string Urls() const {
    return Row(head, [](const RColctItem* cell) { return Utf8(cell->item->GetUrl()); });
  }

  RColctItem* head = nullptr;
};

}  // namespace vosmere::test
