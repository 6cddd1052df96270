// Cuts markup that may be damaged into tags and texts.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "vosmere/import/internal/repair_list.h"

namespace vosmere::importing {

/// An attribute of a start tag. The value has its references as they are.
struct Attribute {
  std::string_view name;
  std::string_view value;
  std::size_t at = 0;  ///< the position of the name
};

enum class TokenKind {
  kText,
  kCData,  ///< the content of a CDATA section
  kStart,
  kEnd,
  kOther,  ///< a comment, a declaration or a processing instruction
  kCut,    ///< a tag that the end of the document cuts off
};

struct Token {
  TokenKind kind = TokenKind::kText;
  std::string_view text;  ///< as it stands in the document; of a CDATA section without its marks
  std::string_view name;  ///< of a tag
  std::vector<Attribute> attributes;
  bool isEmpty = false;  ///< a start tag that ends with "/>"
  std::size_t at = 0;
  std::size_t end = 0;  ///< the position after it
};

/// What kind of markup it is. In HTML values without quotation marks and attributes without values
/// are no faults, and every quotation mark ends a value.
enum class Markup { kXml, kHtml };

/// Reads a text from its beginning. Every text can be read; the time is linear in its length. The
/// tokens refer to the text, which must outlive them.
///
/// Where a value ends is a guess if it contains quotation marks: in XML one ends it only if an
/// attribute or the end of the tag follows, and a value also ends before the next outline or item.
class Tokens {
 public:
  /// `repairs` receives what is repaired inside of tags; null for nobody.
  Tokens(std::string_view text, Markup markup, RepairList* repairs)
      : text_(text), markup_(markup), repairs_(repairs) {}

  /// Reads the next token; false at the end.
  bool Next(Token& token);

 private:
  /// Finds a text from some position on, and remembers when there is no more, so that many searches
  /// in vain take linear time.
  struct Finder {
    std::string_view what;
    bool isGone = false;
    std::size_t From(std::string_view text, std::size_t at);
  };

  char At(std::size_t i) const { return i < text_.size() ? text_[i] : '\0'; }
  bool BeginsMarkup(std::size_t at) const;
  void SkipBlanks();
  void ReadText(Token& token);
  void ReadOther(Token& token);
  void ReadUntil(Token& token, Finder& end);
  void ReadEndTag(Token& token);
  void ReadStartTag(Token& token);
  bool ReadAttribute(Token& token);
  bool ReadValue(Attribute& attribute);
  bool ReadQuoted(Attribute& attribute);
  void ReadUnquoted(Attribute& attribute);
  std::string_view ReadName();

  bool FindEndOfValue(std::size_t begin, char quote);
  bool EndsValue(std::size_t quoteAt) const;
  bool EndsTag(std::size_t close) const;
  std::size_t AfterBlanks(std::size_t at) const;
  bool BeginsKnownElement(std::size_t at) const;
  bool EndsBeforeElement(std::size_t begin, std::size_t at);
  bool EndsBeforeAttribute(std::size_t begin, std::size_t quoteAt);
  void Repair(RepairKind kind, std::size_t at, std::string_view found, std::string_view made);

  std::string_view text_;
  Markup markup_;
  RepairList* repairs_;
  std::size_t at_ = 0;
  std::size_t valueEnd_ = 0;  // what FindEndOfValue found, and where reading continues
  std::size_t valueNext_ = 0;
  bool isOpenEnded_[2] = {};  // no value with this quotation mark ends any more
  bool sawDoctype_ = false;
  bool isOutline_ = false;  // the tag that is being read
  Finder commentEnd_{"-->"}, cdataEnd_{"]]>"}, instructionEnd_{"?>"}, subsetEnd_{"]"}, tagEnd_{">"};
};

}  // namespace vosmere::importing
