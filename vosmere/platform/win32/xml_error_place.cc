// Finds the place and the reason of an error by feeding a SAX reader piece by piece.
#include "vosmere/platform/win32/xml_error_place.h"

#include "vosmere/platform/win32/com.h"

#include <msxml2.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/platform/internal/element_path.h"
#include "vosmere/platform/win32/xml_first_error.h"
#include "vosmere/platform/win32/xml_intake.h"
#include "vosmere/platform/win32/xml_units.h"

namespace vosmere::win32 {
namespace {

constexpr IID kSaxReader = {
    0xa4f96ed0, 0xf829, 0x476e, {0x81, 0xc0, 0xcd, 0xc7, 0xbd, 0x2a, 0x08, 0x02}};
constexpr IID kSaxContentHandler = {
    0x1545cdfa, 0x9e4e, 0x4497, {0xa8, 0xa4, 0x2b, 0xf7, 0xd0, 0x11, 0x2c, 0x44}};
constexpr IID kSaxErrorHandler = {
    0xa60511c4, 0xccf5, 0x479e, {0x98, 0xa3, 0xdc, 0x8d, 0xc5, 0x45, 0xb7, 0xd0}};
constexpr IID kSequentialStream = {
    0x0c733a30, 0x2a1c, 0x11ce, {0xad, 0xe5, 0x00, 0xaa, 0x00, 0x44, 0x77, 0x3d}};

/// A COM object on the stack, which outlives the reader and therefore needs no reference count.
template <class Interface, const IID& kIid>
class OnStack : public Interface {
 public:
  HRESULT WINAPI QueryInterface(REFIID iid, void** out) override {
    *out = iid == kIid || iid == IID_IUnknown ? this : nullptr;
    return *out ? S_OK : E_NOINTERFACE;
  }
  ::ULONG WINAPI AddRef() override { return 1; }
  ::ULONG WINAPI Release() override { return 1; }
};

/// Keeps the message of the first error.
class FirstReason : public OnStack<ISAXErrorHandler, kSaxErrorHandler> {
 public:
  explicit FirstReason(DocumentError* error) : error_(error) {}

  HRESULT WINAPI error(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
  HRESULT WINAPI ignorableWarning(ISAXLocator*, const wchar_t*, HRESULT) override { return S_OK; }
  HRESULT WINAPI fatalError(ISAXLocator*, const wchar_t* message, HRESULT) override {
    if (message && !told_ && error_->fault != DocumentFault::kTooDeep)
      SetReason(error_, Ours(message));
    told_ = true;
    return E_FAIL;
  }

 private:
  DocumentError* error_;
  bool told_ = false;
};

/// Keeps the open elements, and stops the reader at elements that are nested deeper than the DOM
/// allows. No exception leaves it.
class OpenElements : public OnStack<ISAXContentHandler, kSaxContentHandler> {
 public:
  OpenElements(int deepest, DocumentError* error) : deepest_(deepest), error_(error) {}

  /// Stores the path of the innermost element, unless memory ran out.
  void StorePath() const {
    if (outOfMemory_) return;
    for (std::size_t i = open_.size(); i-- > 0;) {
      const std::wstring& name = open_[i].name;
      if (!PrecedeElement(error_, {Ours(name.data()), name.size()}, open_[i].position)) return;
    }
  }

  using Text = const wchar_t*;
  HRESULT WINAPI startElement(Text, int, Text, int, Text name, int length,
                              ISAXAttributes*) override {
    try {
      Open element{std::wstring(name, static_cast<std::size_t>(length))};
      if (!open_.empty()) element.position = ++open_.back().children[element.name];
      open_.push_back(std::move(element));
    } catch (const std::bad_alloc&) {
      outOfMemory_ = true;
    }
    if (++depth_ <= deepest_) return S_OK;
    error_->fault = DocumentFault::kTooDeep;
    SetReason(error_, Ours(L"elements are nested too deeply"));
    return E_FAIL;
  }
  HRESULT WINAPI endElement(Text, int, Text, int, Text, int) override {
    --depth_;
    if (!open_.empty()) open_.pop_back();
    return S_OK;
  }
  HRESULT WINAPI putDocumentLocator(ISAXLocator*) override { return S_OK; }
  HRESULT WINAPI startDocument() override { return S_OK; }
  HRESULT WINAPI endDocument() override { return S_OK; }
  HRESULT WINAPI startPrefixMapping(Text, int, Text, int) override { return S_OK; }
  HRESULT WINAPI endPrefixMapping(Text, int) override { return S_OK; }
  HRESULT WINAPI characters(Text, int) override { return S_OK; }
  HRESULT WINAPI ignorableWhitespace(Text, int) override { return S_OK; }
  HRESULT WINAPI processingInstruction(Text, int, Text, int) override { return S_OK; }
  HRESULT WINAPI skippedEntity(Text, int) override { return S_OK; }

