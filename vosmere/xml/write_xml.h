// The base of the document writers.
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

/// An element's name as a template argument, which makes its tags constants.
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
/// saves it to a file or hands it out as a wide string.
///
/// A writer generates its document once, on the first SaveToFile or GetXMLBSTR; later calls give
/// the same text even if the data changed since. It does not own the data that it writes. Documents
/// are UTF-8 without a byte-order mark. One thread at a time.
///
/// When memory runs out while the document is generated, std::bad_alloc passes through SaveToFile
/// and GetXMLBSTR; nothing else does, and the torn document is never saved. Nor is one that went
/// without a text for want of memory, be it in a setter of the writer: the save is false then.
class VOSMERE_API CWriteXML {
 public:
  CWriteXML();
  CWriteXML(const CWriteXML&) = delete;
  CWriteXML& operator=(const CWriteXML&) = delete;

  /// The document as a new system string, which the caller frees with SysFreeString; cut at the
  /// first U+0000. Null when it is empty or too large (see SaveToFile: what is left of such a
  /// document is handed out as little as it is saved), and without memory.
  virtual BSTR GetXMLBSTR();

  /// Writes the document over what is in the file, without a byte-order mark. False when the file
  /// cannot be created, writing stopped half-way (the file is then cut short), the system could not
  /// store what was written (which some disks say only when the file is closed), or the document is
  /// empty or 100 MiB or larger (the file is then empty). LastError says why.
  virtual bool SaveToFile(const WChar* path);

  virtual ~CWriteXML();

  /// The encoding named in the XML declaration, 1 to 18 characters; null and any other length
  /// change nothing. Intended: this changes the name alone. The text is UTF-8 whatever is named
  /// here; programs that convert a document afterwards announce what it will be.
  void SetEncoding(const char* name);

  /// Makes the document one that always loads, with the values that it was given: what the format
  /// writes as it is (the outlines of a tree, the web addresses of an FTP site) is escaped, line
  /// ends and tabs become references where parsers would change them, and characters that XML does
  /// not have are left out. Values without any of these give the same bytes. A tree that is too
  /// deep for the readers is not saved at all (kTooDeep), and the file stays. Off by default: the
  /// documents are what they have always been. Without effect once the document is generated.
  void SetLoadable(bool loadable) { loadable_ = loadable; }
  /// How many characters were left out for that.
  ULONG LeftOutCharacters() const { return leftOutCharacters_; }

  /// Has everything reported that is in the data and does not come back from the document. Null
  /// ends that, as it begins. Without effect once the document is generated.
  void SetLossReport(LossReport report, void* to) {
    lossReport_ = report;
    lossReportTo_ = to;
  }

  /// Generates the document now, unless it was: false, with LastError, for one that is not saved,
  /// so that who goes on to SaveToFile loses no file to it. Throws std::bad_alloc.
  bool Generate();

  /// Escapes a system string and converts it to UTF-8: a new zero-terminated block that the caller
  /// frees with CUnicodeTool::DeleteBuffer, and its length. False, with nothing stored, without
  /// memory. The five characters & < > " ' become entities; nothing else is replaced.
  bool GetXMLUTF8(const WChar* value, char** text, int* length);

  /// Why the last SaveToFile, GetXMLBSTR or GetXMLBytes failed; no fault after one that did not.
  const DocumentError& LastError() const { return error_; }

  /// What SaveToFile writes, as a new zero-terminated block that the caller frees with
  /// CUnicodeTool::DeleteBuffer, and its length; this takes a fraction of the memory of GetXMLBSTR.
  /// False, with nothing stored, when the document is empty or too large, and without memory.
  bool GetXMLBytes(char** bytes, int* length);

 protected:
  /// Appends an element around a system string, escaped. `open` is the start tag, `openLength`
  /// bytes long. False, with nothing appended, when the value cannot be converted.
  /// Intended: `close` is never measured. It is the end tag with CR LF, hence always three bytes
  /// longer than the start tag, and what stands behind those bytes is not written.
  virtual bool FillNode(const WChar* value, const char* open, const char* close, int openLength);
  /// The same around zero-terminated bytes, as they are. Always true.
  virtual bool FillNodeChar(const char* value, const char* open, const char* close, int openLength);
  /// `open`, "true" or "false", then `close`, which is three bytes longer.
  void FillBoolean(bool value, const char* open, const char* close, int openLength);
  /// Generates the document; its result is ignored.
  virtual bool FillData() = 0;

