// The base class of all document writers.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string_view>
#include <utility>

#include "vosmere/base/document_error.h"
#include "vosmere/base/document_loss.h"
#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/text/chunk_buffer.h"

namespace vosmere {

class File;

namespace xml {

/// The name of an element as a template argument, so that its tags are constants.
template <std::size_t N>
struct ElementName {
  char open[N + 2] = {};   ///< "<name>"
  char close[N + 5] = {};  ///< "</name>" with CR LF

  consteval ElementName(const char (&name)[N]) {
    open[0] = close[0] = '<';
    close[1] = '/';
    for (std::size_t i = 0; i + 1 < N; ++i) open[i + 1] = close[i + 2] = name[i];
    open[N] = close[N + 1] = '>';
    close[N + 2] = '\r';
    close[N + 3] = '\n';
  }
};

/// The same for an attribute: " name=\"".
template <std::size_t N>
struct AttributeName {
  char open[N + 3] = {};

  consteval AttributeName(const char (&name)[N]) {
    open[0] = ' ';
    for (std::size_t i = 0; i + 1 < N; ++i) open[i + 1] = name[i];
    open[N] = '=';
    open[N + 1] = '"';
  }
};

}  // namespace xml

/// Base of every document writer: appends UTF-8 markup to a chunk buffer in document order, then
/// saves it to a file or returns it as text.
///
/// A writer generates its document once, in the first call that needs it; later calls return the
/// same text even if the data has changed since. It does not own the data that it writes. Documents
/// are UTF-8 without a byte-order mark. Not thread-safe.
///
/// When memory runs out while the document is generated, SaveToFile, GetXMLBSTR, GetXMLBytes and
/// Generate may throw std::bad_alloc, and no other exception. The incomplete document is never
/// saved: later calls fail with kNoMemory. The same holds for a document that lacks a text because
/// memory ran out, also in a setter of the writer.
class VOSMERE_API CWriteXML {
 public:
  CWriteXML();
  CWriteXML(const CWriteXML&) = delete;
  CWriteXML& operator=(const CWriteXML&) = delete;

  /// Returns the document as a new system string, which the caller owns and frees with
  /// SysFreeString. It ends before the first U+0000. Null when the document is empty or too large
  /// (see SaveToFile) and when memory runs out; LastError says which.
  virtual BSTR GetXMLBSTR();

  /// Creates or overwrites the file. Returns false, and LastError says why, if the file cannot be
  /// created, if writing stopped half-way (the file is then incomplete), if the system could not
  /// store what was written (some file systems report this only on closing), or if the document is
  /// empty or has 100 MiB or more (the file is then empty; after SetLoadable it is not touched).
  /// Null for the path fails.
  virtual bool SaveToFile(const WChar* path);

  virtual ~CWriteXML();

  /// Sets the encoding name in the XML declaration, 1 to 18 bytes; null and other lengths are
  /// ignored. Copied.
  /// Intended: this changes only the name. The text stays UTF-8; the function is for programs that
  /// convert the document afterwards.
  void SetEncoding(const char* name);

  /// Whether to write a document that can always be loaded and then yields the same values. Values
  /// that the format does not escape (the outlines of a tree, the web addresses of an FTP site) are
  /// escaped, line ends and tabs become character references where parsers would change them, and
  /// characters that XML does not allow are left out. If no value contains any of these, the bytes
  /// are the same. A tree that is too deep for the readers fails with kTooDeep, and the file is not
  /// touched. Off by default, for documents like those of earlier versions. No effect once the
  /// document has been generated.
  void SetLoadable(bool loadable) { loadable_ = loadable; }
  /// The number of code units that were left out because XML does not allow them.
  ULONG LeftOutCharacters() const { return leftOutCharacters_; }

  /// Sets the function that is called, with `to`, for everything in the data that reading the
  /// document will not restore. Null, the default, turns this off. No effect once the document has
  /// been generated.
  void SetLossReport(LossReport report, void* to) {
    lossReport_ = report;
    lossReportTo_ = to;
  }

  /// Generates the document if that has not been done. Returns false, and LastError says why, if it
  /// cannot be saved; a caller can thus find out before SaveToFile overwrites the file. Throws
  /// std::bad_alloc.
  bool Generate();

