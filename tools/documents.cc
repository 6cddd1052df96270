#include "tools/documents.h"

#include "tools/opml_document.h"
#include "tools/text.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/read_xml.h"

namespace vosmere::tool {
namespace {

struct Kind {
  const char* root;
  std::unique_ptr<Document> (*load)(const WChar* path, DocumentError& error);
};

constexpr Kind kKinds[] = {
    {"opml", LoadOpml},
};

const Kind* FindKind(const std::string& root) {
  for (const Kind& kind : kKinds)
    if (root == kind.root) return &kind;
  return nullptr;
}

/// Learns the name of the root element.
class RootReader : public CReadXML {
 public:
  std::string name;  ///< empty when the root element has no content

 protected:
  void InvokeParser(XmlNode root) override { name = ToUtf8(root.Name().c_str()); }
};

}  // namespace

bool IsTrouble(DocumentFault fault) {
  return fault == DocumentFault::kCannotOpen || fault == DocumentFault::kCannotRead ||
         fault == DocumentFault::kCannotWrite || fault == DocumentFault::kNoMemory ||
         fault == DocumentFault::kParserUnavailable;
}

Failure FailureOf(const std::string& file, const DocumentError& error) {
  std::string message = Printable(file) + ':';
  if (error.line > 0) message += std::to_string(error.line) + ':';
  if (error.line > 0 && error.column > 0) message += std::to_string(error.column) + ':';
  const std::string reason = error.reason;
  message += " error: " + (reason.empty() ? "cannot be loaded" : Printable(reason));
  return {IsTrouble(error.fault) ? kTrouble : kBadFile, message};
}

std::unique_ptr<Document> Open(const std::string& file) {
  const SystemString path = ToWide(file);
  RootReader root;
  if (!root.LoadFile(path.get())) throw FailureOf(file, root.LastError());

  const std::string prefix = Printable(file) + ": error: ";
  if (root.name.empty()) throw Failure{kBadFile, prefix + "the root element has no content"};
  const Kind* const kind = FindKind(root.name);
  if (!kind)
    throw Failure{kBadFile, prefix + "no known document has the root element '" +
                                Label(ToWide(root.name).get()) + "'"};

  DocumentError error;
  std::unique_ptr<Document> document = kind->load(path.get(), error);
  if (!document) throw FailureOf(file, error);
  return document;
}

}  // namespace vosmere::tool
