// Imports documents: by the exact readers if they find nothing unusual, otherwise repaired.
#include "vosmere/import/import_document.h"

#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "vosmere/base/owned_text.h"
#include "vosmere/import/internal/bookmarks_reader.h"
#include "vosmere/import/internal/decode.h"
#include "vosmere/import/internal/field_reader.h"
#include "vosmere/import/internal/prefixes.h"
#include "vosmere/import/internal/utf8_text.h"
#include "vosmere/import/internal/well_formed.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/parser_thread.h"

namespace vosmere {
namespace {

using namespace importing;

constexpr std::size_t kMostRepaired = std::size_t{256} * 1024 * 1024;

[[noreturn]] void Fail(DocumentFault fault, const char* reason, ULONG systemError = 0) {
  DocumentFailure failure;
  failure.error.fault = fault;
  failure.error.systemError = systemError;
  std::snprintf(failure.error.reason, sizeof failure.error.reason, "%s", reason);
  throw failure;
}

/// An import on its way. What it made is freed unless it is taken.
class Import {
 public:
  Import(std::string_view bytes, RepairReport report, void* to)
      : bytes_(bytes), report_(report), to_(to) {}

  void Run(ImportedItems* items) {
    if (!IsBookmarkFile(bytes_) && !LooksOdd() && ReadExactly(items)) return;
    if (bytes_.size() > kMostRepaired)
      Fail(DocumentFault::kTooLarge, "a document to repair has at most 256 MiB");
    const std::string text = Decode(bytes_, repairs_);
    if (IsBookmarkFile(text))
      items->tree = ReadBookmarkFile(text, repairs_);
    else
      Repair(text, items);
    Report(text, items);
  }

 private:
  /// Whether there is something unusual that not every platform's parser objects to.
  bool LooksOdd() const {
    const std::string_view declared = DeclaredEncoding(bytes_);
    bool hasLetters = false;
    const bool isMisdeclared = !declared.empty() && !SameNoCase(declared, "utf-8") &&
                               IsUtf8(bytes_, &hasLetters) && hasLetters;
    return isMisdeclared || bytes_.starts_with("\xEF\xBB\xBF\xEF\xBB\xBF") || IsUtf16(bytes_) ||
           bytes_.ends_with('\0') || MayLackPrefix(bytes_);
  }

  /// False when a repair is needed.
  bool ReadExactly(ImportedItems* items) {
    FieldReader reader;
    if (bytes_.size() > INT_MAX) return false;
    if (!reader.LoadXML(bytes_.data(), static_cast<int>(bytes_.size()))) {
      exact_ = reader.LastError();
      if (exact_.fault == DocumentFault::kNoMemory ||
          exact_.fault == DocumentFault::kParserUnavailable)
        throw DocumentFailure{exact_};
      return false;
    }
    return !reader.IsOdd() && Take(reader, items);
  }

  void Repair(std::string_view text, ImportedItems* items) {
    const std::string document = MakeWellFormed(text, repairs_);
    FieldReader reader;
    if (document.size() > INT_MAX)
      Fail(DocumentFault::kTooLarge, "a repaired document has less than 2 GiB");
    if (!reader.LoadXML(document.data(), static_cast<int>(document.size()))) {
      DocumentError error = reader.LastError();
      error.line = error.column = 0;  // those of the repaired document
      throw DocumentFailure{error};
    }
    if (!Take(reader, items)) Fail(DocumentFault::kMalformed, "there is nothing in the document");
  }

  void Report(std::string_view text, ImportedItems* items) {
    // A fault that the parser alone saw is mentioned in its words.
    if (repairs_.empty() && exact_.fault != DocumentFault::kNone)
      repairs_.Add(RepairKind::kMarkup, 0, exact_.reason, exact_.reason);
    items->moreRepairs = repairs_.more();
    if (report_) repairs_.Report(text, report_, to_);
  }

  static bool Take(FieldReader& reader, ImportedItems* items) {
    items->tree = reader.DetachTree();
    items->colct = reader.DetachColct();
    return items->tree || items->colct;
  }

  std::string_view bytes_;
  RepairReport report_;
  void* to_;
  RepairList repairs_;
  DocumentError exact_;
};

/// All bytes of a file or of a pipe.
std::string ReadAll(const WChar* path) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  File file;
  std::uint64_t size = 0;
  if (!file.Open(path, Waiting::kAllowed))
    Fail(DocumentFault::kCannotOpen, "the file does not open", file.error());
  std::string bytes;
  if (file.Size(&size) && size < INT_MAX) bytes.reserve(static_cast<std::size_t>(size) + kPiece);
  for (std::size_t got = kPiece; got > 0;) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kPiece);
    if (!file.Read(bytes.data() + before, kPiece, &got))
      Fail(DocumentFault::kCannotRead, "the file cannot be read", file.error());
    bytes.resize(before + got);
    if (bytes.size() > INT_MAX) Fail(DocumentFault::kTooLarge, "a document has less than 2 GiB");
  }
  return bytes;
}

/// Runs an import, and makes a failure of every exception.
template <class Work>
bool Guarded(ImportedItems* items, DocumentError* error, Work work) {
  *items = {};
  *error = {};
  const unsigned long lostBefore = LostTexts();
  try {
    const ParserThread parser;
    work();
    if (LostTexts() != lostBefore) throw std::bad_alloc();
    return true;
  } catch (const DocumentFailure& failure) {
    *error = failure.error;
  } catch (const std::bad_alloc&) {
    error->fault = DocumentFault::kNoMemory;
    std::snprintf(error->reason, sizeof error->reason, "memory ran out");
  }
  DeleteTree(items->tree);
  DeleteWithLocalTree(items->colct);
  *items = {};
  return false;
}

}  // namespace

bool ImportDocument(const char* bytes, std::size_t length, ImportedItems* items,
                    RepairReport report, void* to, DocumentError* error) {
  return Guarded(items, error, [&] { Import({bytes, length}, report, to).Run(items); });
}

bool ImportFile(const WChar* path, ImportedItems* items, RepairReport report, void* to,
                DocumentError* error) {
  return Guarded(items, error, [&] {
    if (!path) Fail(DocumentFault::kCannotOpen, "no document was given");
    const std::string bytes = ReadAll(path);
    Import(bytes, report, to).Run(items);
  });
}

}  // namespace vosmere
