// Loading and saving documents: all of it or an error, and a word for everything that is lost.
//
//   Result<Tree> list = Load<Tree>("reading-list.opml");
//   if (!list) return Complain(list.error());           // reading-list.opml:4:12: mismatched tag
//   Result<Saved> saved = Save("reading-list.opml", *list);
//   if (!saved) return Complain(saved.error());
//   for (const Loss& loss : saved->losses) std::cout << loss << '\n';  // a page is left out: Daily
//
// What Save writes loads again, whatever the names are: it is escaped where the plain writers leave
// it as it is, and characters that XML does not have are left out. Values without such characters
// give the bytes of the plain writers. Nothing here throws but std::bad_alloc. On Windows it does
// not matter whether the thread has initialised COM.
#pragma once

#include <climits>
#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

#include "vosmere/cpp/document_kinds.h"
#include "vosmere/cpp/files.h"
#include "vosmere/cpp/losses.h"
#include "vosmere/cpp/own.h"
#include "vosmere/cpp/result.h"
#include "vosmere/cpp/text.h"
#include "vosmere/platform/parser_thread.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere {

/// A document that is in memory already, in whatever encoding it declares:
/// `Load<Tree>(Bytes(text))`.
struct Bytes {
  explicit Bytes(std::string_view document) : view(document) {}
  Bytes(const void* data, std::size_t size) : view(static_cast<const char*>(data), size) {}

  std::string_view view;
};

/// A document of any kind.
using AnyDocument =
    std::variant<Tree, Collection, ColctList, ColctItemNameList, ColctProfile, FtpSiteList,
                 Notification, PageData, EnginePool, TagGroupList, ToolbarBands>;

namespace detail {

inline Error NoDocument(std::string source, std::string reason) {
  Error error(std::move(source), std::move(reason));
  error.fault = DocumentFault::kMalformed;
  return error;
}

/// A reader that remembers the name of the root element.
template <class Kind>
class DocumentReader : public Document<Kind>::Reader {
 public:
  /// What was loaded, or why there is nothing.
  Result<Kind> TakeFor(const std::string& source) {
    constexpr std::string_view kRoot = Document<Kind>::kRoot;
    if (root_.empty()) return NoDocument(source, "the root element has no content");
    if (root_ != kRoot)
      return NoDocument(
          source, "the root element is '" + root_ + "' instead of '" + std::string(kRoot) + "'");
    Kind value = this->Take();
    if (!Document<Kind>::IsThere(value))
      return NoDocument(source, "there is nothing in the document");
    return value;
  }

 protected:
  void InvokeParser(XmlNode root) override {
    root_ = ToUtf8(root.Name().view());
    Document<Kind>::Reader::InvokeParser(std::move(root));
  }

 private:
  std::string root_;
};

/// The same for a document of any kind, which its root element tells.
template <>
class DocumentReader<AnyDocument> : public CReadXML {
 public:
  Result<AnyDocument> TakeFor(const std::string& source) {
    if (!read_) return NoDocument(source, "the root element has no content");
    if (*read_) return std::move(*read_);
    Error error = read_->error();
    error.source = source;
    return error;
  }
  void SetLossReport(LossReport report, void* to) {
    CReadXML::SetLossReport(report, to);  // for the places of elements
    report_ = report;
    reportTo_ = to;
  }

 protected:
  void InvokeParser(XmlNode root) override { ReadAny(root, static_cast<AnyDocument*>(nullptr)); }

 private:
  template <class... Kinds>
  void ReadAny(const XmlNode& root, std::variant<Kinds...>*) {
    const XmlText name = root.Name();
    if (!(Read<Kinds>(root, name) || ...))
      read_.emplace(NoDocument(
          {}, "no known document has the root element '" + ShortName(name.c_str()) + "'"));
  }

  template <class Kind>
  bool Read(const XmlNode& root, const XmlText& name) {
    if (!xml::IsNamed(name.view(), Document<Kind>::kRoot)) return false;
    DocumentReader<Kind> reader;
    reader.SetLossReport(report_, reportTo_);
    if (!reader.ReadParsed(root, *this)) return read_.emplace(Error({}, reader.LastError())), true;
    Result<Kind> value = reader.TakeFor({});
    if (value)
      read_.emplace(AnyDocument(std::move(*value)));
    else
      read_.emplace(value.error());
    return true;
  }