  /// Passes the document to `take` piece by piece, without joining it in memory. The first call has
  /// a null pointer and the length of the whole document. Returns false, without calling `take`, in
  /// the same cases as GetXMLBytes.
  bool HandOut(void (*take)(void* to, const char* bytes, std::size_t length), void* to);

  /// Escapes a system string and converts it to UTF-8. Stores a new null-terminated block, which
  /// the caller owns and frees with CUnicodeTool::DeleteBuffer, and its length in bytes. Returns
  /// false, with nothing stored, if the text cannot be converted or memory runs out. The five
  /// characters & < > " ' become entities; nothing else is replaced.
  bool GetXMLUTF8(const WChar* value, char** text, int* length);

  /// Why the last SaveToFile, GetXMLBSTR, GetXMLBytes or Generate failed; kNone after a successful
  /// one.
  const DocumentError& LastError() const { return error_; }

  /// Stores what SaveToFile would write as a new null-terminated block, which the caller owns and
  /// frees with CUnicodeTool::DeleteBuffer, and its length in bytes. Needs a fraction of the memory
  /// of GetXMLBSTR. Returns false, with nothing stored, when the document is empty or too large and
  /// when memory runs out; LastError says which.
  bool GetXMLBytes(char** bytes, int* length);

 protected:
  /// Appends an element with an escaped system string as its text. `open` is the start tag,
  /// `openLength` bytes long; `close` is the end tag with CR LF. Returns false, with nothing
  /// appended, if the value cannot be converted.
  /// Intended: the length of `close` is never measured. The end tag with CR LF is always three
  /// bytes longer than the start tag; further bytes are not written.
  virtual bool FillNode(const WChar* value, const char* open, const char* close, int openLength);
  /// The same with null-terminated bytes, which are not escaped. Null is empty. Always true.
  virtual bool FillNodeChar(const char* value, const char* open, const char* close, int openLength);
  /// The same with the text "true" or "false".
  void FillBoolean(bool value, const char* open, const char* close, int openLength);
  /// Generates the document. The result is ignored.
  virtual bool FillData() = 0;

  /// Clears the buffer and appends the XML declaration.
  /// Intended: the declaration ends with LF, unlike all later lines, which end with CR LF; existing
  /// files have it so.
  void BeginDocument();
  void AddXMLVersion();
  /// Appends bytes without escaping. Always true.
  bool FillString(const char* text, int length);
  /// Appends a system string, escaped. False if it cannot be converted.
  bool FillXMLBSTR(const WChar* value);
  /// Appends a system string without escaping. False if it cannot be converted.
  bool FillBSTRString(const WChar* value);
  /// Like GetXMLUTF8, without escaping.
  bool BSTRGetUTF8(const WChar* value, char** text, int* length);

  /// Nest and Unnest are called where an element with children begins and ends, to measure the
  /// depth of documents that nest as deep as their data. `above` is the number of elements around
  /// all of these. Deepen counts a level without children.
  void Nest(int above) {
    ++nested_;
    Deepen(above);
  }
  void Deepen(int above) {
    if (above + nested_ > deepest_) deepest_ = above + nested_;
  }
  void Unnest() { --nested_; }

  // Reporting losses. Without a report (SetLossReport) these do nothing.

  bool ReportsLosses() const { return lossReport_ != nullptr; }
  /// Says which item the following losses belong to: `item`, or null and a name. Neither is copied.
  void LosesOf(const CBaseNode* item, const WChar* name) {
    lossOf_ = item;
    lossOfName_ = name;
  }
  void Lose(LossKind kind, const char* what);
  void LoseIf(bool isLost, const char* what, LossKind kind = LossKind::kNotKept) {
    if (isLost) Lose(kind, what);
  }

  /// Where a value is written. Parsers change carriage returns in both places, line feeds and tabs
  /// only in attributes.
  enum class Stands { kInElement, kInAttribute };

  // Building blocks of writers: one statement per fragment, in document order. The lengths of
  // literals are known at compile time, and values are converted directly into the buffer.

