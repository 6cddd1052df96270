// Builds a tree from the callbacks of libxml2's SAX2 interface.
#include "vosmere/platform/posix/xml/builder.h"

#include <libxml/SAX2.h>
#include <libxml/encoding.h>
#include <libxml/parser.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <deque>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/platform/internal/xml_document.h"
#include "vosmere/platform/posix/xml/entities.h"
#include "vosmere/platform/posix/xml/memory.h"

namespace vosmere::posix {
namespace {

constexpr xmlChar kXmlns[] = "xmlns";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

const char* Chars(const xmlChar* text) {
  return reinterpret_cast<const char*>(text);
}

// libxml2 compares every pair of an element's attributes, and every prefix with all namespaces in
// scope, so their numbers are bounded.
constexpr int kMostAttributes = 2000;
constexpr int kMostNamespaces = 250;
// libxml2's dictionary slows down as it grows, so it is bounded. The tree has a name for each type
// of node, and stores names with their prefix, so it may have more.
constexpr int kMostNames = 50000;
constexpr std::size_t kMostTreeNames = std::size_t{3} * kMostNames;
constexpr int kAttributeFields = 5;  // pointers that libxml2 keeps and passes for each attribute
constexpr int kNamespaceFields = 2;
// Bytes that count for an attribute besides its value when its default is expanded.
constexpr std::size_t kAttributeCost = 16;

/// The text for DocumentError::reason.
const char* ReasonFor(DocumentFault fault) {
  switch (fault) {
    case DocumentFault::kTooDeep: return "elements are nested too deeply";
    case DocumentFault::kExpandsTooMuch: return "the document expands to too much text";
    case DocumentFault::kRefersOutside: return "the text refers to an entity outside the document";
    case DocumentFault::kNoMemory: return "memory ran out";
    default: return "the document is not well-formed";
  }
}

/// Builds the tree from the parser's callbacks.
///
/// libxml2 is C code: no exception may pass through it. A failure is recorded, the parser receives
/// no more bytes, and its further callbacks are ignored. xmlStopParser is not used, because it
/// frees what the parser is working on, which most callbacks do not survive.
class Builder {
 public:
  Builder(XmlTree& tree, XmlSource& source) : tree_(tree), source_(source) {}

  /// Throws DocumentFailure, std::bad_alloc, or what the source threw. A null `encoding` is
  /// detected from the bytes.
  void Parse(const char* encoding);

 private:
  static Builder& Self(void* builder) { return *static_cast<Builder*>(builder); }
  static xmlSAXHandler Handlers();
  static void HandleDeclarations(xmlSAXHandler& sax);
  static void HandleContent(xmlSAXHandler& sax);

  /// Runs a callback, unless parsing has failed already, and keeps exceptions from passing through
  /// libxml2.
  template <class Step>
  void Guard(Step step) noexcept {
    if (stopped_) return;
    try {
      if (memory_.RanOut()) throw std::bad_alloc();  // a text may be missing
      step();
    } catch (...) {
      thrown_ = std::current_exception();
      Stop(DocumentFault::kNoMemory);
    }
  }

  void Stop(DocumentFault fault);
  void Check(DocumentFault fault) {
    if (fault != DocumentFault::kNone) Stop(fault);
  }
  int Read(char* bytes, int capacity) noexcept;
  bool IsAtEnd() const;
  xmlEntity* Entity(const xmlChar* name) noexcept;
  xmlEntity* ParameterEntity(const xmlChar* name) noexcept;
  void EndDeclaration() { subset_.EndDeclaration(bytesRead_); }
  void StartElement(const xmlChar* local, const xmlChar* prefix, int namespaceCount,
                    const xmlChar** namespaces, int attributeCount, int defaultedCount,
                    const xmlChar** attributes);
  XmlPlace PlaceOfTag() const;
  const XmlName* Intern(const xmlChar* prefix, const xmlChar* local, int type);
  void EndElement();
  void AddText(const xmlChar* text, int length);
  void AddLeaf(const XmlName* name, const xmlChar* text);
  void FlushText();
  void Note(const xmlError* error);

