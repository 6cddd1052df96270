// Limits on the size that the entities and other declarations of a document may expand to.
#pragma once

#include <libxml/parser.h>

#include <cstddef>
#include <unordered_map>

#include "vosmere/base/document_error.h"

namespace vosmere::posix {

/// Limits the size of the internal DTD subset, including the text of its parameter entities.
/// libxml2 compares each of the values listed in one declaration with all others, which takes
/// quadratic time, and frees the list by recursion, which a long one overflows the stack with.
class XmlSubsetBudget {
 public:
  // `bytesRead` is the number of bytes that libxml2 has read so far.

  /// The internal subset begins.
  void Begin(std::size_t bytesRead) { begin_ = declaration_ = bytesRead; }
  /// A declaration, one attribute's part of it, a comment or a processing instruction ends.
  void EndDeclaration(std::size_t bytesRead) {
    declaration_ = bytesRead;
    values_ = 0;
  }

  /// kNone when parsing the subset may continue. `inDeclaration` is false in a literal, a comment
  /// or an instruction.
  DocumentFault Read(std::size_t bytesRead, bool inDeclaration) const;
  /// kNone when an internal parameter entity may be inserted.
  DocumentFault Insert(const xmlParserCtxt* parser, const xmlEntity* entity, std::size_t bytesRead);

 private:
  std::size_t begin_ = 0;  // 0 before the subset
  std::size_t declaration_ = 0;
  std::size_t inserted_ = 0;
  std::ptrdiff_t values_ = 0;  // values listed by parameter entities since the last declaration
};

/// Decides for every reference to an entity whether it may be expanded. libxml2 asks for each
/// expansion, nested ones included, so the sizes of the admitted entities add up to the size of the
/// expansion.
class XmlEntityBudget {
 public:
  /// kNone when the entity may be expanded. `entity` is null if it is not declared. `bytesRead` is
  /// the number of bytes that libxml2 has read so far.
  DocumentFault Admit(xmlParserCtxt* parser, const xmlEntity* entity, std::size_t bytesRead);

  /// Adds `bytes` of defaulted attributes to the expansion.
  DocumentFault Spend(std::size_t bytes, std::size_t bytesRead);

  /// Counts an attribute declaration.
  DocumentFault DeclareAttribute();

 private:
  /// The effect of one reference to an entity: the levels of nested entities, and the total number
  /// of references, counted only as far as is needed to refuse it.
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