  /// Clears the buffer and appends the declaration.
  /// Intended: the declaration ends in a lone LF, unlike every line behind it; the files have
  /// always begun that way.
  void BeginDocument();
  void AddXMLVersion();
  /// Bytes as they are. Always true.
  bool FillString(const char* text, int length);
  /// A system string, escaped. False when it cannot be converted.
  bool FillXMLBSTR(const WChar* value);
  /// A system string as it is. False when it cannot be converted.
  bool FillBSTRString(const WChar* value);
  /// GetXMLUTF8 without escaping.
  bool BSTRGetUTF8(const WChar* value, char** text, int* length);

  /// An element with children begins and ends, `above` further ones being around all of them. For
  /// documents that nest as deep as their data.
  void Nest(int above) {
    ++nested_;
    Deepen(above);
  }
  void Deepen(int above) {
    if (above + nested_ > deepest_) deepest_ = above + nested_;
  }
  void Unnest() { --nested_; }

  // What is lost, for SetLossReport; nothing happens without one.

  bool ReportsLosses() const { return lossReport_ != nullptr; }
  /// What follows is lost of this item, or of one that is so called.
  void LosesOf(const CBaseNode* item, const WChar* name) {
    lossOf_ = item;
    lossOfName_ = name;
  }
  void Lose(LossKind kind, const char* what);
  void LoseIf(bool isLost, const char* what, LossKind kind = LossKind::kNotKept) {
    if (isLost) Lose(kind, what);
  }

  /// Where a value stands: parsers change line ends in both, tabs in an attribute alone.
  enum class Stands { kInElement, kInAttribute };

  // What writers are made of: one statement per fragment, in document order. Lengths come from the
  // literals, and values are converted straight into the buffer.

  template <std::size_t N>
  void Put(const char (&markup)[N]) {
    if (buffer_) buffer_->Append(markup, static_cast<int>(N) - 1);
  }
  void PutBytes(std::string_view utf8) { FillString(utf8.data(), static_cast<int>(utf8.size())); }
  void PutNumber(LONG number);
  /// The value of an attribute that the format writes as it is. False when it cannot be converted;
  /// what went before stays appended.
  bool PutRawAttribute(WideView text);
  /// Escaped, as the text of an element or the value of an attribute.
  bool PutEscaped(WideView text, Stands stands = Stands::kInElement);
  /// The same with every backslash turned into a slash.
  bool PutRawPath(WideView text);
  bool PutEscapedPath(WideView text);
  /// "<name>", the text escaped, "</name>" and CR LF: `PutElement<"title">(text)`.
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
  /// The same around bytes as they are.
  template <xml::ElementName Name>
  void PutElement(std::string_view utf8) {
    Put(Name.open);
    PutBytes(utf8);
    Put(Name.close);
  }
  /// The same where an empty text, or null, has no element at all.
  template <xml::ElementName Name>
  void PutElementUnlessEmpty(const WChar* text) {
    const WideView view(text);
    if (!view.empty()) PutElement<Name>(view);
  }
  /// The same where only null has no element.
  template <xml::ElementName Name>
  void PutElementUnlessNull(const WChar* text) {
    if (text) PutElement<Name>(WideView(text));
  }
  /// A blank, the name, and the text escaped between "=\"" and "\""; nothing for null.
  template <xml::AttributeName Name>
  void PutAttributeUnlessNull(const WChar* text) {
    if (!text) return;
    Put(Name.open);
    PutEscaped(WideView(text), Stands::kInAttribute);
    Put("\"");
  }
  /// The whole escaped text at once, for a writer that must know beforehand whether it converts.
  /// Throws std::bad_alloc.
  bool EscapedUtf8(WideView text, std::string& utf8, Stands stands = Stands::kInElement);
  /// The same of the value of an attribute, into room for 6 bytes for each of its few units.
  bool EscapeShort(WideView value, char* utf8, int* length);

  /// Does a part of the writing. Where that throws, or loses a text for want of memory (LostTexts),
  /// the document is torn.
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
  bool IsComplete(Chunk** head);
  bool Fail(DocumentFault fault, const char* reason, ULONG systemError = 0);

  OwnedPointer<CChunkBuffer> buffer_;
  OwnedPointer<File> file_;
  char encoding_[20] = "UTF-8";
  LONG filled_ = 0;
  bool torn_ = false;  // something is missing in it for want of memory
  bool loadable_ = false;
  int nested_ = 0;
  int deepest_ = 0;  // level of an element
  ULONG leftOutCharacters_ = 0;
  LossReport lossReport_ = nullptr;
  void* lossReportTo_ = nullptr;
  const CBaseNode* lossOf_ = nullptr;
  const WChar* lossOfName_ = nullptr;
  DocumentError error_;
};

}  // namespace vosmere