 private:
  struct Open {
    std::wstring name;
    std::size_t position = 1;  // among its siblings of the same name
    std::unordered_map<std::wstring, std::size_t> children = {};  // how many of each name
  };

  int deepest_;
  DocumentError* error_;
  std::vector<Open> open_;
  int depth_ = 0;
  bool outOfMemory_ = false;
};

/// Delivers a document piece by piece. When the reader gives up, the last piece contains the error;
/// the place that a reader reports is rarely as accurate.
class Feed : public OnStack<ISequentialStream, kSequentialStream> {
 public:
  /// Pieces are one code unit long from `careful` on; before that they are as long as the reader
  /// wants.
  Feed(std::string_view bytes, std::size_t careful, std::size_t width)
      : bytes_(bytes), careful_(careful), width_(width) {}

  HRESULT WINAPI Read(void* out, ::ULONG capacity, ::ULONG* got) override {
    const std::size_t part = at_ < careful_ ? std::min<std::size_t>(capacity, careful_ - at_)
                             : at_ == 0     ? kEnoughToTellTheEncoding
                                            : width_;
    const std::string_view piece = bytes_.substr(at_, part);
    std::memcpy(out, piece.data(), piece.size());
    before_ = last_;
    last_ = at_;
    at_ += piece.size();
    *got = static_cast<::ULONG>(piece.size());
    return S_OK;
  }
  HRESULT WINAPI Write(const void*, ::ULONG, ::ULONG*) override { return E_NOTIMPL; }

  std::size_t last() const { return last_; }
  std::size_t before() const { return before_; }

 private:
  static constexpr std::size_t kEnoughToTellTheEncoding = 4;

  std::string_view bytes_;
  std::size_t careful_;
  std::size_t width_;
  std::size_t at_ = 0;
  std::size_t last_ = 0;
  std::size_t before_ = 0;
};

/// Runs the SAX reader. False when there is no error or no reader.
bool Fails(Feed* feed, int deepest, DocumentError* error) {
  CLSID clsid;
  Counted<ISAXXMLReader> reader;
  if (FAILED(::CLSIDFromProgID(L"Msxml2.SAXXMLReader", &clsid)) ||
      FAILED(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, kSaxReader,
                                reinterpret_cast<void**>(reader.out()))))
    return false;
  FirstReason reason(error);
  OpenElements elements(deepest, error);
  VARIANT source;
  source.vt = VT_UNKNOWN;
  source.punkVal = feed;
  reader->putErrorHandler(&reason);
  reader->putContentHandler(&elements);
  const bool failed = FAILED(reader->parse(source));
  if (failed) elements.StorePath();
  reader->putErrorHandler(nullptr);
  reader->putContentHandler(nullptr);
  return failed;
}

}  // namespace

void SetReason(DocumentError* error, const WChar* reason) {
  const WideView text = WideView(reason).First(sizeof error->reason / 3 - 1);
  char* end = error->reason + WideToBytes(kCodePageUtf8, text.data, static_cast<int>(text.size),
                                          error->reason, sizeof error->reason - 1);
  const auto breaksLine = [](char c) { return c == '\r' || c == '\n' || c == '\t'; };
  std::replace_if(error->reason, end, breaksLine, ' ');
  while (end != error->reason && (end[-1] == ' ' || end[-1] == '.')) --end;
  *end = 0;
}

// The first run finds the piece with the error. A reader may process a piece only after it has
// received the next one, so the second run reads single code units from the piece before.
void FindErrorPlace(std::string_view bytes, int deepest, DocumentError* error) {
  const XmlUnits units(bytes);
  std::size_t place = bytes.size();
  Feed rough(bytes, bytes.size(), units.width());
  if (Fails(&rough, deepest, error)) {
    Feed careful(bytes, rough.before(), units.width());
    DocumentError sameAgain;
    place = Fails(&careful, deepest, &sameAgain) ? careful.last() : rough.last();
  }
  place /= units.width();
  // The reader has found the end of the tag or the text at best; one unit later is after a tag.
  if (error->fault != DocumentFault::kTooDeep && !HasDoctype(units))
    if (const std::size_t first = FirstError(units); first != kNoErrorFound && first <= place + 1)
      place = first;
  error->line = error->column = 1;
  for (std::size_t i = units.MarkLength(); i < place; ++i) {
    if (units[i] == '\n')
      ++error->line, error->column = 1;
    else if (!units.ContinuesCharacter(i))
      ++error->column;
  }
}

}  // namespace vosmere::win32
