// Reports what a reader loses of its document: what it leaves out or changes. Without a report,
// reading does no extra work.
#pragma once

#include <cstddef>
#include <utility>

#include "vosmere/base/document_loss.h"
#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/base/wide_view.h"
#include "vosmere/platform/xml_node.h"

namespace vosmere {

class XmlDocument;

namespace xml {

/// Whether a text is a valid value of a field; see the tables of xml/reader_fields.h.
using FitsTest = bool (*)(const WChar* text);

/// Follows a reader through the document: records which element is being read and what of it was
/// used, and reports the rest. Used for one load.
class VOSMERE_API Report {
 public:
  /// `report` is called with `to` for every loss. `document` gives the lines and columns of
  /// elements; null if these are not known.
  Report(LossReport report, void* to, const XmlDocument* document);
  Report(const Report&) = delete;
  Report& operator=(const Report&) = delete;
  ~Report();

  // Elements. Every Enter must be followed by a Leave.

  enum class As {
    kKnown,
    kUnknown,   ///< not read at this place
    kRepeated,  ///< not read, because another one of its name was
  };
  void Enter(const XmlNode& element, As as);
  /// Enters the root element. Its attributes other than "version" are reported as unknown.
  void EnterRoot(const XmlNode& element);
  void Leave();
  /// A node inside the innermost element that is not an element. Comments, processing instructions
  /// and text that is not used are reported.
  void Meet(const XmlNode& node);

  // What the reader uses of the innermost element.

  /// It uses the text, or part of it.
  void TakesText();
  /// It visits the attributes, calling Takes or Unknown for each.
  void TakesAttributes();
  /// It makes an item of the element, so that several in a row are no repetition.
  void MakesItem();
  /// It has read the element itself. Reports attributes that were not visited, and an element whose
  /// text replaces, or is replaced by, that of another with the same name.
  void EndOfReading();

  // Values, by the name of the attribute; an empty name is the text of the element.

  /// The attribute is not known. An empty value and a namespace declaration are not reported.
  void Unknown(WideView attribute, const WChar* value);
  /// The value is used. Reports one that was cut, or that is not valid according to `fits` (null
  /// for no test).
  void Takes(WideView attribute, const WChar* value, FitsTest fits, bool isCut);

  // Anything else.

  /// Whether the innermost element has a known child with this name, in the second form one with
  /// this attribute and a value that is not empty.
  bool Says(const char* child) const;
  bool Says(const char* child, const char* attribute) const;
  /// Reports a loss at the innermost element.
  void Lose(LossKind kind, const char* what);
  /// Remembers the place of the innermost element, for a loss that is only known later. Returns the
  /// number to pass to LoseAt.
  std::size_t Remember();
  void LoseAt(std::size_t remembered, LossKind kind, const char* what);

 private:
  struct State;
  OwnedPointer<State> state_;
};

/// An element that is being read: its node, and the report of losses.
class Element : public XmlNode {
 public:
  Element(XmlNode node, Report* report) : XmlNode(std::move(node)), report_(report) {}

  /// Null when losses are not reported.
  Report* report() const { return report_; }
  /// All text inside the element. The report counts it as used.
  XmlText Text() const {
    if (report_) report_->TakesText();
    return XmlNode::Text();
  }

 private:
  Report* report_;
};

}  // namespace xml
}  // namespace vosmere
