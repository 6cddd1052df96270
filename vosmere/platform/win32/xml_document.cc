// XmlDocument, XmlNode and XmlAttributes over the system's XML DOM.
#include "vosmere/platform/internal/xml_document.h"

#include "vosmere/platform/win32/com.h"

#include <msxml2.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <string_view>

#include "vosmere/base/owned_text.h"
#include "vosmere/platform/internal/file.h"
#include "vosmere/platform/win32/xml_error_place.h"
#include "vosmere/platform/win32/xml_intake.h"

namespace vosmere {

using win32::Counted;
using win32::Native;
using win32::Ours;
using win32::OwnedVariant;

struct XmlNodeHandle {
  /// Takes ownership of one reference.
  static XmlNode Make(IXMLDOMNode* node);
};

namespace {

constexpr IID kDocument2 = {
    0x2933bf95, 0x7b36, 0x11d2, {0xb2, 0x0e, 0x00, 0xc0, 0x4f, 0x98, 0x3e, 0x60}};
constexpr int kDeepestWithoutPlaces = 256;  // the limit of a DOM that does not report places
constexpr HRESULT kDeeperThanAllowed = static_cast<HRESULT>(0xC00CEE81);

[[noreturn]] void Throw(DocumentFault fault, ULONG systemError, const char* reason) {
  DocumentFailure failure;
  failure.error.fault = fault;
  failure.error.systemError = systemError;
  std::snprintf(failure.error.reason, sizeof failure.error.reason, "%s", reason);
  throw failure;
}

/// Turns the failure of a DOM operation into an exception.
void Check(HRESULT result) {
  if (result == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(result))
    Throw(DocumentFault::kHandlerFailed, result, "the system's DOM refused an operation");
}

// --- loading ---

using Document = Counted<IXMLDOMDocument2>;

void SetProperty(IXMLDOMDocument2* document, const WChar* name, LONG value) {
  OwnedVariant number;
  number.vt = VT_I4;
  number.lVal = value;
  document->setProperty(Native(SystemText(name).get()), number);
}

void Create(Document* document) {
  CLSID clsid;
  HRESULT result = ::CLSIDFromProgID(L"Msxml2.DOMDocument", &clsid);
  if (SUCCEEDED(result))
    result = ::CoCreateInstance(
        clsid, nullptr,
        CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER,
        kDocument2, reinterpret_cast<void**>(document->out()));
  if (FAILED(result))
    Throw(DocumentFault::kParserUnavailable, result,
          "the system's XML DOM cannot be created; has this thread initialised COM?");
  IXMLDOMDocument2& dom = *document->get();
  Check(dom.put_async(VARIANT_FALSE));
  Check(dom.put_preserveWhiteSpace(VARIANT_TRUE));
  Check(dom.put_validateOnParse(VARIANT_FALSE));
  Check(dom.put_resolveExternals(VARIANT_FALSE));
  // Limits the depth. A DOM that does not know this property has a limit of its own.
  SetProperty(&dom, Ours(L"MaxElementDepth"), kMaxXmlDepth);
}

[[noreturn]] void ThrowParseError(IXMLDOMDocument2* document, std::string_view source) {
  DocumentFailure failure;
  DocumentError& error = failure.error;
  Counted<IXMLDOMParseError> refusal;
  Check(document->get_parseError(refusal.out()));
  long code = 0, line = 0, column = 0;
  OwnedVariant reason;
  refusal->get_errorCode(&code);
  refusal->get_line(&line);
  refusal->get_linepos(&column);
  if (refusal->get_reason(&reason.bstrVal) == S_OK) reason.vt = VT_BSTR;
  error.fault = DocumentFault::kMalformed;
  error.systemError = static_cast<ULONG>(code);
  error.line = line;
  error.column = column;
  win32::SetReason(&error, Ours(L"the document is not well-formed"));
  if (line == 0) {
    win32::FindErrorPlace(source, kDeepestWithoutPlaces, &error);
  } else {
    DocumentError found;  // no DOM reports the element
    win32::FindErrorPlace(source, kMaxXmlDepth, &found);
    std::memcpy(error.element, found.element, sizeof error.element);
    if (reason.vt == VT_BSTR) win32::SetReason(&error, Ours(reason.bstrVal));
  }
  if (code == kDeeperThanAllowed) error.fault = DocumentFault::kTooDeep;
  throw failure;
}

bool IsWine() {
  static const bool isWine =
      ::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
  return isWine;
}

/// One thread at a time in Wine's parser, which keeps its last error for all threads: two malformed
/// documents at once would free it twice. Elsewhere it does nothing.
class ParserTurn {
 public:
  ParserTurn() {
    static std::mutex parser;
    if (IsWine()) lock_ = std::unique_lock(parser);
  }

