// Writing documents element by element with libxml2's xmlTextWriter, in the simple way that its
// manual shows.
#pragma once

#include <libxml/xmlwriter.h>

#include <charconv>
#include <vector>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/posix/utf8.h"

namespace vosmere::bench {

class PeerWriter {
 public:
  explicit PeerWriter(const char* path) : writer_(xmlNewTextWriterFilename(path, 0)) {}
  /// Writes to memory that the caller owns.
  explicit PeerWriter(xmlBuffer* memory) : writer_(xmlNewTextWriterMemory(memory, 0)) {}
  ~PeerWriter() { xmlFreeTextWriter(writer_); }
  PeerWriter(const PeerWriter&) = delete;
  PeerWriter& operator=(const PeerWriter&) = delete;

  bool IsOpen() const { return writer_ != nullptr; }
  void StartDocument() { xmlTextWriterStartDocument(writer_, nullptr, "UTF-8", nullptr); }
  /// False if anything could not be written.
  bool EndDocument() { return xmlTextWriterEndDocument(writer_) >= 0; }

  void Start(const char* name) { xmlTextWriterStartElement(writer_, Xml(name)); }
  void End() { xmlTextWriterEndElement(writer_); }
  /// Always writes an end tag, never "/>".
  void FullEnd() { xmlTextWriterFullEndElement(writer_); }
  void NewLine() { xmlTextWriterWriteRaw(writer_, Xml("\r\n")); }
  void Text(const WChar* text) { xmlTextWriterWriteString(writer_, Bytes(text)); }

  void Attribute(const char* name, const char* value) {
    xmlTextWriterWriteAttribute(writer_, Xml(name), Xml(value));
  }
  void Attribute(const char* name, const WChar* value) {
    xmlTextWriterWriteAttribute(writer_, Xml(name), Bytes(value));
  }
  void Attribute(const char* name, int value) { Attribute(name, Digits(value)); }

  /// Writes the element and a line end.
  void Element(const char* name, const char* text) {
    xmlTextWriterWriteElement(writer_, Xml(name), Xml(text));
    NewLine();
  }
  void Element(const char* name, const WChar* text) {
    xmlTextWriterWriteElement(writer_, Xml(name), Bytes(text));
    NewLine();
  }
  void Element(const char* name, int value) { Element(name, Digits(value)); }
  void ElementUnlessEmpty(const char* name, const WChar* text) {
    if (text && *text) Element(name, text);
  }

 private:
  static const xmlChar* Xml(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

  const xmlChar* Bytes(const WChar* text) {
    const WideView view(text);
    bytes_.resize(view.size * utf8::kMaxBytesPerUnit + 1);
    bytes_[utf8::Encode(view.data, view.size, bytes_.data(), bytes_.size())] = 0;
    return Xml(bytes_.data());
  }

  const char* Digits(int value) {
    *std::to_chars(digits_, digits_ + sizeof digits_ - 1, value).ptr = 0;
    return digits_;
  }

  xmlTextWriter* writer_;
  std::vector<char> bytes_;
  char digits_[12];
};

}  // namespace vosmere::bench
