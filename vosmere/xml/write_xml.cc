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
  return PutText(SystemView(value));
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
  constexpr int kMostDigits = 11;
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

// Straight into the buffer where its last chunk has the room.
bool CWriteXML::PutPieces(WideView text, std::size_t unitBytes,
                          int (*convert)(WideView piece, char* bytes)) {
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

bool CWriteXML::PutText(WideView text) {
  return PutPieces(text, kUnitBytes, PieceToUtf8);
}

bool CWriteXML::PutEscaped(WideView text) {
  return PutPieces(text, kEscapedUnitBytes, PieceToEscapedUtf8);
}

// Converting.

bool CWriteXML::EscapedUtf8(WideView text, std::string& utf8) {
  char bytes[kTextPiece * kEscapedUnitBytes];
  while (!text.empty()) {
    const WideView piece = NextPiece(text);
    const int length = PieceToEscapedUtf8(piece, bytes);
    if (length == 0) return false;
    utf8.append(bytes, length);
    text = text.From(piece.size);
  }
  if (utf8.size() > std::size_t{std::numeric_limits<int>::max()}) throw std::bad_alloc();
  return true;
}

bool CWriteXML::GetXMLUTF8(const WChar* value, char** text, int* length) {
  return UnlessLost(false, [=] {
    std::string utf8;
    if (!EscapedUtf8(SystemView(value), utf8)) return false;
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

BSTR CWriteXML::GetXMLBSTR() {
  error_ = {};
  FillOnce();
  Chunk* chunk = nullptr;
  if (!IsComplete(&chunk)) return nullptr;
  const OwnedPointer<char, WithArrayDelete> bytes = buffer_->Joined();
  if (bytes && !*bytes) return nullptr;
  BSTR result = nullptr;
  if (bytes) CUnicodeTool::UTF8GetBSTR(&result, bytes.get(), 0);
  if (!result) Fail(DocumentFault::kNoMemory, "memory ran out");
  return result;
}

bool CWriteXML::GetXMLBytes(char** bytes, int* length) {
  error_ = {};
  FillOnce();
  Chunk* chunk = nullptr;
  if (!IsComplete(&chunk)) return false;
  OwnedPointer<char, WithArrayDelete> joined = buffer_->Joined();
  if (!joined) return Fail(DocumentFault::kNoMemory, "memory ran out");
  *bytes = joined.Detach();
  *length = buffer_->Get(&chunk);
  return true;
}

// Saving.

bool CWriteXML::SaveToFile(const WChar* path) {
  error_ = {};
  if (!OpenFile(path)) return false;
  FillOnce();
  const bool written = RealWrite();
  const bool closed = CloseFile();
  return written && (closed || Fail(DocumentFault::kCannotWrite,
                                    "what was written could not be stored", file_->error()));
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
    FilePiece pieces[256];
    std::size_t count = 0;
    for (; chunk && count < std::size(pieces); chunk = chunk->next)
      pieces[count++] = {chunk->data, static_cast<std::size_t>(chunk->used)};
    if (!file_->Write(pieces, count))
      return Fail(DocumentFault::kCannotWrite, "writing stopped half-way", file_->error());
  }
  return true;
}

bool CWriteXML::IsComplete(Chunk** head) {
  if (torn_ || !buffer_) return Fail(DocumentFault::kNoMemory, "memory ran out");
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
