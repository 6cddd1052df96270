#pragma once

#include <iosfwd>

#include "vosmere/base/export.h"
#include "vosmere/base/owned_pointer.h"
#include "vosmere/tags/tag_store.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes groups of tags: for each tag its name and, unless it is 1, its count.
///
/// Intended: behind its first line the document has no line breaks; stores of many tags are kept
/// short. Counts are held to the range 0 to 10,000,000.
class VOSMERE_API CWriteTagsXML : public CWriteXML {
 public:
  /// Throws std::bad_alloc.
  CWriteTagsXML();
  ~CWriteTagsXML() override;

  /// The groups to write, which must outlive the writing; null is an empty list.
  void SetTagGroupHead(CTagStore::TagGroupList* head) { head_ = head; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  /// A name that is null or empty is left out, but not its group. A group whose name cannot be
  /// converted is left out with its tags.
  void FillTagGroup(CTagGroup* group);
  /// A tag whose name cannot be converted is left out.
  void FillTagItem(CTagItem* item);

 private:
  bool ConvertName(const WChar* name);

  CTagStore::TagGroupList* head_ = nullptr;
  OwnedPointer<std::string> name_;  // the last one that was converted
};

/// Reads groups of tags. A root element other than "vsmtags" loads, and gives none.
///
/// What does not come back from a document that CWriteTagsXML wrote: a tag's missing name, which
/// becomes an empty one, and counts out of range; an empty name of a group, which becomes null.
/// Counts are read as they are, whatever their range.
class VOSMERE_API CReadTagsXML : public CReadXML {
 public:
  CReadTagsXML() = default;
  /// Frees the groups unless they were detached.
  ~CReadTagsXML() override;

  /// The groups, now the caller's (CTagStore::SetRTagGroupHead takes them, DeleteRTagGroupList
  /// frees them); null when there are none. Until they are detached, the next document is appended
  /// to them. What was read before a load failed stays.
  CTagStore::TagGroupList* DetachTagGroupHead() { return store_.DetachRTagGroupHead(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  CTagStore store_;
};

}  // namespace vosmere
