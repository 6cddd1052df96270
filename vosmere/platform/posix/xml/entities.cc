// Limits on what the declarations of a document may expand to.
#include "vosmere/platform/posix/xml/entities.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace vosmere::posix {
namespace {

constexpr std::size_t kFreeExpansion = std::size_t{4} * 1024 * 1024;  // for any document
constexpr int kLongestLiteral = 64 * 1024;
constexpr int kDeepestNesting = 20;
constexpr std::size_t kMostReferences = 10000;
constexpr std::size_t kReferenceCost =
    64;  // a nested reference keeps the parser busy, however short
constexpr int kMostAttributeDeclarations = 1000;
constexpr std::size_t kLongestSubset = std::size_t{256} * 1024;
constexpr std::size_t kLongestDeclaration = std::size_t{16} * 1024;
constexpr std::ptrdiff_t kMostValues = 2000;

}  // namespace

DocumentFault XmlSubsetBudget::Read(std::size_t bytesRead, bool inDeclaration) const {
  const bool isTooLong = (begin_ > 0 && bytesRead - begin_ + inserted_ > kLongestSubset) ||
                         (inDeclaration && bytesRead - declaration_ > kLongestDeclaration);
  return isTooLong ? DocumentFault::kExpandsTooMuch : DocumentFault::kNone;
}

DocumentFault XmlSubsetBudget::Insert(const xmlParserCtxt* parser, const xmlEntity* entity,
                                      std::size_t bytesRead) {
  inserted_ += entity->length + kReferenceCost;
  values_ += std::count(entity->content, entity->content + entity->length, '|');
  if (parser->inputNr > kDeepestNesting || parser->depth > kDeepestNesting || values_ > kMostValues)
    return DocumentFault::kExpandsTooMuch;
  return Read(bytesRead, false);
}

DocumentFault XmlEntityBudget::Admit(xmlParserCtxt* parser, const xmlEntity* entity,
                                     std::size_t bytesRead) {
  // An undeclared entity is an error of the document, unless it may be declared in a part that is
  // not loaded.
  if (!entity)
    return parser->hasExternalSubset || parser->hasPErefs ? DocumentFault::kRefersOutside
                                                          : DocumentFault::kNone;
  if (entity->etype == XML_EXTERNAL_GENERAL_PARSED_ENTITY ||
      entity->etype == XML_EXTERNAL_GENERAL_UNPARSED_ENTITY)
    return DocumentFault::kRefersOutside;
  if (entity->length > kLongestLiteral) return DocumentFault::kExpandsTooMuch;
  const Expansion expansion = Measure(parser->myDoc, entity, 0);
  if (expansion.isEndless) return DocumentFault::kMalformed;
  if (expansion.levels > kDeepestNesting || expansion.references > kMostReferences)
    return DocumentFault::kExpandsTooMuch;
  return Spend(entity->length + expansion.references * kReferenceCost, bytesRead);
}

// A large document may expand in proportion to its size.
DocumentFault XmlEntityBudget::Spend(std::size_t bytes, std::size_t bytesRead) {
  spent_ += bytes;
  return spent_ > kFreeExpansion + bytesRead ? DocumentFault::kExpandsTooMuch
                                             : DocumentFault::kNone;
}

DocumentFault XmlEntityBudget::DeclareAttribute() {
  return ++attributeDeclarations_ > kMostAttributeDeclarations ? DocumentFault::kExpandsTooMuch
                                                               : DocumentFault::kNone;
}

// libxml2 recurses for each level of nested entities, so the depth has to be known before it
// starts.
XmlEntityBudget::Expansion XmlEntityBudget::Measure(xmlDoc* document, const xmlEntity* entity,
                                                    int level) {
  Expansion whole;
  if (level > kDeepestNesting || !entity->content) return whole;
  const auto [known, isNew] = measured_.try_emplace(entity);
  if (!isNew) return known->second;
  known->second.isEndless = true;  // as long as it is being measured: then it refers to itself
  const char* at = reinterpret_cast<const char*>(entity->content);
  while ((at = std::strchr(at, '&')) != nullptr) {
    const char* const end = std::strchr(++at, ';');
    if (!end) break;
    if (*at == '#') continue;
    const std::string name(at, end);
    at = end;
    const xmlEntity* const inner =
        xmlGetDocEntity(document, reinterpret_cast<const xmlChar*>(name.c_str()));
    if (!inner) continue;
    const Expansion part = Measure(document, inner, level + 1);
    whole.isEndless |= part.isEndless;
    whole.levels = std::max(whole.levels, part.levels + 1);
    whole.references = std::min(whole.references + part.references + 1, kMostReferences + 1);
  }
  return measured_[entity] = whole;
}

}  // namespace vosmere::posix
