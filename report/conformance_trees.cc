// Loads each document of a file with the platform's parser, and prints a line for it: its tree in
// one line after a plus, or a minus.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "report/documents_file.h"
#include "vosmere/cpp/text.h"
#include "vosmere/platform/internal/xml_document.h"
#include "vosmere/platform/parser_thread.h"

using namespace vosmere;

namespace {

std::string Shown(const XmlNode& node) {
  constexpr int kEntityReference = 5;  // of Windows' DOM, with what it expands to as children
  std::string children;
  for (XmlNode child = node.FirstChild(); child; child = child.NextSibling())
    children += Shown(child);
  if (node.Type() == kEntityReference) return children;
  std::string all = "(" + std::to_string(node.Type()) + ToUtf8(node.Name().c_str());
  if (node.Type() != kXmlElement) return all + "=" + ToUtf8(node.Text().c_str()) + ")";
  std::vector<std::string> attributes;
  for (XmlAttributes at(node); at.Next();)
    attributes.push_back(" " + ToUtf8(at.Name().c_str()) + "=" + ToUtf8(at.Value().c_str()));
  std::sort(attributes.begin(), attributes.end());
  for (const std::string& attribute : attributes) all += attribute;
  return all + children + ")";
}

std::string Loaded(const std::string& document) {
  try {
    XmlDocument loaded;
    loaded.LoadBytes(document.data(), static_cast<int>(document.size()));
    return "+" + Shown(loaded.Root());
  } catch (const DocumentFailure&) {
    return "-";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const ParserThread parser;
  for (const std::string& document : report::DocumentsIn(argc > 1 ? argv[1] : "")) {
    for (const char c : Loaded(document))
      std::printf(c < ' ' ? "\\x%02X" : "%c", static_cast<unsigned char>(c));
    std::puts("");
  }
}
