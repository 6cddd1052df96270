// The properties that only some web pages have.
#pragma once

#include "vosmere/base/ascii.h"
#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/fwd.h"

namespace vosmere {

/// The kind of document at a web page's address.
enum tagVSMITEMFILETYPE : LONG {
  FT_OTHER = 0,
  FT_PDF = 1,
  FT_DOC = 2,
  FT_PPT = 3,
  FT_TXT = 4,
  FT_XML = 5,
  FT_XLS = 6,
};

/// The property block of a web page: kind of document, file extension, tags, and the collection
/// that the page refers to. Not thread-safe.
class VOSMERE_API CUrlProp {
 public:
  /// A chain of tags. Each cell owns one system string.
  using TagList = TList<WChar*>;

  CUrlProp() = default;
  /// Copies kind, extension and tags, but not the collection and the mark for saving. Throws
  /// std::bad_alloc when memory runs out.
  explicit CUrlProp(CUrlProp* source);
  CUrlProp(const CUrlProp&) = delete;
  CUrlProp& operator=(const CUrlProp&) = delete;
  virtual ~CUrlProp();

  void SetFileType(tagVSMITEMFILETYPE type) { fileType_ = type; }
  tagVSMITEMFILETYPE GetFileType() const { return fileType_; }

  /// Null makes it null.
  void SetFileExtension(const WChar* extension) { fileExtension_.AssignOrNull(extension); }
  /// May be null.
  WChar* GetFileExtension() const { return fileExtension_.get(); }

  /// Takes ownership of the chain. The old chain is not freed; call DetachTagsHead first.
  void SetTagsList(TagList* tags) { tags_ = tags; }
  /// The tags, still owned by the block; null when there are none.
  TagList* GetTagsHead() const { return tags_; }
  /// Gives the chain to the caller, who frees it with DeleteTagsList. The block has no tags then.
  TagList* DetachTagsHead();
  /// Whether a tag equals the text, case-insensitive (ASCII). False for null.
  bool HasTag(const WChar* tag) const;

  /// The link of a collection that the page refers to, or null. Not owned.
  void SetRefColctRNode(RNode* link) { refColctRNode_ = link; }
  RNode* GetRefColctRNode() const { return refColctRNode_; }

  /// Whether the tags were changed and have to be saved. The library only keeps this mark.
  void SetNeedSaveKeyWords(bool need) { needSaveKeyWords_ = need; }
  bool DoNeedSaveKeyWords() const { return needSaveKeyWords_; }

  /// A cell with a copy of the text, in no chain; null when memory runs out. The caller owns it.
  static TagList* CreateRBstrItem(const WChar* text);
  /// Frees one cell and its string, without unlinking it. Null is ignored.
  static void DeleteOneRBstrItem(TagList* cell);
  /// Frees every cell from `head` on, with its string. Null is ignored.
  static void DeleteTagsList(TagList* head);
  /// Whether a code unit of such a text is between tags.
  static constexpr bool IsSeparator(WChar unit) {
    return ascii::IsBlank(unit) || unit == ',' || unit == ';';
  }
  /// Splits a text at spaces, commas, semicolons, tabs and line ends into a chain that the caller
  /// owns. A tag that equals an earlier one, case-insensitive (ASCII), is left out. Null gives
  /// null. When memory runs out, the chain has the tags up to there, and LostTexts counts it. The
  /// text is overwritten: the separator after each tag becomes a null.
  static TagList* GenerateRBstrItemList(WChar* text);

 private:
  tagVSMITEMFILETYPE fileType_ = FT_OTHER;
  SystemText fileExtension_;
  TagList* tags_ = nullptr;
  RNode* refColctRNode_ = nullptr;
  bool needSaveKeyWords_ = false;
};

}  // namespace vosmere