 private:
  std::unique_lock<std::mutex> lock_;
};

/// Bytes in the form of a safe array, from which the DOM loads.
class ByteArray {
 public:
  explicit ByteArray(std::uint64_t size) {
    if (size > kMostBytes) throw std::bad_alloc();
    size_ = static_cast<ULONG>(size);
    variant_.parray = ::SafeArrayCreateVector(VT_UI1, 0, size_);
    if (!variant_.parray) throw std::bad_alloc();
    variant_.vt = VT_ARRAY | VT_UI1;
  }

  explicit ByteArray(std::string_view bytes) : ByteArray(bytes.size()) {
    if (size_ > 0) std::memcpy(data(), bytes.data(), size_);
  }

  char* data() const { return static_cast<char*>(variant_.parray->pvData); }
  std::string_view bytes() const { return {data(), size_}; }
  const VARIANT& variant() const { return variant_; }

 private:
  static constexpr std::uint64_t kMostBytes = 0x7FFFFFFF;

  OwnedVariant variant_;
  ULONG size_ = 0;
};

/// Parses `array`. On failure it throws, with the place of the error in `readable`.
void* ParseArray(const ByteArray& array, std::string_view readable) {
  const ParserTurn turn;
  Document document;
  Create(&document);
  VARIANT_BOOL loaded = VARIANT_FALSE;
  Check(document->load(array.variant(), &loaded));
  if (!loaded) ThrowParseError(document.get(), readable);
  win32::CheckEnd(array.bytes());
  return document.Detach();
}

// The original is parsed too, because it has to be well-formed itself: the expanded document could
// be well-formed by accident.
void* LoadArray(const ByteArray& array) {
  const std::string expanded = win32::Admit(array.bytes());
  if (expanded.empty()) return ParseArray(array, array.bytes());
  static_cast<IXMLDOMDocument2*>(ParseArray(array, expanded))->Release();
  return ParseArray(ByteArray(expanded), expanded);
}

/// Overwrites the encoding in an XML declaration with blanks: the text is in UTF-16, whatever it
/// declares.
void BlankEncoding(WChar* text) {
  std::basic_string_view<wchar_t> declaration(Native(text));
  if (declaration.substr(0, 5) != L"<?xml") return;
  declaration = declaration.substr(0, declaration.find(L"?>"));
  const std::size_t start = declaration.find(L"encoding");
  const std::size_t open = declaration.find_first_of(L"'\"", start);
  if (start == declaration.npos || open == declaration.npos) return;
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == declaration.npos) return;
  std::fill(text + start, text + close + 1, WChar{' '});
}

/// The bytes of a text after a byte-order mark, which determines the encoding.
std::string MarkedBytes(BSTR text) {
  const WChar mark = 0xFEFF;
  std::string bytes(reinterpret_cast<const char*>(&mark), sizeof mark);
  return bytes.append(reinterpret_cast<const char*>(text), SysStringLen(text) * sizeof(WChar));
}

}  // namespace

XmlDocument::~XmlDocument() {
  if (document_) static_cast<IXMLDOMDocument2*>(document_)->Release();
}

// The file is read here rather than by the DOM, so that exactly the bytes that were checked are
// loaded.
void XmlDocument::LoadFile(const WChar* path) {
  File file;
  std::uint64_t size = 0;
  if (!file.Open(path) || !file.Size(&size))
    Throw(DocumentFault::kCannotOpen, file.error(), "the file cannot be opened");
  ByteArray array(size);
  std::size_t got = 0;
  if (!file.ReadFully(array.data(), size, &got) || got < size)
    Throw(DocumentFault::kCannotRead, file.error(), "the file cannot be read");
  document_ = LoadArray(array);
}

