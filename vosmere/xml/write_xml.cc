// Generates documents in a chunk buffer, converts and saves them.
#include "vosmere/xml/write_xml.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <limits>
#include <new>
#include <string>

#include "vosmere/base/internal/no_memory.h"
#include "vosmere/base/system_string.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/trace.h"
#include "vosmere/text/unicode_tool.h"
#include "vosmere/xml/internal/escape.h"

namespace vosmere {
namespace {

WideView SystemView(const WChar* text) {
  return {text, SysStringLen(text)};
}

}  // namespace

// Constructing a writer does not throw. Without a buffer every operation fails with kNoMemory.
CWriteXML::CWriteXML() : buffer_(new (std::nothrow) CChunkBuffer), file_(new (std::nothrow) File) {}

CWriteXML::~CWriteXML() = default;

void CWriteXML::SetEncoding(const char* name) {
  const std::size_t length = name ? std::strlen(name) : 0;
  if (length >= 1 && length <= 18) std::memcpy(encoding_, name, length + 1);
}

// Generating.

void CWriteXML::FillOnce() {
  if (filled_ || !buffer_) return;
  filled_ = 1;
  DoWhole([this] { FillData(); });
}

void CWriteXML::BeginDocument() {
  if (buffer_) buffer_->Clear();
  AddXMLVersion();
}

void CWriteXML::AddXMLVersion() {
  Put("<?xml version=\"1.0\" encoding=\"");
  FillString(encoding_, static_cast<int>(std::strlen(encoding_)));
  Put("\"?>\n");
}

bool CWriteXML::FillString(const char* text, int length) {
  if (buffer_) buffer_->Append(text, length);
  return true;
}

bool CWriteXML::FillXMLBSTR(const WChar* value) {
  return PutEscaped(SystemView(value));
}

bool CWriteXML::FillBSTRString(const WChar* value) {
  return PutPieces(SystemView(value), kUnitBytes, PieceToUtf8);
}

bool CWriteXML::FillNode(const WChar* value, const char* open, const char* close, int openLength) {
  std::string utf8;
  if (!UnlessLost(false, [&] { return EscapedUtf8(SystemView(value), utf8); })) return false;
  FillString(open, openLength);
  FillString(utf8.data(), static_cast<int>(utf8.size()));
  FillString(close, openLength + 3);
  return true;
}

bool CWriteXML::FillNodeChar(const char* value, const char* open, const char* close,
                             int openLength) {
  FillString(open, openLength);
  if (value) FillString(value, static_cast<int>(std::strlen(value)));
  FillString(close, openLength + 3);
  return true;
}

void CWriteXML::FillBoolean(bool value, const char* open, const char* close, int openLength) {
  FillNodeChar(value ? "true" : "false", open, close, openLength);
}

void CWriteXML::PutNumber(LONG number) {
  constexpr int kMostDigits = 11;  // "-2147483648"
  char aside[kMostDigits];
  char* const room = buffer_ ? buffer_->Room(kMostDigits) : nullptr;
  char* const digits = room ? room : aside;
  const auto length =
      static_cast<int>(std::to_chars(digits, digits + kMostDigits, number).ptr - digits);
  if (room)
    buffer_->Use(length);
  else
    FillString(aside, length);
}

CWriteXML::Convert CWriteXML::Escaping(Stands stands) const {
  if (!loadable_) return PieceToEscapedUtf8<Escape::kFive>;
  return stands == Stands::kInElement ? PieceToEscapedUtf8<Escape::kText>
                                      : PieceToEscapedUtf8<Escape::kAttribute>;
}

/// The part of a text that may be written. If characters must be left out, the view is of `aside`,
/// which holds the copy.
WideView CWriteXML::Writable(WideView text, std::basic_string<WChar>& aside) {
  if (!loadable_ || IsXmlText(text)) return text;
  const std::size_t before = aside.size();
  for (WideView rest = text; !rest.empty();) {
    const std::size_t whole = WellFormedLength(rest);
    std::copy_if(rest.begin(), rest.begin() + whole, std::back_inserter(aside), IsXmlUnit);
    rest = rest.From(whole + 1);  // skips the unpaired surrogate
  }
  Lose(LossKind::kChanged, "characters that XML does not allow are left out");
  leftOutCharacters_ += static_cast<ULONG>(text.size - (aside.size() - before));
  return {aside.data(), aside.size()};
}

// Converts directly into the last chunk of the buffer if that has the room, which saves a copy.
// `convert` writes at most `unitBytes` bytes for each code unit of a piece and returns their
// number; 0 means failure.
bool CWriteXML::PutPieces(WideView text, std::size_t unitBytes, Convert convert) {
  char aside[kTextPiece * kEscapedUnitBytes];
  while (!text.empty()) {
    const WideView piece = NextPiece(text);
    char* const room = buffer_ ? buffer_->Room(static_cast<int>(piece.size * unitBytes)) : nullptr;
    const int length = convert(piece, room ? room : aside);
    if (length == 0) return false;
    if (room)
      buffer_->Use(length);
    else
      FillString(aside, length);
    text = text.From(piece.size);
  }
  return true;
}

// Most texts are one piece without anything to escape or to leave out, which one look shows.
bool CWriteXML::PutLoadable(WideView text, Convert convert, bool isPath) {
  const bool isPiece = buffer_ && text.size <= kTextPiece;
  char* const room = isPiece ? buffer_->Room(static_cast<int>(text.size * kUnitBytes)) : nullptr;
  const unsigned content = room ? CopyTamePiece(text, room) : kMarkup;
  if (content & ~unsigned{kBeyondAscii}) return PutWritable(text, convert);
  const int length = content ? PieceToUtf8(text, room) : static_cast<int>(text.size);
  if (isPath) BackslashesToSlashes(room, length);
  buffer_->Use(length);
  return length > 0 || text.empty();
}

// Apart, because it needs a frame that most texts do not.
[[gnu::noinline]] bool CWriteXML::PutWritable(WideView text, Convert convert) {
  std::basic_string<WChar> kept;
  return PutPieces(Writable(text, kept), kEscapedUnitBytes, convert);
}

bool CWriteXML::PutRawAttribute(WideView text) {
  return loadable_ ? PutLoadable(text, PieceToEscapedUtf8<Escape::kAsLittle>)
                   : PutPieces(text, kUnitBytes, PieceToUtf8);
}

bool CWriteXML::PutEscaped(WideView text, Stands stands) {
  return loadable_ ? PutLoadable(text, Escaping(stands))
                   : PutPieces(text, kEscapedUnitBytes, Escaping(stands));
}

bool CWriteXML::PutRawPath(WideView text) {
  return loadable_ ? PutLoadable(text, WithSlashes<PieceToEscapedUtf8<Escape::kAsLittle>>, true)
                   : PutPieces(text, kUnitBytes, WithSlashes<PieceToUtf8>);
}

bool CWriteXML::PutEscapedPath(WideView text) {
  return loadable_
             ? PutLoadable(text, WithSlashes<PieceToEscapedUtf8<Escape::kText>>, true)
             : PutPieces(text, kEscapedUnitBytes, WithSlashes<PieceToEscapedUtf8<Escape::kFive>>);
}

// Converting.

static bool AppendPieces(WideView text, std::string& utf8, int (*convert)(WideView, char*)) {
  char bytes[kTextPiece * kEscapedUnitBytes];
  while (!text.empty()) {
    const WideView piece = NextPiece(text);
    const int length = convert(piece, bytes);
    if (length == 0) return false;
    utf8.append(bytes, length);
    text = text.From(piece.size);
  }
  // Lengths are passed as int.
  if (utf8.size() > std::size_t{std::numeric_limits<int>::max()}) throw std::bad_alloc();
  return true;
}

bool CWriteXML::EscapedUtf8(WideView text, std::string& utf8, Stands stands) {
  std::basic_string<WChar> kept;
  return AppendPieces(Writable(text, kept), utf8, Escaping(stands));
}

bool CWriteXML::EscapeShort(WideView value, char* utf8, int* length) {
  *length = static_cast<int>(value.size);
  if (!CopyTamePiece(value, utf8)) return true;
  std::basic_string<WChar> kept;
  value = Writable(value, kept);
  *length = Escaping(Stands::kInAttribute)(value, utf8);
  return *length > 0 || value.empty();
}

bool CWriteXML::GetXMLUTF8(const WChar* value, char** text, int* length) {
  return UnlessLost(false, [=] {
    std::string utf8;
    if (!AppendPieces(SystemView(value), utf8, PieceToEscapedUtf8<Escape::kFive>)) return false;
    *text = new char[utf8.size() + 1];
    std::memcpy(*text, utf8.c_str(), utf8.size() + 1);
    *length = static_cast<int>(utf8.size());
    return true;
  });
}

bool CWriteXML::BSTRGetUTF8(const WChar* value, char** text, int* length) {
  if (CUnicodeTool::BSTRGetUTF8(value, text, length)) return true;
  detail::CountLostText();
  return false;
}

void CWriteXML::Lose(LossKind kind, const char* what) {
  if (!lossReport_) return;
  DocumentLoss loss;
  loss.kind = kind;
  loss.what = what;
  loss.item = lossOf_;
  loss.name = lossOfName_;
  lossReport_(lossReportTo_, loss);
}

bool CWriteXML::Generate() {
  error_ = {};
  FillOnce();
  Chunk* chunk = nullptr;
  return IsComplete(&chunk);
}

BSTR CWriteXML::GetXMLBSTR() {
  if (!Generate()) return nullptr;
  const OwnedPointer<char, WithArrayDelete> bytes = buffer_->Joined();
  if (bytes && !*bytes) return nullptr;
  BSTR result = nullptr;
  if (bytes) CUnicodeTool::UTF8GetBSTR(&result, bytes.get(), 0);
  if (!result) Fail(DocumentFault::kNoMemory, "memory ran out");
  return result;
}

bool CWriteXML::GetXMLBytes(char** bytes, int* length) {
  if (!Generate()) return false;
  OwnedPointer<char, WithArrayDelete> joined = buffer_->Joined();
  if (!joined) return Fail(DocumentFault::kNoMemory, "memory ran out");
  *bytes = joined.Detach();
  Chunk* chunk = nullptr;
  *length = buffer_->Get(&chunk);
  return true;
}

bool CWriteXML::HandOut(void (*take)(void* to, const char* bytes, std::size_t length), void* to) {
  if (!Generate()) return false;
  Chunk* chunk = nullptr;
  take(to, nullptr, static_cast<std::size_t>(buffer_->Get(&chunk)));
  for (; chunk; chunk = chunk->next)
    take(to, static_cast<const char*>(chunk->data), static_cast<std::size_t>(chunk->used));
  return true;
}

// Saving.

bool CWriteXML::SaveToFile(const WChar* path) {
  error_ = {};
  if (loadable_ && !Generate()) return false;  // before the file is opened and thereby emptied
  if (!OpenFile(path)) return false;
  FillOnce();
  const bool written = RealWrite();
  const bool closed = CloseFile();
  return written &&
         (closed || Fail(DocumentFault::kCannotWrite,
                         "the file may be incomplete: closing it failed", file_->error()));
}

bool CWriteXML::OpenFile(const WChar* path) {
  CloseFile();
  if (file_ && path && file_->Create(path, Waiting::kAllowed)) return true;
  const ULONG error = file_ ? file_->error() : 0;
  Trace("0X%08X CWriteXML Could not open file. %s\n", error, path);
  return Fail(DocumentFault::kCannotOpen, "the file cannot be created", error);
}

bool CWriteXML::CloseFile() {
  return !file_ || file_->Close();
}

bool CWriteXML::RealWrite() {
  Chunk* chunk = nullptr;
  if (!IsComplete(&chunk)) return false;
  while (chunk) {
    FilePiece pieces[256];  // chunks are written together, which saves system calls
    std::size_t count = 0;
    for (; chunk && count < std::size(pieces); chunk = chunk->next)
      pieces[count++] = {chunk->data, static_cast<std::size_t>(chunk->used)};
    if (!file_->Write(pieces, count))
      return Fail(DocumentFault::kCannotWrite, "the file cannot be written completely",
                  file_->error());
  }
  return true;
}

bool CWriteXML::IsComplete(Chunk** head) {
  if (torn_ || !buffer_) return Fail(DocumentFault::kNoMemory, "memory ran out");
  if (loadable_ && deepest_ > kMaxXmlDepth)
    return Fail(DocumentFault::kTooDeep, "the folders are nested too deeply to be loaded again");
  const LONG total = buffer_->Get(head);
  if (total >= CChunkBuffer::kLimit)
    return Fail(DocumentFault::kTooLarge, "the document has 100 MiB or more");
  return total > 0 || Fail(DocumentFault::kNothingToWrite, "the document is empty");
}

bool CWriteXML::Fail(DocumentFault fault, const char* reason, ULONG systemError) {
  error_.fault = fault;
  error_.systemError = systemError;
  std::snprintf(error_.reason, sizeof error_.reason, "%s", reason);
  return false;
}

}  // namespace vosmere