  XmlTree& tree_;
  XmlSource& source_;
  const XmlMemoryWatch memory_;
  xmlParserCtxt* parser_ = nullptr;
  XmlEntityBudget budget_;
  XmlSubsetBudget subset_;
  /// A parameter entity with a copy of its text, for one insertion.
  struct Insertion {
    xmlEntity entity;
    std::string text;
  };
  std::deque<Insertion> insertions_;
  XmlGrowth growth_{tree_};
  std::string text_;
  std::string name_;
  std::size_t bytesRead_ = 0;
  bool stopped_ = false;
  DocumentError error_;
  std::exception_ptr thrown_;
};

/// Suppresses messages about encodings, which libxml2 reports outside of any document and would
/// print to standard error.
class Silence {
 public:
  Silence() : handler_(xmlStructuredError), context_(xmlStructuredErrorContext) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlError*) {});
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() { xmlSetStructuredErrorFunc(context_, handler_); }

 private:
  xmlStructuredErrorFunc handler_;
  void* context_;
};

void Builder::Parse(const char* encoding) {
  parser_ = xmlNewParserCtxt();
  if (!parser_) throw std::bad_alloc();
  *parser_->sax = Handlers();
  parser_->userData = this;
  const auto read = [](void* self, char* bytes, int capacity) {
    return Self(self).Read(bytes, capacity);
  };
  // Without XML_PARSE_IGNORE_ENC libxml2 prefers the encoding that the document declares.
  xmlDoc* const document =
      xmlCtxtReadIO(parser_, read, nullptr, this, nullptr, encoding,
                    XML_PARSE_NOENT | XML_PARSE_NONET | (encoding ? XML_PARSE_IGNORE_ENC : 0));
  const bool isWhole = document && parser_->wellFormed && tree_.arena.root && IsAtEnd();
  if (!isWhole) Stop(DocumentFault::kMalformed);
  xmlFreeDoc(document);
  xmlFreeParserCtxt(parser_);
  if (thrown_) std::rethrow_exception(thrown_);
  if (memory_.RanOut()) throw std::bad_alloc();  // the tree may be incomplete
  if (error_.fault != DocumentFault::kNone) throw DocumentFailure{error_};
}

// Whether all input was used. After the root element libxml2 treats a null byte, bytes that cannot
// be converted, and an incomplete character as the end of the document.
bool Builder::IsAtEnd() const {
  const xmlParserInput* const input = parser_->input;
  if (!input || !input->buf || input->buf->error != 0 || input->cur != input->end) return false;
  return !input->buf->raw || xmlBufUse(input->buf->raw) == 0;
}

// Declarations are passed on to libxml2's own handlers; it cannot expand entities otherwise.
void Builder::HandleDeclarations(xmlSAXHandler& sax) {
  sax.startDocument = [](void* self) { xmlSAX2StartDocument(Self(self).parser_); };
  sax.internalSubset = [](void* self, const xmlChar* name, const xmlChar* publicId,
                          const xmlChar* systemId) {
    xmlSAX2InternalSubset(Self(self).parser_, name, publicId, systemId);
    Self(self).subset_.Begin(Self(self).bytesRead_);
  };
  sax.entityDecl = [](void* self, const xmlChar* name, int type, const xmlChar* publicId,
                      const xmlChar* systemId, xmlChar* content) {
    xmlSAX2EntityDecl(Self(self).parser_, name, type, publicId, systemId, content);
    Self(self).EndDeclaration();
  };
  sax.elementDecl = [](void* self, const xmlChar*, int, xmlElementContent*) {
    Self(self).EndDeclaration();
  };
  sax.notationDecl = [](void* self, const xmlChar*, const xmlChar* publicId,
                        const xmlChar* systemId) {
    Self(self).EndDeclaration();
    if (!publicId && !systemId) Self(self).Stop(DocumentFault::kMalformed);
  };
  sax.attributeDecl = [](void* self, const xmlChar*, const xmlChar*, int, int, const xmlChar*,
                         xmlEnumeration* values) {
    xmlFreeEnumeration(values);
    Self(self).parser_->instate = XML_PARSER_DTD;  // libxml2 stays in the default value's state
    Self(self).EndDeclaration();
    Self(self).Check(Self(self).budget_.DeclareAttribute());
  };
}