  template <std::size_t N>
  void Put(const char (&markup)[N]) {
    if (buffer_) buffer_->Append(markup, static_cast<int>(N) - 1);
  }
  void PutBytes(std::string_view utf8) { FillString(utf8.data(), static_cast<int>(utf8.size())); }
  void PutNumber(LONG number);
  /// Appends an attribute value that the format does not escape (but see SetLoadable). False if it
  /// cannot be converted; the part before the failure stays appended.
  bool PutRawAttribute(WideView text);
  /// Appends an escaped text. Fails like PutRawAttribute.
  bool PutEscaped(WideView text, Stands stands = Stands::kInElement);
  /// The same two with every backslash replaced by a slash.
  bool PutRawPath(WideView text);
  bool PutEscapedPath(WideView text);
  /// Appends "<name>", the escaped text, "</name>" and CR LF: `PutElement<"title">(text)`.
  template <xml::ElementName Name>
  void PutElement(WideView text) {
    Put(Name.open);
    PutEscaped(text);
    Put(Name.close);
  }
  template <xml::ElementName Name>
  void PutElement(LONG number) {
    Put(Name.open);
    PutNumber(number);
    Put(Name.close);
  }
  /// The same with bytes as they are.
  template <xml::ElementName Name>
  void PutElement(std::string_view utf8) {
    Put(Name.open);
    PutBytes(utf8);
    Put(Name.close);
  }
  /// The same, but nothing for an empty text or null.
  template <xml::ElementName Name>
  void PutElementUnlessEmpty(const WChar* text) {
    const WideView view(text);
    if (!view.empty()) PutElement<Name>(view);
  }
  /// The same, but nothing for null.
  template <xml::ElementName Name>
  void PutElementUnlessNull(const WChar* text) {
    if (text) PutElement<Name>(WideView(text));
  }
  /// Appends a blank, the name, and the escaped text between "=\"" and "\""; nothing for null.
  template <xml::AttributeName Name>
  void PutAttributeUnlessNull(const WChar* text) {
    if (!text) return;
    Put(Name.open);
    PutEscaped(WideView(text), Stands::kInAttribute);
    Put("\"");
  }
  /// Appends the escaped text to `utf8`, for a writer that must know whether a text can be
  /// converted before it writes anything; false if it cannot. Throws std::bad_alloc.
  bool EscapedUtf8(WideView text, std::string& utf8, Stands stands = Stands::kInElement);
  /// The same for a short attribute value. `utf8` must have room for 6 bytes per code unit.
  bool EscapeShort(WideView value, char* utf8, int* length);

  /// What is put while `aside` is swapped in goes there instead of to the document, and PutAside
  /// appends it: for a part that is made before, or together with, one that comes first.
  void SwapBuffer(OwnedPointer<CChunkBuffer>& aside) { std::swap(buffer_, aside); }
  void PutAside(CChunkBuffer& aside) { buffer_->Take(aside); }

  /// Runs a part of the writing. If it throws, or loses a text because memory runs out (LostTexts),
  /// the document is marked as incomplete and is never saved.
  template <class Work>
  void DoWhole(Work work) {
    const unsigned long lostBefore = LostTexts();
    const bool torn = std::exchange(torn_, true);
    work();
    torn_ = torn || LostTexts() != lostBefore;
  }

  bool OpenFile(const WChar* path);
  bool CloseFile();
  bool RealWrite();

 private:
  using Convert = int (*)(WideView piece, char* bytes);

  void FillOnce();
  Convert Escaping(Stands stands) const;
  WideView Writable(WideView text, std::basic_string<WChar>& aside);
  bool PutPieces(WideView text, std::size_t unitBytes, Convert convert);
  bool PutLoadable(WideView text, Convert convert, bool isPath = false);
  bool PutWritable(WideView text, Convert convert);
  bool IsComplete(Chunk** head);
  bool Fail(DocumentFault fault, const char* reason, ULONG systemError = 0);

  OwnedPointer<CChunkBuffer> buffer_;
  OwnedPointer<File> file_;
  char encoding_[20] = "UTF-8";
  LONG filled_ = 0;
  bool torn_ = false;  // something is missing because memory ran out
  bool loadable_ = false;
  int nested_ = 0;
  int deepest_ = 0;  // the level of the deepest element so far
  ULONG leftOutCharacters_ = 0;
  LossReport lossReport_ = nullptr;
  void* lossReportTo_ = nullptr;
  const CBaseNode* lossOf_ = nullptr;
  const WChar* lossOfName_ = nullptr;
  DocumentError error_;
};

}  // namespace vosmere
