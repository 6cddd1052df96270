// The elements and attributes that a reader knows, in a table that reads like the document.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/types.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere::tool {

/// An element that a reader knows. It may have several words, which add up.
///
/// Elements stand in the scope of the element around them, which is called like that element's
/// word; the root element stands in "". A name that ends in '*' is the beginning of one, in any
/// letter case.
struct Word {
  std::string_view in;       ///< the scopes it may stand in, between blanks; "*" is any
  std::string_view element;  ///< its name
  /// What is kept of it, between blanks: its attributes, and "=" for its own text. Behind each may
  /// stand what it has to be: '#' a number, '?' true or false, '$' an identity, '<' and the length
  /// it stays below, or one of the values "(a|b)". '!' marks what is known and not kept here.
  std::string_view values = {};
  bool isItem = false;         ///< whether places are named by it
  std::string_view lost = {};  ///< of one that is known and not kept: what to say of that
};

/// Says something of the element that is looked at, or of an item inside it.
struct Report {
  std::function<void(const std::string& what, const XmlNode& inside)> add;

  void operator()(const std::string& what, const XmlNode& inside = {}) const { add(what, inside); }
};

/// What a reader knows.
struct Vocabulary {
  std::span<const Word> words;
  /// Whether the reader looks through all elements but items, so that only these make scopes.
  bool looksThrough = false;
  /// Whether of several equal elements beside each other that are no items the reader takes one;
  /// otherwise this holds for texts alone.
  bool takesOne = false;
  /// What the reader takes an element for when the name alone does not tell; null when it always
  /// does.
  std::string (*nameOf)(const XmlNode& element) = nullptr;
  /// Complains of more about an element that is kept; `scope` is where it stands.
  void (*inspect)(const XmlNode& element, std::string_view name, std::string_view scope,
                  const Report& report) = nullptr;
};

/// All words for one element.
class Words {
 public:
  Words(const Vocabulary& vocabulary, std::string_view name, std::string_view scope);

  bool AreKnown() const { return !words_.empty(); }
  const Word& First() const { return *words_[0]; }
  /// What a value has to be, which may be anything; none when it is not known.
  std::optional<std::string_view> DemandOn(std::string_view value) const;

 private:
  std::vector<const Word*> words_;
};

/// Reports a value that is not what it has to be. `element` and `attribute`, which is empty for the
/// element's own text, are its names.
void CheckValue(std::string_view demand, const std::string& element, const std::string& attribute,
                const WChar* value, const Report& report);

}  // namespace vosmere::tool
