// Bounds on what a document's declarations may expand to.
#pragma once

#include <libxml/parser.h>

#include <cstddef>
#include <unordered_map>

#include "vosmere/xml/document_error.h"

namespace vosmere::posix {

/// Bounds the internal subset, with its parameter entities written out: the parser compares each of
/// the values that one declaration lists with all others, and frees the list by recursion.
class XmlSubsetBudget {
 public:
  // `bytesRead` is how much of the document the parser has taken.

  void Begin(std::size_t bytesRead) { begin_ = declaration_ = bytesRead; }
  /// A declaration is over, or one attribute's part of it, or a comment or instruction.
  void EndDeclaration(std::size_t bytesRead) {
    declaration_ = bytesRead;
    values_ = 0;
  }

  /// Whether the subset may go on behind what was read; `inDeclaration` unless that is a literal,
  /// a comment or an instruction.
  DocumentFault Read(std::size_t bytesRead, bool inDeclaration) const;
  /// kNone when an internal parameter entity may be inserted.
  DocumentFault Insert(const xmlParserCtxt* parser, const xmlEntity* entity, std::size_t bytesRead);

 private:
  std::size_t begin_ = 0;  // not yet
  std::size_t declaration_ = 0;
  std::size_t inserted_ = 0;
  std::ptrdiff_t values_ = 0;  // listed by parameter entities since the last declaration
};

/// Says for every reference whether it may be expanded. The parser asks for each expansion, nested
/// ones included, so the literals that were handed out add up to what was expanded.
class XmlEntityBudget {
 public:
  /// kNone when the entity may be expanded. `entity` may be null, for one that is not declared.
  /// `bytesRead` is how much of the document the parser has taken.
  DocumentFault Admit(xmlParserCtxt* parser, const xmlEntity* entity, std::size_t bytesRead);

  /// Accounts for `bytes` of defaulted attributes.
  DocumentFault Spend(std::size_t bytes, std::size_t bytesRead);

  DocumentFault DeclareAttribute();

 private:
  /// What one reference to an entity sets off: levels of entities within entities, and how many
  /// references in all, counting no further than is needed to refuse it.
  struct Expansion {
    int levels = 1;
    std::size_t references = 0;
    bool isEndless = false;
  };
  Expansion Measure(xmlDoc* document, const xmlEntity* entity, int level);

  std::size_t spent_ = 0;
  int attributeDeclarations_ = 0;
  std::unordered_map<const xmlEntity*, Expansion> measured_;
};

}  // namespace vosmere::posix
