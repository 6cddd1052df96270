// XmlText, XmlNode and XmlAttributes: read access to a loaded XML document.
#pragma once

#include <cstddef>
#include <cstring>
#include <utility>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Node types with their DOM numbers. Other numbers occur too, for example 5 for an entity
/// reference.
enum XmlNodeType : int {
  kXmlElement = 1,
  kXmlText = 3,
  kXmlCData = 4,
  kXmlProcessingInstruction = 7,
  kXmlComment = 8,
};

/// A null-terminated text from a document. It is either borrowed from the document's memory or held
/// by this object; it is valid while both this object and the document exist.
class XmlText {
 public:
  XmlText() = default;
  /// `borrowed` has to be null-terminated and is not copied.
  explicit XmlText(WideView borrowed) : view_(borrowed) {}
  /// Takes ownership of a system string; null is the empty text.
  explicit XmlText(BSTR owned) : view_(owned, SysStringLen(owned)), owned_(owned) {}
  XmlText(XmlText&& other) noexcept { *this = std::move(other); }
  XmlText& operator=(XmlText&& other) noexcept {
    if (this == &other) return *this;
    Free();
    view_ = std::exchange(other.view_, {});
    owned_ = std::exchange(other.owned_, nullptr);
    if (view_.data == other.room_) {
      std::memcpy(room_, other.room_, (view_.size + 1) * sizeof(WChar));
      view_.data = room_;
    }
    return *this;
  }
  ~XmlText() { Free(); }

  /// Makes this a borrowed text, like the constructor.
  void Borrow(WideView borrowed) {
    Free();
    view_ = borrowed;
  }
  /// Makes this a text of its own with `length` code units, which the caller fills. Throws
  /// std::bad_alloc.
  WChar* Make(std::size_t length) {
    Free();
    owned_ = length < kRoom ? nullptr : SysAllocStringLen(nullptr, length);
    WChar* const text = length < kRoom ? room_ : owned_;
    if (!text) detail::ThrowNoMemory();
    text[length] = 0;
    view_ = {text, length};
    return text;
  }

  /// The text with its length.
  WideView view() const { return view_; }
  /// The text as a null-terminated pointer, never null.
  const WChar* c_str() const { return view_.data ? view_.data : kEmpty; }
  bool empty() const { return view_.empty(); }

 private:
  void Free() {
    if (owned_) SysFreeString(std::exchange(owned_, nullptr));
  }

  static constexpr WChar kEmpty[1] = {0};
  static constexpr std::size_t kRoom = 250;

  WideView view_;
  BSTR owned_ = nullptr;
  WChar room_[kRoom];  // for a short text, so that most need no allocation
};

/// A handle to a node of a loaded document, cheap to copy and valid while the document exists.
/// Copies refer to the same node. Operations throw DocumentFailure (base/document_error.h) when the
/// platform's parser fails. Apart from Type and the test for null, operations on a null handle are
/// undefined.
class VOSMERE_API XmlNode {
 public:
  XmlNode() = default;
  XmlNode(const XmlNode& other) noexcept
      : handle_(other.handle_), type_(other.type_), counted_(other.counted_) {
    if (counted_) Retain();
  }
  XmlNode(XmlNode&& other) noexcept { Swap(other); }
  XmlNode& operator=(XmlNode other) noexcept {
    Swap(other);
    return *this;
  }
  ~XmlNode() {
    if (counted_) Release();
  }

  /// False for a null handle.
  explicit operator bool() const { return handle_ != nullptr; }

  /// The node's type, an XmlNodeType or another DOM number; 0 for a null handle.
  int Type() const { return type_; }
  /// The qualified name, with its prefix. Nodes without a name give "#text" and the like.
  XmlText Name() const;
  /// All text inside an element at any depth, concatenated; the content of any other node.
  XmlText Text() const;
  /// The first child and the next sibling; a null handle when there is none.
  XmlNode FirstChild() const;
  XmlNode NextSibling() const;
  /// Makes this the next sibling, which is faster.
  void Advance();

 private:
  friend class XmlAttributes;
  friend struct XmlNodeHandle;

  void Swap(XmlNode& other) noexcept {
    std::swap(handle_, other.handle_);
    std::swap(type_, other.type_);
    std::swap(counted_, other.counted_);
  }
  void Retain() const noexcept;
  void Release() const noexcept;

  void* handle_ = nullptr;
  int type_ = 0;
  bool counted_ = false;  // whether the platform counts references to its nodes
};

/// Iterates over the attributes of an element in document order. Namespace declarations may come
/// all together before or after the others:
///
///     for (XmlAttributes attributes(element); attributes.Next();) use(attributes.Name());
class VOSMERE_API XmlAttributes {
 public:
  explicit XmlAttributes(const XmlNode& element);
  XmlAttributes(const XmlAttributes&) = delete;
  XmlAttributes& operator=(const XmlAttributes&) = delete;
  ~XmlAttributes();

  /// Moves to the first, then to the next attribute; false after the last.
  bool Next();
  /// The qualified name of the current attribute, with its prefix; valid until the next call of
  /// Next.
  const XmlText& Name() const { return name_; }
  /// Whether the value of the current attribute is a text. False only where the platform's DOM
  /// reports another type.
  bool HasTextValue() const { return hasTextValue_; }
  /// The value of the current attribute; valid until the next call of Next.
  const XmlText& Value() const;

 private:
  void* attributes_ = nullptr;
  int index_ = 0;
  int count_ = 0;
  XmlText name_;
  mutable XmlText value_;
  bool hasTextValue_ = false;
};

}  // namespace vosmere
