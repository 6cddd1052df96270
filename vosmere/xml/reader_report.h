// What a reader says of its document while it reads it: what it leaves out, and what it takes
// otherwise than it is written. Without a report none of this costs anything.
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "vosmere/base/document_loss.h"
#include "vosmere/base/export.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

class XmlDocument;

namespace xml {

/// Whether a text is what a field takes; see the tables of xml/reader_fields.h.
using FitsTest = bool (*)(const WChar* text);

/// Follows the reader through the document: knows where it is, and what of an element was looked
/// at. Made for one load.
class VOSMERE_API Report {
 public:
  /// The document, which may be null, knows where its elements stand.
  Report(LossReport report, void* to, const XmlDocument* document);
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report();

  // Elements. Each that is entered is left, too.

  enum class As {
    kKnown,
    kUnknown,   ///< the reader has no use for it here
    kRepeated,  ///< another one like it was taken, and this one is not
  };
  void Enter(const XmlNode& element, As as);
  /// The root element, of which "version" alone is known.
  void EnterRoot(const XmlNode& element);
  void Leave();
  /// Any other node inside the innermost element.
  void Meet(const XmlNode& node);

  // What the reader takes of the innermost element.

  /// All its text, or part of it.
  void TakesText();
  /// Goes through the attributes, each to be taken or not.
  void TakesAttributes();
  /// It makes something, so that there may be several beside each other.
  void MakesItem();
  /// One that was not looked at: its attributes and a text of which nothing is kept.
  void EndOfReading();

  // Values, by the attribute's name; an empty one is the element's text.

  void Unknown(WideView attribute, const WChar* value);
  void Takes(WideView attribute, const WChar* value, FitsTest fits, bool isCut);

  // Anything else.

  /// Whether the innermost element has a child that is read, and that one a value.
  bool Says(const char* child) const;
  bool Says(const char* child, const char* attribute) const;
  /// About the innermost element.
  void Lose(LossKind kind, const char* what);
  /// The innermost element by a number, for what turns out later.
  std::size_t Remember();
  void LoseAt(std::size_t remembered, LossKind kind, const char* what);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

/// An element on its way through a reader: a node, and who is told of what is left out.
class Element : public XmlNode {
 public:
  Element(XmlNode node, Report* report) : XmlNode(std::move(node)), report_(report) {}

  /// Null when nobody is told.
  Report* report() const { return report_; }
  /// All text inside, which is thereby taken.
  XmlText Text() const {
    if (report_) report_->TakesText();
    return XmlNode::Text();
  }

 private:
  Report* report_;
};

}  // namespace xml
}  // namespace vosmere
