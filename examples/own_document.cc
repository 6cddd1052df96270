// A document kind of a program's own: books, with a writer, and a reader made of tables.
//
// Prints: Emma (1815) by Austen; lost: the element 'price' is not kept; <title>Emma</title>
#include <iostream>

#include "vosmere/cpp.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/reader_fields.h"
#include "vosmere/xml/reader_scopes.h"

using namespace vosmere;

struct Book {
  static Book* New() { return new Book; }
  static void Delete(Book* book) { delete book; }
  void SetTitle(const WChar* text) { title.AssignOrNull(text); }
  void SetAuthor(const WChar* text) { author.AssignOrNull(text); }
  void SetYear(LONG number) { year = number; }
  void SetRead(bool read) { isRead = read; }

  HeapText title, author;
  LONG year = 0;
  bool isRead = false;
};
using BookCell = TList<Book*>;

class WriteBooks : public CWriteXML {
 public:
  explicit WriteBooks(const Book& book) : book_(book) {}
  ~WriteBooks() override = default;

 private:
  bool FillData() override {
    BeginDocument();
    Put("<books><book");
    PutAttributeUnlessNull<"author">(book_.author.get());  // an xml::AttributeName
    Put(" year=\"");
    PutNumber(book_.year);
    Put("\">");
    PutElementUnlessEmpty<"title">(book_.title.get());  // an xml::ElementName
    Put("<price>2</price></book></books>");
    return true;
  }
  const Book& book_;
};

using Shelf = xml::ItemChain<BookCell>;
enum Scope : unsigned { kBooks = 1, kBook = 2 };

constexpr xml::Field<Book> kFields[] = {
    {"author", xml::Text<&Book::SetAuthor>},
    {"year", xml::Number<&Book::SetYear>},    // an xml::NumberRow
    {"read", xml::WhenTrue<&Book::SetRead>},  // an xml::WhenTrueRow
};

void BeginBook(Shelf& shelf, const xml::Element& element) {
  BeginItem(shelf, element);
  ApplyFields(kFields, *shelf.item(), element);
  if (shelf.item()->year < 0) {  // makes the load fail
    DocumentFailure failure;
    failure.error.fault = DocumentFault::kMalformed;
    throw failure;
  }
}

// Each row: where the element is recognised, its name (an xml::RowName), and how it is read. An
// xml::ScopeReader goes through the document with them, and an xml::Report follows it. Texts of
// nested elements are bounded by xml::NestedTexts.
constexpr xml::ScopedElement<Shelf> kElements[] = {
    {kBooks, "book", BeginBook, kBook, xml::EndItem},
    {kBook, "title", xml::TextTo<&Shelf::item, &Book::SetTitle>},
};

class ReadBooks : public CReadXML {
 public:
  Shelf shelf;

 private:
  void InvokeParser(XmlNode root) override {
    if (xml::IsRootNamed(root, "books"))
      xml::ReadChildren(kElements, shelf, Reported(root), kBooks);
  }
};

// Without tables: a walk over all nodes.
class PrintTitles : public CParseXML {
 public:
  void ParseXMLTree(XmlNode node) override { GoThroughChildNodes(node); }

 private:
  void ProcessElementNode(XmlNode node) override {
    for (XmlAttributes attributes(node); attributes.Next();)
      if (!attributes.HasTextValue()) return;
    const XmlText name = node.Name();
    if (xml::IsNamed(name.view(), "title"))
      std::cout << "; <title>" << ToUtf8(node.Text().c_str()) << "</title>\n";
  }
};
class WalkBooks : public CReadXML {
  void InvokeParser(XmlNode root) override { PrintTitles().ParseXMLTree(root); }
};

int main() {
  Book emma;
  emma.SetTitle(Wide("Emma"));
  emma.SetAuthor(Wide("Austen"));
  emma.SetYear(1815);
  WriteBooks writer(emma);
  const SystemString document(writer.GetXMLBSTR());

  ReadBooks reader;
  std::string lost;
  reader.SetLossReport(
      [](void* to, const DocumentLoss& loss) { *static_cast<std::string*>(to) += loss.what; },
      &lost);
  const ParserThread parser;
  if (!reader.LoadBSTRXML(document.get())) return 1;
  for (BookCell* cell : chain::Cells(reader.shelf.head()))
    std::cout << ToUtf8(cell->data->title.get()) << " (" << cell->data->year << ") by "
              << ToUtf8(cell->data->author.get()) << "; lost: " << lost;
  WalkBooks().LoadBSTRXML(document.get());
}
