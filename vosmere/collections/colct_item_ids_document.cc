// Writes and reads the document that lists which items belong to which collections.
#include "vosmere/collections/colct_item_ids_document.h"

#include <string>

#include "vosmere/xml/reader_scopes.h"

namespace vosmere {

// Writing.

CWriteColctItemID::~CWriteColctItemID() = default;

bool CWriteColctItemID::FillData() {
  BeginDocument();
  AddHead();
  for (const RColctItemID* cell = head_; cell; cell = cell->next) {
    LosesOf(nullptr, cell->item->GetName());
    if (colctOnly_)
      FilRColctIDOnlyToBuffer(cell->item);
    else
      FilRColctItemIDToBuffer(cell->item);
  }
  AddTail();
  return true;
}

void CWriteColctItemID::AddHead() {
  Put("<colctitem version=\"1.0\">\r\n");
}

void CWriteColctItemID::AddTail() {
  Put("</colctitem>");
}

// Converts one identity. False, with the loss reported, if it is missing or cannot be converted:
// the entry is then left out, because it could not be found again.
bool CWriteColctItemID::PutInto(std::string& utf8, const WChar* id) {
  if (EscapedUtf8(WideView(id), utf8, Stands::kInAttribute) && !utf8.empty()) return true;
  Lose(LossKind::kNotKept, "an entry that lacks an identity is left out");
  return false;
}

void CWriteColctItemID::FilRColctItemIDToBuffer(CColctItemID* id) {
  std::string colctID, itemID;
  if (!PutInto(colctID, id->GetColctID()) || !PutInto(itemID, id->GetItemID())) return;
  Put("<item colctid=\"");
  PutBytes(colctID);
  Put("\" id=\"");
  PutBytes(itemID);
  PutNameAndEnd(*id);
}

void CWriteColctItemID::FilRColctIDOnlyToBuffer(CColctItemID* id) {
  std::string colctID;
  if (!PutInto(colctID, id->GetColctID())) return;
  LoseIf(!WideView(id->GetItemID()).empty(), "id is lost");
  Put("<item colctid=\"");
  PutBytes(colctID);
  PutNameAndEnd(*id);
}

void CWriteColctItemID::PutNameAndEnd(const CColctItemID& id) {
  const WideView name(id.GetName());
  if (name.empty()) {
    Put("\" />\r\n");
    return;
  }
  Put("\">");
  PutEscaped(name);
  Put("</item>\r\n");
}

// Reading.

namespace {

using namespace xml;

using Ids = ItemChain<RColctItemID>;
enum Scope : unsigned { kList = 1 };

void SetNameUnlessEmpty(CColctItemID& id, const WChar* name) {
  if (*name) id.SetName(name);
}

constexpr Field<CColctItemID> kItemFields[] = {
    {"colctid", Text<&CColctItemID::SetColctID>},
    {"id", Text<&CColctItemID::SetItemID>},
};

// All text inside the element is the name, including that of nested items.
void ReadItem(Ids& ids, const Element& element) {
  BeginItem(ids, element);
  TextAndAttributesTo<&Ids::item, SetNameUnlessEmpty, kItemFields>(ids, element);
}

constexpr ScopedElement<Ids> kElements[] = {
    {kAnywhere, "item", ReadItem},
};

}  // namespace

CReadColctItemID::~CReadColctItemID() = default;

void CReadColctItemID::InvokeParser(XmlNode root) {
  if (IsRootNamed(root, "colctitem")) ReadChildren(kElements, ids_, Reported(root), kList);
}

}  // namespace vosmere
