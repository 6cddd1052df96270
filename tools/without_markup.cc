#include "tools/without_markup.h"

#include <utility>

#include "tools/loss_on_save.h"
#include "tools/text.h"
#include "vosmere/xml/parse_xml.h"
#include "vosmere/xml/reader_fields.h"

namespace vosmere::tool {
namespace {

std::string Harmless(const WChar* text) {
  std::string value = ToUtf8(text);
  if (BreakerIn(value) == 0) return value;
  for (char& c : value)
    if (c == '"' || c == '<' || c == '&') c = '_';
  return value;
}

/// Writes elements, attributes and texts as they were read.
class Rewriter : public CParseXML {
 public:
  void ParseXMLTree(XmlNode node) override { GoThroughChildNodes(node); }
  std::string TakeText() { return std::move(text_); }

 protected:
  void OnEnterNode(XmlNode node) override {
    if (node.Type() == kXmlText || node.Type() == kXmlCData) Put(Harmless(node.Text().c_str()));
  }

  void ProcessElementNode(XmlNode node) override {
    text_ += '<' + ToUtf8(node.Name().c_str());
    xml::ForEachAttribute(node, [this](WideView name, const WChar* value) {
      text_ += ' ' + ToUtf8(name.data) + "=\"";
      Put(Harmless(value));
      text_ += '"';
    });
    text_ += '>';
  }

  void OnLeaveNode(XmlNode node) override {
    if (node.Type() == kXmlElement) text_ += "</" + ToUtf8(node.Name().c_str()) + '>';
  }

 private:
  /// As a value that every parser gives back as it was.
  void Put(const std::string& value) {
    for (const char c : value) {
      if (static_cast<unsigned char>(c) < ' ' || std::string_view("\"&<>").find(c) != npos)
        text_ += "&#" + std::to_string(static_cast<unsigned char>(c)) + ';';
      else
        text_ += c;
    }
  }

  static constexpr auto npos = std::string_view::npos;
  std::string text_;
};

}  // namespace

std::string Disarmed(const XmlNode& root) {
  Rewriter rewriter;
  rewriter.ParseXMLTree(root);
  return rewriter.TakeText();
}

}  // namespace vosmere::tool
