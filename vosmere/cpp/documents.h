// Loading and saving documents, with errors and a report of everything that is lost.
//
//   Result<Tree> list = Load<Tree>("reading-list.opml");
//   if (!list) return Complain(list.error());           // reading-list.opml:4:12: mismatched tag
//   Result<Saved> saved = Save("reading-list.opml", *list);
//   if (!saved) return Complain(saved.error());
//   for (const Loss& loss : saved->losses) std::cout << loss << '\n';  // a page is left out: Daily
//
// What Save writes can always be loaded again: values that the plain writers do not escape are
// escaped, and characters that XML does not allow are left out. Without such characters the bytes
// are those of the plain writers. The only exception thrown is std::bad_alloc. On Windows it does
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

/// A document in memory, in the encoding that it declares: `Load<Tree>(Bytes(text))`. Not copied.
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

/// `root` is the name of the root element, if it is known.
inline Error NoDocument(std::string source, std::string reason, const std::string& root = {}) {
  Error error(std::move(source), std::move(reason));
  error.fault = DocumentFault::kMalformed;
  if (!root.empty()) error.element = "/" + root;
  return error;
}

/// A reader that remembers the name of the root element.
template <class Kind>
class DocumentReader : public Document<Kind>::Reader {
 public:
  /// The value that was loaded, or an error about `source`.
  Result<Kind> TakeFor(const std::string& source) {
    constexpr std::string_view kRoot = Document<Kind>::kRoot;
    if (root_.empty()) return NoDocument(source, "the root element is empty");
    if (root_ != kRoot)
      return NoDocument(
          source, "the root element is '" + root_ + "' instead of '" + std::string(kRoot) + "'",
          root_);
    Kind value = this->Take();
    if (!Document<Kind>::IsThere(value))
      return NoDocument(source, "the document contains no data", root_);
    return value;
  }

 protected:
  void InvokeParser(XmlNode root) override {
    root_ = ShortName(root.Name().c_str());
    Document<Kind>::Reader::InvokeParser(std::move(root));
  }

 private:
  std::string root_;
};

/// The same for a document of any kind, which the root element determines.
template <>
class DocumentReader<AnyDocument> : public CReadXML {
 public:
  Result<AnyDocument> TakeFor(const std::string& source) {
    if (!read_) return NoDocument(source, "the root element is empty");
    if (*read_) return std::move(*read_);
    Error error = read_->error();
    error.source = source;
    return error;
  }
  void SetLossReport(LossReport report, void* to) {
    CReadXML::SetLossReport(report, to);  // makes the loader keep the places of elements
    report_ = report;
    reportTo_ = to;
  }

 protected:
  void InvokeParser(XmlNode root) override { ReadAny(root, static_cast<AnyDocument*>(nullptr)); }

