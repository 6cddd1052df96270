// The trees of a document from both parsers, made comparable.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/wide.h"
#include "vosmere/base/document_error.h"
#include "vosmere/platform/posix/xml/builder.h"
#include "vosmere/platform/posix/xml/plain.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere::test {

/// A tree with everything that readers see of it; comparing does not recurse.
inline std::string Shown(const posix::XmlTree& tree) {
  std::string all;
  std::vector<const posix::XmlRecord*> following;
  const auto show = [&](const posix::XmlName* name, const posix::XmlValue& value) {
    std::vector<WChar> text(value.size + 1);
    value.CopyTo(text.data());
    all += std::to_string(name->type) + Utf8(name->text.data) + "=" + Utf8(text.data()) + ";" +
           std::to_string(value.size) + "\n";
  };
  for (const posix::XmlRecord* node = tree.arena.root; node || !following.empty();) {
    if (!node) {
      all += "up\n";
      node = following.back();
      following.pop_back();
    } else if (node->name->type != kXmlElement) {
      show(node->name, node->value);
      node = node->next;
    } else {
      show(node->name, {});
      for (unsigned i = 0; i < node->element.attributeCount; ++i)
        show(&(*node->name->names)[node->attributes()[i].attribute], node->attributes()[i]);
      following.push_back(node->next);
      node = node->element.firstChild;
    }
  }
  return all;
}

/// Nothing for a document that is not plain.
inline std::optional<std::string> ByTheFastPath(std::string_view document,
                                                const char* encoding = nullptr) {
  posix::XmlTree tree;
  if (!posix::BuildPlainXmlTree(tree, document, encoding)) return {};
  return Shown(tree);
}

/// Nothing for a document that does not load.
inline std::optional<std::string> ByTheParser(std::string_view document,
                                              const char* encoding = nullptr) {
  posix::XmlTree tree;
  posix::MemorySource source(document);
  try {
    BuildXmlTree(tree, source, encoding);
  } catch (const DocumentFailure&) {
    return {};
  }
  return Shown(tree);
}

}  // namespace vosmere::test
