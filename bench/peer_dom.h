// A common interface to the documents of other XML libraries, used in the simple way that their
// manuals show. `Loaded` holds a document; its `Root` is null if the document cannot be parsed.
#pragma once

#include <libxml/parser.h>

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace vosmere::bench {

struct Libxml2Dom {
  using Node = const xmlNode*;

  class Loaded {
   public:
    explicit Loaded(const std::string& document)
        : dom_(xmlReadMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                             XML_PARSE_HUGE | XML_PARSE_NONET | XML_PARSE_COMPACT)) {}
    Loaded(const Loaded&) = delete;
    Loaded& operator=(const Loaded&) = delete;
    ~Loaded() { xmlFreeDoc(dom_); }

    Node Root() const { return dom_ ? xmlDocGetRootElement(dom_) : nullptr; }

   private:
    xmlDoc* dom_;
  };

  static std::string_view View(const xmlChar* text) {
    return text ? std::string_view(reinterpret_cast<const char*>(text)) : std::string_view();
  }

  static bool Named(Node node, std::string_view name) {
    const std::string_view local = View(node->name);
    const std::string_view prefix = node->ns ? View(node->ns->prefix) : std::string_view();
    if (prefix.empty()) return local == name;
    return name.size() == prefix.size() + 1 + local.size() &&
           name.substr(0, prefix.size()) == prefix && name[prefix.size()] == ':' &&
           name.substr(prefix.size() + 1) == local;
  }

  static std::string_view Text(Node node) {
    return node->children ? View(node->children->content) : std::string_view();
  }

  template <class Visit>
  static void ForEachChild(Node node, Visit visit) {
    for (Node child = node->children; child; child = child->next)
      if (child->type == XML_ELEMENT_NODE) visit(child);
  }

  template <class Visit>
  static void ForEachAttribute(Node node, Visit visit) {
    for (const xmlAttr* attribute = node->properties; attribute; attribute = attribute->next)
      visit(View(attribute->name),
            attribute->children ? View(attribute->children->content) : std::string_view());
  }
};

struct PugixmlDom {
  using Node = pugi::xml_node;

  class Loaded {
   public:
    explicit Loaded(const std::string& document) {
      dom_.load_buffer(document.data(), document.size());
    }

    Node Root() const { return dom_.document_element(); }

   private:
    pugi::xml_document dom_;
  };

  static bool Named(Node node, std::string_view name) { return node.name() == name; }
  static std::string_view Text(Node node) { return node.child_value(); }

  template <class Visit>
  static void ForEachChild(Node node, Visit visit) {
    for (Node child = node.first_child(); child; child = child.next_sibling())
      if (child.type() == pugi::node_element) visit(child);
  }

  template <class Visit>
  static void ForEachAttribute(Node node, Visit visit) {
    for (pugi::xml_attribute attribute : node.attributes())
      visit(attribute.name(), attribute.value());
  }
};

}  // namespace vosmere::bench
