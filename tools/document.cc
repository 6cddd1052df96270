#include "tools/document.h"

#include <algorithm>
#include <optional>
#include <system_error>

#include "tools/document_source.h"
#include "tools/loss_on_load.h"
#include "tools/loss_on_save.h"
#include "tools/snapshot.h"
#include "tools/text.h"
#include "tools/without_markup.h"
#include "vosmere/text/unicode_tool.h"

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

/// Has the parsed document read by the reader of its kind, and looks at what that leaves out.
class DocumentReader : public CReadXML {
 public:
  explicit DocumentReader(Findings* findings = nullptr) : findings_(findings) {}

  std::string root;  ///< empty when the root element has no content
  const Kind* kind = nullptr;
  std::unique_ptr<Loaded> loaded;
  std::string disarmed;

 protected:
  void InvokeParser(XmlNode node) override {
    root = ToUtf8(node.Name().c_str());
    kind = FindKind(root);
    if (kind) loaded = kind->load(node);
    if (loaded && findings_ && Audit(node, kind->vocabulary, *findings_)) disarmed = Disarmed(node);
  }

 private:
  Findings* findings_;
};

DocumentError ErrorOf(DocumentFault fault, std::string_view reason) {
  DocumentError error;
  error.fault = fault;
  std::copy_n(reason.data(), std::min(reason.size(), sizeof error.reason - 1), error.reason);
  return error;
}

const DocumentError kNothing =
    ErrorOf(DocumentFault::kMalformed, "there is nothing in the document");

/// A document of our own writing; null, with the reason in `error`, when it does not load.
template <class Load>
std::unique_ptr<Loaded> LoadBack(Load load, DocumentError& error) {
  DocumentReader reader;
  error = {};
  if (!load(reader))
    error = reader.LastError();
  else if (!reader.loaded)
    error = kNothing;
  return std::move(reader.loaded);
}

/// What was saved, and what comes back of it: null, with an error, when it does not load.
struct RoundTrip {
  std::optional<Snapshot> saved;
  std::unique_ptr<Loaded> back;
  DocumentError error;
};

/// By a file or, for null, by memory.
RoundTrip SaveAndLoad(std::unique_ptr<Loaded> loaded, const WChar* path) {
  RoundTrip trip;
  char* bytes = nullptr;
  int length = 0;
  {
    const std::unique_ptr<CWriteXML> writer = loaded->Writer();
    if (!(path ? writer->SaveToFile(path) : writer->GetXMLBytes(&bytes, &length)))
      trip.error = writer->LastError();
  }
  const std::unique_ptr<char, FreeWith<CUnicodeTool::DeleteBuffer>> owned(bytes);
  trip.saved.emplace(loaded->Content());  // with what the writer changed on purpose
  loaded.reset();
  if (trip.error.fault == DocumentFault::kNone)
    trip.back = LoadBack(
        [&](CReadXML& reader) {
          return path ? reader.LoadFile(path) : reader.LoadXML(bytes, length);
        },
        trip.error);
  return trip;
}

/// Empty when the system has not refused anything.
std::string SystemReason(const DocumentError& error) {
  const bool isRefused = error.fault == DocumentFault::kCannotOpen ||
                         error.fault == DocumentFault::kCannotRead ||
                         error.fault == DocumentFault::kCannotWrite;
  if (!isRefused || error.systemError == 0) return {};
  return Printable(std::system_category().message(static_cast<int>(error.systemError)));
}

}  // namespace

bool IsTrouble(DocumentFault fault) {
  return fault == DocumentFault::kCannotOpen || fault == DocumentFault::kCannotRead ||
         fault == DocumentFault::kCannotWrite || fault == DocumentFault::kNoMemory ||
         fault == DocumentFault::kParserUnavailable;
}

Failure FailureOf(const std::string& name, const DocumentError& error) {
  std::string reason = *error.reason ? Printable(std::string(error.reason)) : "cannot be loaded";
  const std::string cause = SystemReason(error);
  if (reason.find(cause) == reason.npos) reason += ": " + cause;
  return FileFailure(IsTrouble(error.fault) ? kTrouble : kBadFile, name, reason, error.line,
                     error.column);
}

Document::Document(const std::string& file, Findings* findings) {
  const std::string name = InputName(file);
  DocumentReader reader(findings);
  if (!LoadFrom(file, reader)) throw FailureOf(name, reader.LastError());
  if (reader.root.empty()) throw FileFailure(kBadFile, name, "the root element has no content");
  if (!reader.kind)
    throw FileFailure(
        kBadFile, name,
        "no known document has the root element '" + Label(ToWide(reader.root).get()) + "'");
  if (!reader.loaded) throw FailureOf(name, kNothing);
  kind_ = reader.kind;
  loaded_ = std::move(reader.loaded);
  disarmed_ = std::move(reader.disarmed);
}

void Document::Show(std::ostream& out) const {
  tool::Show(loaded_->Content(), kind_->what, kind_->counts, out);
}

void Document::ShowJson(std::ostream& out) const {
  tool::ShowJson(loaded_->Content(), out);
  out << '\n';
}

DocumentError Document::Save(const WChar* path, Findings& findings) {
  const RoundTrip trip = SaveAndLoad(std::move(loaded_), path);
  if (IsTrouble(trip.error.fault)) return trip.error;
  const Record saved = trip.saved->Content();
  if (trip.back && Compare(saved, trip.back->Content(), saved, kind_->what, findings)) return {};
  Explain(saved, findings);
  if (!trip.back) return trip.error;
  return ErrorOf(DocumentFault::kMalformed, "items are missing, new or in other places");
}

/// Names the values that break a saved copy, and what else would be lost if they did not.
void Document::Explain(const Record& content, Findings& findings) const {
  ReportBreakers(content, kind_->what, findings);
  DocumentError error;
  auto harmless = LoadBack(
      [this](CReadXML& reader) {
        return reader.LoadXML(disarmed_.data(), static_cast<int>(disarmed_.size()));
      },
      error);
  if (!harmless) return;
  const RoundTrip trip = SaveAndLoad(std::move(harmless), nullptr);
  if (trip.back)
    Compare(trip.saved->Content(), trip.back->Content(), content, kind_->what, findings);
}

}  // namespace vosmere::tool
