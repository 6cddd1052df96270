#pragma once

#include <cstddef>
#include <utility>

#include "vosmere/base/export.h"
#include "vosmere/base/system_string.h"
#include "vosmere/base/wide_view.h"

namespace vosmere {

/// Node types by their DOM numbers. Other numbers occur (an entity reference is 5).
enum XmlNodeType : int {
  kXmlElement = 1,
  kXmlText = 3,
  kXmlCData = 4,
  kXmlProcessingInstruction = 7,
  kXmlComment = 8,
};

/// A zero-terminated text out of a document: either the document's own memory or a system string
/// that goes with this object. Valid as long as both it and the document live.
class XmlText {
 public:
  XmlText() = default;
  explicit XmlText(WideView borrowed) : view_(borrowed) {}
  explicit XmlText(BSTR owned) : view_(owned, SysStringLen(owned)), owned_(owned) {}
  XmlText(XmlText&& other) noexcept : view_(other.view_), owned_(other.owned_) {
    other.view_ = {};
    other.owned_ = nullptr;
  }
  XmlText& operator=(XmlText&& other) noexcept {
    std::swap(view_, other.view_);
    std::swap(owned_, other.owned_);
    return *this;
  }
  ~XmlText() {
    if (owned_) SysFreeString(owned_);
  }

  WideView view() const { return view_; }
  /// Never null.
  const WChar* c_str() const { return view_.data ? view_.data : kEmpty; }
  bool empty() const { return view_.empty(); }

 private:
  static constexpr WChar kEmpty[1] = {0};

  WideView view_;
  BSTR owned_ = nullptr;
};

/// A cheap handle on a node of a loaded document, valid while the document is. Copies name the same
/// node. An operation throws DocumentFailure (base/document_error.h) when the platform refuses it.
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

  explicit operator bool() const { return handle_ != nullptr; }

  /// An XmlNodeType or another DOM number; 0 for a null handle.
  int Type() const { return type_; }
  /// The whole name, prefix included; "#text" and the like for nodes without one.
  XmlText Name() const;
  /// All text inside the node, at any depth.
  XmlText Text() const;
  /// Null handles at the end.
  XmlNode FirstChild() const;
  XmlNode NextSibling() const;

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
  bool counted_ = false;  // whether the platform counts the handles on a node
};

/// Goes over the attributes of an element in document order (namespace declarations may stand
/// together before or after the others):
///
///     for (XmlAttributes attributes(element); attributes.Next();) use(attributes.Name());
class VOSMERE_API XmlAttributes {
 public:
  explicit XmlAttributes(const XmlNode& element);
  XmlAttributes(const XmlAttributes&) = delete;
  XmlAttributes& operator=(const XmlAttributes&) = delete;
  ~XmlAttributes();

  /// Steps to the first, then the next attribute; false after the last.
  bool Next();
  /// Of the current attribute, until the next step: its whole name, prefix included.
  const XmlText& Name() const { return name_; }
  /// Whether its value is a text; it always is, unless the platform's DOM knows better.
  bool HasTextValue() const { return hasTextValue_; }
  const XmlText& Value() const { return value_; }

 private:
  void* attributes_ = nullptr;
  int index_ = 0;
  int count_ = 0;
  XmlText name_;
  XmlText value_;
  bool hasTextValue_ = false;
};

}  // namespace vosmere