void Builder::HandleContent(xmlSAXHandler& sax) {
  sax.getEntity = [](void* self, const xmlChar* name) { return Self(self).Entity(name); };
  sax.getParameterEntity = [](void* self, const xmlChar* name) {
    return Self(self).ParameterEntity(name);
  };
  sax.reference = [](void* self, const xmlChar*) {
    Self(self).Guard([=] { Self(self).Stop(DocumentFault::kRefersOutside); });
  };
  sax.startElementNs = [](void* self, const xmlChar* local, const xmlChar* prefix, const xmlChar*,
                          int namespaceCount, const xmlChar** namespaces, int attributeCount,
                          int defaultedCount, const xmlChar** attributes) {
    Self(self).Guard([=] {
      Self(self).StartElement(local, prefix, namespaceCount, namespaces, attributeCount,
                              defaultedCount, attributes);
    });
  };
  sax.endElementNs = [](void* self, const xmlChar*, const xmlChar*, const xmlChar*) {
    Self(self).Guard([=] { Self(self).EndElement(); });
  };
  sax.characters = [](void* self, const xmlChar* text, int length) {
    Self(self).Guard([=] { Self(self).AddText(text, length); });
  };
  sax.ignorableWhitespace = sax.characters;
  sax.cdataBlock = [](void* self, const xmlChar* text, int length) {
    Self(self).Guard([=] {
      Builder& builder = Self(self);
      builder.FlushText();
      builder.growth_.Add(
          builder.tree_.arena.NewNode(builder.tree_.names.Intern(kXmlCDataName, kXmlCData),
                                      builder.tree_.arena.NewValue(Chars(text), length)));
    });
  };
  sax.comment = [](void* self, const xmlChar* text) {
    Self(self).Guard([=] {
      Self(self).AddLeaf(Self(self).tree_.names.Intern(kXmlCommentName, kXmlComment), text);
    });
  };
  sax.processingInstruction = [](void* self, const xmlChar* target, const xmlChar* text) {
    Self(self).Guard([=] {
      Self(self).AddLeaf(Self(self).tree_.names.Intern(Chars(target), kXmlProcessingInstruction),
                         text);
    });
  };
}

xmlSAXHandler Builder::Handlers() {
  xmlSAXHandler sax = {};
  sax.initialized = XML_SAX2_MAGIC;
  HandleDeclarations(sax);
  HandleContent(sax);
  sax.serror = [](void* self, xmlError* error) { Self(self).Note(error); };
  return sax;
}

void Builder::Stop(DocumentFault fault) {
  if (stopped_) return;
  stopped_ = true;
  if (error_.fault != DocumentFault::kNone) return;  // the parser has reported an error
  error_.fault = fault;
  if (parser_->input) {
    error_.line = parser_->input->line;
    error_.column = parser_->input->col;
  }
  std::snprintf(error_.reason, sizeof error_.reason, "%s", ReasonFor(fault));
  growth_.StorePath(&error_);
}

void Builder::Note(const xmlError* error) {
  if (error_.fault != DocumentFault::kNone || error->level != XML_ERR_FATAL) return;
  error_.fault =
      error->code == XML_ERR_NO_MEMORY ? DocumentFault::kNoMemory : DocumentFault::kMalformed;
  error_.line = error->line;
  error_.column = error->int2;
  std::snprintf(error_.reason, sizeof error_.reason, "%s", error->message ? error->message : "");
  error_.reason[std::strcspn(error_.reason, "\n")] = 0;
  growth_.StorePath(&error_);
}

