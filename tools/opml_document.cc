#include "tools/opml_document.h"

#include <algorithm>
#include <string>

#include "tools/opml_audit.h"
#include "tools/opml_breakers.h"
#include "tools/opml_fields.h"
#include "tools/text.h"
#include "vosmere/cpp.h"
#include "vosmere/nodes/tree_walk.h"
#include "vosmere/xml/opml_reader.h"
#include "vosmere/xml/opml_writer.h"

namespace vosmere::tool {
namespace {

// Loading and saving.

template <class Load>
Tree LoadTreeWith(Load load, DocumentError& error) {
  CReadColctTreeOPML reader;
  const bool loaded = load(reader);
  error = reader.LastError();
  return Tree(loaded ? reader.DetachTreeRoot() : nullptr);
}

Tree LoadTree(const WChar* path, DocumentError& error) {
  return LoadTreeWith([path](CReadXML& reader) { return reader.LoadFile(path); }, error);
}

DocumentError ErrorOf(DocumentFault fault, const char* reason) {
  DocumentError error;
  error.fault = fault;
  std::copy_n(reason, std::min(std::string_view(reason).size(), sizeof error.reason - 1),
              error.reason);
  return error;
}

/// What comes back from the text that a writer saves.
Tree LoadWritten(CWriteXML& writer, DocumentError& error) {
  const SystemString text(writer.GetXMLBSTR());
  if (text)
    return LoadTreeWith([&](CReadXML& reader) { return reader.LoadBSTRXML(text.get()); }, error);
  error = writer.LastError();
  return nullptr;
}

Tree SaveToMemoryAndLoad(RNode* root, DocumentError& error) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(root);
  return LoadWritten(writer, error);
}

/// What is wrong with a tree that was saved and loaded back.
DocumentError Verdict(RNode* saved, RNode* back, const DocumentError& loadError) {
  if (loadError.fault != DocumentFault::kNone) return loadError;
  if (!saved || !back || !SameShape(saved, back))
    return ErrorOf(DocumentFault::kMalformed, "items are missing, new or in other places");
  return {};
}

// Showing.

struct Census {
  int folders = 0, collections = 0, unread = 0, flagged = 0;
};

std::string Marks(const CNodeStat& stat, Census& census) {
  std::string marks;
  if (stat.IsUnread()) {
    marks += "  (unread)";
    ++census.unread;
  }
  if (stat.GetFlag() != 0) {
    marks += "  (flag " + std::to_string(stat.GetFlag()) + ')';
    ++census.flagged;
  }
  return marks;
}

std::string Name(const RNode* link) {
  const std::string name = Printable(link->item->GetName());
  return name.empty() ? "(no name)" : name;
}

std::string Line(const RNode* link, Census& census) {
  const bool isFolder = link->type == NT_FOLDER;
  ++(isFolder ? census.folders : census.collections);
  std::string line = (isFolder ? "[folder] " : "[collection] ") + Name(link);
  if (!isFolder) {
    std::string url = Printable(static_cast<const CUrlNode*>(link->item)->GetUrl());
    std::replace(url.begin(), url.end(), '\\', '/');
    line += "  " + url;
  }
  return line + Marks(*link->item->GetNodeStat(), census);
}

Json TreeJson(RNode* link) {
  Json fields = ItemFields(link);
  if (link->type != NT_FOLDER) return fields;
  Json& children = fields["children"] = Json::array();
  for (RNode* const child : Children(link)) children.push_back(TreeJson(child));
  return fields;
}

class OpmlDocument : public Document {
 public:
  OpmlDocument(const WChar* path, Tree tree)
      : path_(SysAllocString(path)), tree_(std::move(tree)) {}

  void Show(std::ostream& out) override {
    Census census;
    std::size_t level = 1;
    out << "[tree] " << Name(tree_.get()) << '\n';
    WalkBelow(
        tree_.get(),
        [&](RNode* link) {
          out << std::string(2 * level++, ' ') << Line(link, census) << '\n';
          return true;
        },
        [&](RNode*) { --level; });
    out << census.folders << " folders, " << census.collections << " collections, " << census.unread
        << " unread, " << census.flagged << " flagged\n";
  }

  void ShowJson(std::ostream& out) override {
    out << TreeJson(tree_.get()).dump(-1, ' ', true) << '\n';
  }

  void Audit(Findings& findings) override {
    const DocumentError error = AuditOpml(path_.get(), findings);
    if (error.fault != DocumentFault::kNone) throw FailureOf(ToUtf8(path_.get()), error);
  }

  DocumentError Rehearse(Findings& findings) override {
    DocumentError error;
    const Tree back = SaveToMemoryAndLoad(tree_.get(), error);
    error = Verdict(tree_.get(), back.get(), error);
    if (error.fault == DocumentFault::kNone)
      CompareTrees(tree_.get(), back.get(), tree_.get(), findings);
    else
      Explain(findings);
    return error;
  }

  DocumentError Save(const WChar* path) override {
    CWriteColctTreeOPML writer;
    writer.SetTreeRoot(tree_.get());
    if (!writer.SaveToFile(path)) return writer.LastError();
    DocumentError error;
    const Tree meant = LoadWritten(writer, error);
    const Tree back = LoadTree(path, error);
    error = Verdict(meant.get(), back.get(), error);
    if (error.fault != DocumentFault::kNone) return error;
    Findings differences(0);
    CompareTrees(meant.get(), back.get(), meant.get(), differences);
    if (differences.size() == 0) return {};
    return ErrorOf(DocumentFault::kCannotWrite, "the file does not hold what was written");
  }

 private:
  /// Names the values that break a saved copy, and what else would be lost if they did not.
  void Explain(Findings& findings) {
    ReportBreakers(tree_.get(), findings);
    DocumentError error;
    const Tree harmless = LoadTree(path_.get(), error);
    if (!harmless || !SameShape(tree_.get(), harmless.get())) return;
    Disarm(harmless.get());
    const Tree back = SaveToMemoryAndLoad(harmless.get(), error);
    if (back && SameShape(harmless.get(), back.get()))
      CompareTrees(harmless.get(), back.get(), tree_.get(), findings);
  }

  SystemString path_;
  Tree tree_;
};

}  // namespace

std::unique_ptr<Document> LoadOpml(const WChar* path, DocumentError& error) {
  Tree tree = LoadTree(path, error);
  if (!tree) return nullptr;
  return std::make_unique<OpmlDocument>(path, std::move(tree));
}

}  // namespace vosmere::tool