  std::optional<Result<AnyDocument>> read_;
  LossReport report_ = nullptr;
  void* reportTo_ = nullptr;
};

template <class Kind, class Load>
Result<Kind> LoadWith(const std::string& source, Losses* leftOut, Load load) {
  const ParserThread parser;
  DocumentReader<Kind> reader;
  if (leftOut) reader.SetLossReport(Losses::Report, leftOut);
  if (!load(reader)) return Error(source, reader.LastError());
  return reader.TakeFor(source);
}

/// Null when the stream fails, or has more bytes than a document may.
inline std::optional<std::string> ReadAll(std::istream& stream, std::size_t most) {
  std::string bytes;
  char piece[64 * 1024];
  while (bytes.size() <= most) {
    stream.read(piece, sizeof piece);
    if (stream.gcount() <= 0) break;
    bytes.append(piece, static_cast<std::size_t>(stream.gcount()));
  }
  if (stream.bad() || !stream.eof()) return {};
  return bytes;
}

template <class Kind>
class DocumentWriter : public Document<Kind>::Writer {
 public:
  DocumentWriter(const Kind& value, const SaveOptions& options, Losses& losses)
      : Document<Kind>::Writer(value, options) {
    this->SetLoadable(true);
    this->SetLossReport(Losses::Report, &losses);
  }
};

}  // namespace detail

/// Any of the kinds, or AnyDocument.
template <class Kind>
concept LoadedKind = DocumentKind<Kind> || std::same_as<Kind, AnyDocument>;

/// A document from a file. `leftOut`, where it is not null, is told what the document holds and
/// the value does not, or makes up.
template <LoadedKind Kind>
Result<Kind> Load(const FilePath& path, Losses* leftOut = nullptr) {
  return detail::LoadWith<Kind>(path.name(), leftOut,
                                [&](CReadXML& reader) { return reader.LoadFile(path.get()); });
}
/// From memory. Bytes beyond 2 GiB are refused.
template <LoadedKind Kind>
Result<Kind> Load(Bytes document, Losses* leftOut = nullptr) {
  if (document.view.size() > INT_MAX)
    return detail::NoDocument({}, "a document has less than 2 GiB");
  return detail::LoadWith<Kind>({}, leftOut, [&](CReadXML& reader) {
    return reader.LoadXML(document.view.data(), static_cast<int>(document.view.size()));
  });
}
/// From a stream to its end, which should be a binary one. More than 256 MiB are refused.
template <LoadedKind Kind>
Result<Kind> Load(std::istream& stream, Losses* leftOut = nullptr) {
  const std::optional<std::string> bytes = detail::ReadAll(stream, std::size_t{256} * 1024 * 1024);
  if (bytes) return Load<Kind>(Bytes(*bytes), leftOut);
  Error error({}, stream.bad() || stream.fail() ? "the stream cannot be read"
                                                : "the stream has more than 256 MiB");
  error.fault = DocumentFault::kCannotRead;
  return error;
}

/// What came of a save.
struct Saved {
  Losses losses;  ///< what does not come back from the document
};
struct SavedBytes : Saved {
  std::string bytes;
};

/// Saves to a file: a new one takes the place of an old one, whole or not at all (SafeSave). An
/// empty list is a document without entries; another value that is null or moved-from, and a tree
/// of more levels than documents are read with, is an error, and the file stays. A collection's
/// children get positions, and identities where they have none.
template <DocumentKind Kind>
Result<Saved> Save(const FilePath& path, const Kind& value, const SaveOptions& options = {}) {
  if (!detail::Document<Kind>::IsThere(value))
    return Error(path.name(), "there is nothing to save");
  Saved saved{Losses(options.places)};
  detail::DocumentWriter<Kind> writer(value, options, saved.losses);
  std::error_code code;
  if (std::filesystem::is_other(path.native(), code)) {
    if (!writer.SaveToFile(path.get())) return Error(path.name(), writer.LastError());
    return saved;
  }
  ConvertedText bytes;
  int length = 0;
  if (!writer.GetXMLBytes(Out(bytes), &length)) return Error(path.name(), writer.LastError());
  const FilePiece piece{bytes.get(), static_cast<std::size_t>(length)};
  DocumentError error;
  const FileMark* const expected = options.expected ? &*options.expected : nullptr;
  if (!SafeSave(path.get(), &piece, 1, expected, nullptr, &error)) return Error(path.name(), error);
  return saved;
}

/// Saves to memory.
template <DocumentKind Kind>
Result<SavedBytes> SaveToBytes(const Kind& value, const SaveOptions& options = {}) {
  if (!detail::Document<Kind>::IsThere(value)) return Error({}, "there is nothing to save");
  SavedBytes saved{{Losses(options.places)}, {}};
  detail::DocumentWriter<Kind> writer(value, options, saved.losses);
  ConvertedText bytes;
  int length = 0;
  if (!writer.GetXMLBytes(Out(bytes), &length)) return Error({}, writer.LastError());
  saved.bytes.assign(bytes.get(), static_cast<std::size_t>(length));
  return saved;
}

}  // namespace vosmere