// Fills `bytes` completely if possible: libxml2 misreads what follows a piece that is shorter and
// ends between two characters.
int Builder::Read(char* bytes, int capacity) noexcept {
  if (error_.fault != DocumentFault::kNone) return -1;
  // In the middle of a start tag, `maxatts` shows how many attributes libxml2 has read so far.
  if (parser_->maxatts > kMostAttributes * kAttributeFields ||
      parser_->nsNr > kMostNamespaces * kNamespaceFields ||
      xmlDictSize(parser_->dict) > kMostNames || tree_.names.size() > kMostTreeNames)
    Stop(DocumentFault::kExpandsTooMuch);
  if (parser_->inSubset == 1) Check(subset_.Read(bytesRead_, parser_->instate == XML_PARSER_DTD));
  int got = 0;
  Guard([&] {
    int part = 0;
    while (got < capacity && (part = source_.Read(bytes + got, capacity - got)) > 0) got += part;
    bytesRead_ += got;
    if (part < 0 && got == 0) Stop(DocumentFault::kMalformed);
  });
  return stopped_ ? -1 : got;
}

xmlEntity* Builder::Entity(const xmlChar* name) noexcept {
  xmlEntity* const entity = xmlGetDocEntity(parser_->myDoc, name);
  // While an entity is being declared, libxml2 looks it up, and the entities in its text may not be
  // declared yet.
  if (parser_->instate == XML_PARSER_ENTITY_DECL || parser_->instate == XML_PARSER_ENTITY_VALUE)
    return entity;
  Guard([&] { Check(budget_.Admit(parser_, entity, bytesRead_)); });
  return stopped_ ? nullptr : entity;
}

xmlEntity* Builder::ParameterEntity(const xmlChar* name) noexcept {
  xmlEntity* const entity = xmlGetParameterEntity(parser_->myDoc, name);
  if (entity && entity->etype == XML_EXTERNAL_PARAMETER_ENTITY) {
    parser_->hasPErefs = 1;  // something is left out from here on, which is not an error yet
    return nullptr;
  }
  // If libxml2 reaches its own limit on references here, it may loop for ever. This option lifts
  // it; XmlSubsetBudget applies instead.
  parser_->options |= XML_PARSE_HUGE;
  if (!entity || !entity->content) return nullptr;
  Guard([&] {
    Check(subset_.Insert(parser_, entity, bytesRead_));
    insertions_.push_back({*entity, Chars(entity->content)});
  });
  if (stopped_) return nullptr;
  // Each insertion has its own text: with the same text twice in a row, libxml2 would assume that
  // it makes no progress. `orig` is set because libxml2 otherwise stores a literal there that has
  // to be freed.
  Insertion& insertion = insertions_.back();
  insertion.entity.content = insertion.entity.orig =
      reinterpret_cast<xmlChar*>(insertion.text.data());
  return &insertion.entity;
}

void Builder::StartElement(const xmlChar* local, const xmlChar* prefix, int namespaceCount,
                           const xmlChar** namespaces, int attributeCount, int defaultedCount,
                           const xmlChar** attributes) {
  FlushText();
  if (growth_.depth() >= kMaxXmlDepth) return Stop(DocumentFault::kTooDeep);
  // Lifts libxml2's limits on the depth of elements and the size of a text, which valid documents
  // exceed. The depth is limited above, the expansion of entities by XmlEntityBudget.
  parser_->options |= XML_PARSE_HUGE;
  XmlArena& arena = tree_.arena;
  XmlRecord* const element =
      arena.NewElement(Intern(prefix, local, kXmlElement), namespaceCount + attributeCount);
  auto* record = const_cast<XmlValue*>(element->attributes());
  const auto add = [&](const XmlName* name, const char* value, std::size_t length) {
    *record = arena.NewValue(value, length);
    record++->attribute = name->number;
  };
  for (int i = 0; i < namespaceCount; ++i, namespaces += 2) {
    const xmlChar* const declared = namespaces[0];
    const char* const uri = namespaces[1] ? Chars(namespaces[1]) : "";
    add(Intern(declared ? kXmlns : nullptr, declared ? declared : kXmlns, kXmlAttribute), uri,
        std::strlen(uri));
  }
  std::size_t defaulted = 0;
  for (int i = 0; i < attributeCount; ++i, attributes += kAttributeFields) {
    const auto length = static_cast<std::size_t>(attributes[4] - attributes[3]);
    add(Intern(attributes[1], attributes[0], kXmlAttribute), Chars(attributes[3]), length);
    if (i >= attributeCount - defaultedCount) defaulted += length + kAttributeCost;
  }
  if (defaulted > 0) Check(budget_.Spend(defaulted, bytesRead_));
  growth_.Add(element);
  growth_.Open(element);
  if (tree_.keepsPlaces) tree_.places.emplace(element, PlaceOfTag());
}

