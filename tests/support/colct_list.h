// Lists of collections in tests, written as their addresses with blanks between them.
//
//   ColctList list("x y x");
//   CRColctTool().DeleteDuplcateColct(list.head);
//   EXPECT_EQ(list.Urls(), "x y");
#pragma once

#include <sstream>
#include <string>

#include "tests/support/wide.h"
#include "vosmere/nodes/colct_item.h"
#include "vosmere/nodes/colct_node.h"

namespace vosmere::test {

/// Owns the cells and the collections. A collection's identity is its address with "id-" before.
struct ColctList {
  explicit ColctList(const std::string& urls = "") {
    std::istringstream words(urls);
    for (std::string url; words >> url;) Add(url);
  }
  ColctList(const ColctList&) = delete;
  ColctList& operator=(const ColctList&) = delete;
  ~ColctList() { RColctItem::DeleteList(head); }

  void Add(const std::string& url) {
    CColctNode* const colct = CColctNode::New();
    colct->SetUrl(W(url));
    colct->SetUUID(W("id-" + url));
    RColctItem* const cell = RColctItem::New(colct);
    if (!head) {
      head = cell;
      return;
    }
    cell->prev = head->prev;
    cell->prev->next = cell;
    head->prev = cell;
  }

  RColctItem* operator[](const std::string& url) const {
    for (RColctItem* cell = head; cell; cell = cell->next)
      if (Utf8(cell->item->GetUrl()) == url) return cell;
    return nullptr;
  }

  /// The addresses in order, or what is wrong with the chain.
  std::string Urls() const {
    std::string urls;
    for (const RColctItem* cell = head; cell; cell = cell->next) {
      urls += (cell == head ? "" : " ") + Utf8(cell->item->GetUrl());
      if (cell->next && cell->next->prev != cell) return urls + " BROKEN: prev";
      if (!cell->next && head->prev != cell) return urls + " BROKEN: last";
    }
    return urls;
  }

  RColctItem* head = nullptr;
};

}  // namespace vosmere::test