void XmlDocument::LoadText(const WChar* text) {
  if (text && *text == 0xFEFF) ++text;
  const SystemText source(text ? text : Ours(L""));
  const WideView view(source.get());
  if (WellFormedLength(view) != view.size)  // the parser accepts it after the root element
    Throw(DocumentFault::kMalformed, 0, "an unpaired surrogate is not a character");
  BlankEncoding(source.get());
  const win32::XmlUnits units{WideView(source.get())};
  // Only a document type declaration can make a document expand.
  if (win32::HasDoctype(units)) {
    document_ = LoadArray(ByteArray(MarkedBytes(source.get())));
    return;
  }
  win32::BoundAttributes(units);
  const ParserTurn turn;
  Document document;
  Create(&document);
  VARIANT_BOOL loaded = VARIANT_FALSE;
  Check(document->loadXML(Native(source.get()), &loaded));
  if (!loaded) ThrowParseError(document.get(), MarkedBytes(source.get()));
  document_ = document.Detach();
}

void XmlDocument::LoadBytes(const char* bytes, int length) {
  document_ = LoadArray(ByteArray(std::string_view(bytes, length > 0 ? length : 0)));
}

XmlNode XmlDocument::Root() const {
  if (!document_) return {};
  Counted<IXMLDOMElement> root;
  Check(static_cast<IXMLDOMDocument2*>(document_)->get_documentElement(root.out()));
  return XmlNodeHandle::Make(root.Detach());
}

// The DOM does not know the places of its nodes.
void XmlDocument::PlaceOf(const XmlNode&, LONG* line, LONG* column) const {
  *line = *column = 0;
}

// --- nodes ---

namespace {

IXMLDOMNode* Node(void* handle) {
  if (!handle) Throw(DocumentFault::kHandlerFailed, 0, "there is no such node");
  return static_cast<IXMLDOMNode*>(handle);
}

XmlText NameOf(IXMLDOMNode* node) {
  wchar_t* name = nullptr;
  Check(node->get_nodeName(&name));
  return XmlText(Ours(name));
}

}  // namespace

XmlNode XmlNodeHandle::Make(IXMLDOMNode* node) {
  XmlNode made;
  if (!node) return made;
  made.handle_ = node;
  made.counted_ = true;
  DOMNodeType type = NODE_INVALID;
  Check(node->get_nodeType(&type));
  made.type_ = type;
  return made;
}

void XmlNode::Retain() const noexcept {
  static_cast<IXMLDOMNode*>(handle_)->AddRef();
}

void XmlNode::Release() const noexcept {
  static_cast<IXMLDOMNode*>(handle_)->Release();
}

XmlText XmlNode::Name() const {
  return NameOf(Node(handle_));
}

XmlText XmlNode::Text() const {
  wchar_t* text = nullptr;
  Check(Node(handle_)->get_text(&text));
  return XmlText(Ours(text));
}

XmlNode XmlNode::FirstChild() const {
  IXMLDOMNode* child = nullptr;
  Check(Node(handle_)->get_firstChild(&child));
  return XmlNodeHandle::Make(child);
}

XmlNode XmlNode::NextSibling() const {
  IXMLDOMNode* next = nullptr;
  Check(Node(handle_)->get_nextSibling(&next));
  return XmlNodeHandle::Make(next);
}

// --- attributes ---

XmlAttributes::XmlAttributes(const XmlNode& element) {
  Counted<IXMLDOMNamedNodeMap> map;
  Check(Node(element.handle_)->get_attributes(map.out()));
  if (!map) return;
  long count = 0;
  Check(map->get_length(&count));
  count_ = static_cast<int>(count);
  attributes_ = map.Detach();
}

XmlAttributes::~XmlAttributes() {
  if (attributes_) static_cast<IXMLDOMNamedNodeMap*>(attributes_)->Release();
}

void XmlNode::Advance() {
  *this = NextSibling();
}

const XmlText& XmlAttributes::Value() const {
  return value_;
}

bool XmlAttributes::Next() {
  if (index_ == count_) return false;
  Counted<IXMLDOMNode> attribute;
  const HRESULT result =
      static_cast<IXMLDOMNamedNodeMap*>(attributes_)->get_item(index_++, attribute.out());
  // Wine counts a default namespace declaration as an attribute, but returns E_OUTOFMEMORY when it
  // is asked for it. On Windows memory has run out, and an attribute would be missing.
  if (result == E_OUTOFMEMORY && IsWine()) return Next();
  Check(result);
  name_ = NameOf(Node(attribute.get()));
  OwnedVariant value;
  Check(attribute->get_nodeValue(&value));
  hasTextValue_ = value.vt == VT_BSTR;
  if (hasTextValue_) value.vt = VT_EMPTY;  // the text now belongs to value_
  value_ = hasTextValue_ ? XmlText(Ours(value.bstrVal)) : XmlText();
  return true;
}

}  // namespace vosmere
