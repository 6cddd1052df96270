#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// Kind of document at a web page's address.
enum tagVSMITEMFILETYPE : LONG {
  FT_OTHER = 0,
  FT_PDF = 1,
  FT_DOC = 2,
  FT_PPT = 3,
  FT_TXT = 4,
  FT_XML = 5,
  FT_XLS = 6,
};

/// Property block of a web page: document kind, file extension, tags, and the collection that the
/// page refers to.
class VOSMERE_API CUrlProp {
 public:
  /// A chain of tags; each cell owns one system string.
  using TagList = TList<WChar*>;

  CUrlProp() = default;
  /// Copies kind, extension and every tag; the referred collection and the need to save do not
  /// carry over. Throws std::bad_alloc.
  explicit CUrlProp(CUrlProp* source);
  CUrlProp(const CUrlProp&) = delete;
  CUrlProp& operator=(const CUrlProp&) = delete;
  virtual ~CUrlProp();

  void SetFileType(tagVSMITEMFILETYPE type) { fileType_ = type; }
  tagVSMITEMFILETYPE GetFileType() const { return fileType_; }

  /// Null clears.
  void SetFileExtension(const WChar* extension) { fileExtension_.AssignOrNull(extension); }
  /// May be null.
  WChar* GetFileExtension() const { return fileExtension_.get(); }

  /// Takes ownership of the chain. The chain held before is not freed: detach it first.
  void SetTagsList(TagList* tags) { tags_ = tags; }
  /// Still owned by the block; null when there are no tags.
  TagList* GetTagsHead() const { return tags_; }
  /// Gives the chain to the caller and keeps none.
  TagList* DetachTagsHead();
  /// Whether some tag equals the text without regard to ASCII case. Null is no tag.
  bool HasTag(const WChar* tag) const;

  /// The link of a collection that the page refers to, or null. Not owned.
  void SetRefColctRNode(RNode* link) { refColctRNode_ = link; }
  RNode* GetRefColctRNode() const { return refColctRNode_; }

  /// The tags were changed and want saving.
  void SetNeedSaveKeyWords(bool need) { needSaveKeyWords_ = need; }
  bool DoNeedSaveKeyWords() const { return needSaveKeyWords_; }

  /// One cell with a copy of the text; null when memory runs out.
  static TagList* CreateRBstrItem(const WChar* text);
  /// Frees one cell and its string. Null is ignored.
  static void DeleteOneRBstrItem(TagList* cell);
  /// Frees every cell from `head` on, with its string. Null is ignored.
  static void DeleteTagsList(TagList* head);
  /// Splits a text at spaces, commas, semicolons, tabs and line ends into a chain that the caller
  /// owns; a tag that is there already, in any letter case, is left out. Null gives null. When
  /// memory runs out the chain ends early. The text is cut up on the way: each separator behind a
  /// token becomes a zero.
  static TagList* GenerateRBstrItemList(WChar* text);

 private:
  tagVSMITEMFILETYPE fileType_ = FT_OTHER;
  SystemText fileExtension_;
  TagList* tags_ = nullptr;
  RNode* refColctRNode_ = nullptr;
  bool needSaveKeyWords_ = false;
};

}  // namespace vosmere