// The parser stands at the end of the start tag. Its buffer still has the tag, and mostly the line
// before it; an entity's is its own.
XmlPlace Builder::PlaceOfTag() const {
  const xmlParserInput& input = *parser_->input;
  const std::string_view read(Chars(input.base), static_cast<std::size_t>(input.cur - input.base));
  const std::size_t tag = read.rfind('<');
  if (tag == read.npos) return {input.line, 0};
  const std::string_view behind = read.substr(tag);
  const auto lines = static_cast<int>(std::count(behind.begin(), behind.end(), '\n'));
  const std::size_t lineEnd = read.substr(0, tag).rfind('\n');
  XmlPlace place{input.line - lines, 0};
  if (lineEnd == read.npos && (lines > 0 || place.line > 1 || input.consumed > 0)) return place;
  place.column = 1;
  std::string_view before = read.substr(lineEnd + 1, tag - lineEnd - 1);
  if (lineEnd == read.npos && before.starts_with(kByteOrderMark))
    before.remove_prefix(kByteOrderMark.size());
  place.Pass(before);
  return place;
}

const XmlName* Builder::Intern(const xmlChar* prefix, const xmlChar* local, int type) {
  if (!prefix) return tree_.names.Intern(Chars(local), type);
  name_.assign(Chars(prefix)).append(1, ':').append(Chars(local));
  return tree_.names.Intern(name_, type);
}

void Builder::EndElement() {
  FlushText();
  growth_.Close();
}

// libxml2 reports a text in several pieces, which FlushText joins into one node.
void Builder::AddText(const xmlChar* text, int length) {
  text_.append(Chars(text), length);
}

void Builder::AddLeaf(const XmlName* name, const xmlChar* text) {
  FlushText();
  if (growth_.depth() == 0) return EndDeclaration();  // before or after the root element
  const char* const utf8 = text ? Chars(text) : "";
  growth_.Add(tree_.arena.NewNode(name, tree_.arena.NewValue(utf8, std::strlen(utf8))));
}

void Builder::FlushText() {
  if (text_.empty()) return;
  growth_.Add(tree_.arena.NewNode(tree_.names.Intern(kXmlTextName, kXmlText),
                                  tree_.arena.NewValue(text_.data(), text_.size())));
  text_.clear();
}

// If memory runs out here, libxml2 would not know some encodings for the rest of the process, so it
// is cleaned up for another try.
bool Initialise() {
  const Silence silence;
  const XmlMemoryWatch memory;
  xmlInitParser();
  xmlInitCharEncodingHandlers();
  if (!memory.RanOut()) return true;
  xmlCleanupCharEncodingHandlers();
  throw std::bad_alloc();
}

}  // namespace

void BuildXmlTree(XmlTree& tree, XmlSource& source, const char* encoding) {
  // Before anything else of libxml2: its first use, be it only to silence it, is not for several
  // threads at the same time.
  static const bool initialised = Initialise();
  static_cast<void>(initialised);
  const Silence silence;
  Builder(tree, source).Parse(encoding);
}

}  // namespace vosmere::posix
