// Writes and reads the document that stores the user's tags.
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
/// Intended: there are no line breaks after the start tag of the root element, which keeps
/// documents with many tags short. Counts are limited to 0 to 10,000,000.
class VOSMERE_API CWriteTagsXML : public CWriteXML {
 public:
  /// Throws std::bad_alloc.
  CWriteTagsXML();
  ~CWriteTagsXML() override;

  /// The groups to write, not owned; they must outlive the writing. Null is the empty list.
  void SetTagGroupHead(CTagStore::TagGroupList* head) { head_ = head; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  /// Writes a group; a null or empty name is left out. A group whose name cannot be converted to
  /// UTF-8 is left out with its tags.
  void FillTagGroup(CTagGroup* group);
  /// Writes a tag. A tag whose name cannot be converted to UTF-8 is left out.
  void FillTagItem(CTagItem* item);

 private:
  bool ConvertName(const WChar* name);

  CTagStore::TagGroupList* head_ = nullptr;
  OwnedPointer<std::string> name_;  // the name that ConvertName has converted
};

/// Reads groups of tags. If the root element is not "vsmtags", the load succeeds without any
/// groups.
///
/// Differences to what CWriteTagsXML was given: a tag without a name (null) gets an empty one, a
/// group with an empty name gets none (null), and counts are limited by the writer. The reader
/// itself accepts any count.
class VOSMERE_API CReadTagsXML : public CReadXML {
 public:
  CReadTagsXML() = default;
  /// Frees the groups unless they were detached.
  ~CReadTagsXML() override;

  /// Gives the list of groups to the caller: CTagStore::SetRTagGroupHead takes it,
  /// DeleteRTagGroupList frees it. Null when there are no groups. If the list is not detached, the
  /// next load appends to it. A load that fails keeps the groups that were read before the error.
  CTagStore::TagGroupList* DetachTagGroupHead() { return store_.DetachRTagGroupHead(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  CTagStore store_;
};

}  // namespace vosmere