 private:
  template <class... Kinds>
  void ReadAny(const XmlNode& node, std::variant<Kinds...>*) {
    const XmlText name = node.Name();
    if ((Read<Kinds>(node, name) || ...)) return;
    const std::string root = ShortName(name.c_str());
    read_.emplace(
        NoDocument({}, "unknown kind of document: the root element is '" + root + "'", root));
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

/// All bytes of a stream, or the first ones if they show that it has no document; nullopt when
/// reading fails or there are more than `most` bytes.
inline std::optional<std::string> ReadAll(std::istream& stream, std::size_t most) {
  std::string bytes;
  char piece[64 * 1024];
  while (bytes.size() <= most) {
    stream.read(piece, sizeof piece);
    if (stream.gcount() <= 0) break;
    bytes.append(piece, static_cast<std::size_t>(stream.gcount()));
    // No document begins so in any encoding. The parser refuses it, even if the stream has no end.
    if (bytes.starts_with(std::string_view("\0\0\0\0", 4))) return bytes;
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

/// Saves what a writer makes to a file. Returns an error or nullopt.
inline std::optional<Error> SaveWritten(const FilePath& path, CWriteXML& writer,
                                        const std::optional<FileMark>& expected = {}) {
  std::error_code code;
  if (std::filesystem::is_other(path.native(), code)) {
    if (writer.SaveToFile(path.get())) return {};
    return Error(path.name(), writer.LastError());
  }
  ConvertedText bytes;
  int length = 0;
  if (!writer.GetXMLBytes(Out(bytes), &length)) return Error(path.name(), writer.LastError());
  const FilePiece piece{bytes.get(), static_cast<std::size_t>(length)};
  DocumentError error;
  const FileMark* const mark = expected ? &*expected : nullptr;
  if (SafeSave(path.get(), &piece, 1, mark, nullptr, &error)) return {};
  return Error(path.name(), error);
}

/// Appends what a writer makes to `bytes`. Returns an error or nullopt.
inline std::optional<Error> AppendWritten(CWriteXML& writer, std::string& bytes) {
  const auto take = [](void* to, const char* piece, std::size_t length) {
    auto& all = *static_cast<std::string*>(to);
    piece ? static_cast<void>(all.append(piece, length)) : all.reserve(length);
  };
  if (writer.HandOut(take, &bytes)) return {};
  return Error({}, writer.LastError());
}

}  // namespace detail

/// Any of the kinds, or AnyDocument.
template <class Kind>
concept LoadedKind = DocumentKind<Kind> || std::same_as<Kind, AnyDocument>;

/// Loads a document from a file, or says why not: the file, its line and column, the element, the
/// reason. If `leftOut` is not null, it receives what the value lacks of the document, and what the
/// document lacks and the value had to make up. Different threads may load at the same time.
template <LoadedKind Kind>
Result<Kind> Load(const FilePath& path, Losses* leftOut = nullptr) {
  return detail::LoadWith<Kind>(path.name(), leftOut,
                                [&](CReadXML& reader) { return reader.LoadFile(path.get()); });
}
/// Loads a document from memory. 2 GiB or more are an error.
template <LoadedKind Kind>
Result<Kind> Load(Bytes document, Losses* leftOut = nullptr) {
  if (document.view.size() > INT_MAX)
    return detail::NoDocument({}, "the document has 2 GiB or more");
  return detail::LoadWith<Kind>({}, leftOut, [&](CReadXML& reader) {
    return reader.LoadXML(document.view.data(), static_cast<int>(document.view.size()));
  });
}
/// Loads a document from a stream, which is read to its end and should be binary. More than 256 MiB
/// are an error.
template <LoadedKind Kind>
Result<Kind> Load(std::istream& stream, Losses* leftOut = nullptr) {
  const std::optional<std::string> bytes = detail::ReadAll(stream, std::size_t{256} * 1024 * 1024);
  if (bytes) return Load<Kind>(Bytes(*bytes), leftOut);
  Error error({}, stream.bad() || stream.fail() ? "the stream cannot be read"
                                                : "the stream has more than 256 MiB");
  error.fault = DocumentFault::kCannotRead;
  return error;
}

namespace detail {

/// How many items a tree or a list has; nullopt for other documents.
template <class Kind>
std::optional<std::size_t> CountItems(const Kind& value) {
  const auto count = [](const auto& items) {
    std::size_t number = 0;
    for ([[maybe_unused]] auto& item : items) ++number;
    return number;
  };
  if constexpr (std::same_as<Kind, Tree> || std::same_as<Kind, Collection>)
    return count(Items(value));
  else if constexpr (std::derived_from<Document<Kind>, ListDocument>)
    return count(Each(value));
  else
    return {};
}

/// The error about a file that was changed since it was loaded, with the number of items in it and
/// the number that would replace them.
template <class Kind>
Error WithCounts(Error error, const FilePath& path, const Kind& value) {
  const Result<Kind> now = Load<Kind>(path);
  if (!now || !CountItems(value)) return error;
  error.reason =
      "was changed since it was loaded (items now: " + std::to_string(*CountItems(*now)) +
      ", items to be saved: " + std::to_string(*CountItems(value)) + ")";
  return error;
}

}  // namespace detail

/// The result of a successful save.
struct Saved {
  Losses losses;  ///< what loading the document will not restore
};
/// The result of SaveToBytes.
struct SavedBytes : Saved {
  std::string bytes;
};

/// Saves to a file, which is replaced completely or not at all (SafeSave). An empty list is
/// saved as a document without entries. Any other value that is null or moved-from is an error, and
/// so is a tree with more levels than can be loaded; the file is not touched then. Saving a
/// Collection changes it: its children get positions, and identities if they have none.
template <DocumentKind Kind>
Result<Saved> Save(const FilePath& path, const Kind& value, const SaveOptions& options = {}) {
  if (!detail::Document<Kind>::IsThere(value))
    return Error(path.name(), "there is nothing to save");
  Saved saved{Losses(options.places)};
  detail::DocumentWriter<Kind> writer(value, options, saved.losses);
  if (std::optional<Error> error = detail::SaveWritten(path, writer, options.expected))
    return error->fault == DocumentFault::kChanged
               ? detail::WithCounts(*std::move(error), path, value)
               : *std::move(error);
  return saved;
}

/// Saves to memory. Otherwise the same as Save.
template <DocumentKind Kind>
Result<SavedBytes> SaveToBytes(const Kind& value, const SaveOptions& options = {}) {
  if (!detail::Document<Kind>::IsThere(value)) return Error({}, "there is nothing to save");
  SavedBytes saved{{Losses(options.places)}, {}};
  detail::DocumentWriter<Kind> writer(value, options, saved.losses);
  if (std::optional<Error> error = detail::AppendWritten(writer, saved.bytes))
    return *std::move(error);
  return saved;
}

}  // namespace vosmere
