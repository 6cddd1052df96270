#include "tools/document.h"

#include <algorithm>

#include "tools/audit.h"
#include "tools/compare.h"
#include "tools/disarm.h"
#include "tools/source.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

constexpr const Kind* kKinds[] = {&kColctItemIds,  &kColctList, &kColctProfile, &kFtpSites,
                                  &kNotification,  &kOpml,      &kPageData,     &kRss,
                                  &kSearchEngines, &kTags,      &kToolbars};

const Kind* FindKind(const std::string& root) {
  for (const Kind* const kind : kKinds)
    if (root == kind->root) return kind;
  return nullptr;
}

/// Learns the name of the root element.
class RootReader : public CReadXML {
 public:
  std::string name;  ///< empty when the root element has no content

 protected:
  void InvokeParser(XmlNode root) override { name = ToUtf8(root.Name().c_str()); }
};

const Kind& KindOf(const std::string& file, const Source& source) {
  RootReader root;
  if (!source(root)) throw FailureOf(file, root.LastError());
  const std::string prefix = Printable(file) + ": error: ";
  if (root.name.empty()) throw Failure{kBadFile, prefix + "the root element has no content"};
  if (const Kind* const kind = FindKind(root.name)) return *kind;
  throw Failure{kBadFile, prefix + "no known document has the root element '" +
                              Label(ToWide(root.name).get()) + "'"};
}

DocumentError ErrorOf(DocumentFault fault, std::string_view reason) {
  DocumentError error;
  error.fault = fault;
  std::copy_n(reason.data(), std::min(reason.size(), sizeof error.reason - 1), error.reason);
  return error;
}

std::unique_ptr<Loaded> Load(const Kind& kind, const Source& source, DocumentError& error) {
  error = {};
  std::unique_ptr<Loaded> loaded = kind.load([&](CReadXML& reader) {
    const bool isLoaded = source(reader);
    error = reader.LastError();
    return isLoaded;
  });
  if (!loaded && error.fault == DocumentFault::kNone)
    error = ErrorOf(DocumentFault::kMalformed, "there is nothing in the document");
  return loaded;
}

std::unique_ptr<Loaded> LoadFile(const Kind& kind, const WChar* path, DocumentError& error) {
  return Load(
      kind, [=](CReadXML& reader) { return reader.LoadFile(path); }, error);
}

std::unique_ptr<Loaded> LoadText(const Kind& kind, const WChar* text, DocumentError& error) {
  return Load(
      kind, [=](CReadXML& reader) { return reader.LoadBSTRXML(text); }, error);
}

/// What comes back from the text that a writer saves.
std::unique_ptr<Loaded> LoadWritten(const Kind& kind, CWriteXML& writer, DocumentError& error) {
  const SystemString text(writer.GetXMLBSTR());
  if (text) return LoadText(kind, text.get(), error);
  error = writer.LastError();
  return nullptr;
}

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

Document::Document(const std::string& file)
    : file_(file), source_(SourceOf(file)), kind_(&KindOf(file, source_)) {
  DocumentError error;
  loaded_ = Load(*kind_, source_, error);
  if (!loaded_) throw FailureOf(file, error);
}

void Document::Show(std::ostream& out) const {
  tool::Show(loaded_->Content(), kind_->what, kind_->counts, out);
}

void Document::ShowJson(std::ostream& out) const {
  out << ToJson(loaded_->Content()).dump(-1, ' ', true) << '\n';
}

void Document::Audit(Findings& findings) const {
  const DocumentError error = tool::Audit(source_, kind_->vocabulary, findings);
  if (error.fault != DocumentFault::kNone) throw FailureOf(file_, error);
}

DocumentError Document::Rehearse(Findings& findings) const {
  DocumentError error;
  const auto back = LoadWritten(*kind_, *loaded_->Writer(), error);
  const Record saved = loaded_->Content();  // with what the writer changed on purpose
  const Record returned = back ? back->Content() : Record();
  if (back && SameShape(saved, returned)) {
    Compare(saved, returned, saved, kind_->what, findings);
    return {};
  }
  Explain(saved, findings);
  if (!back) return error;
  return ErrorOf(DocumentFault::kMalformed, "items are missing, new or in other places");
}

/// Names the values that break a saved copy, and what else would be lost if they did not.
void Document::Explain(const Record& content, Findings& findings) const {
  ReportBreakers(content, kind_->what, findings);
  DocumentError error;
  const auto harmless = LoadText(*kind_, Disarmed(source_).get(), error);
  const auto back = harmless ? LoadWritten(*kind_, *harmless->Writer(), error) : nullptr;
  if (!back) return;
  const Record saved = harmless->Content(), returned = back->Content();
  if (SameShape(content, saved) && SameShape(saved, returned))
    Compare(saved, returned, content, kind_->what, findings);
}

DocumentError Document::Save(const WChar* path) const {
  const std::unique_ptr<CWriteXML> writer = loaded_->Writer();
  if (!writer->SaveToFile(path)) return writer->LastError();
  DocumentError error;
  const auto meant = LoadWritten(*kind_, *writer, error);
  const auto back = meant ? LoadFile(*kind_, path, error) : nullptr;
  if (!back) return error;
  if (meant->Content() == back->Content()) return {};
  return ErrorOf(DocumentFault::kCannotWrite, "the file does not hold what was written");
}

}  // namespace vosmere::tool
