// The entities that a document declares itself.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vosmere::importing {

/// A text in which the references to entities of its own document type are replaced by what they
/// mean, within the bounds of the exact readers: 20 levels, and 4 MiB beside the size of the text.
/// What goes beyond stays a reference, and so do entities of other files, which are never opened.
/// `text` must outlive it.
class ExpandedText {
 public:
  explicit ExpandedText(std::string_view text);

  /// The whole text, without the declarations if there are any.
  std::string_view text() const { return copies_.empty() ? original_ : expanded_; }
  /// The position in the original of one in the text.
  std::size_t OriginalPlace(std::size_t at) const;

 private:
  /// A piece of the original as it stands; what is between two is a replacement.
  struct Copy {
    std::size_t at;    // in the text
    std::size_t from;  // in the original
    std::size_t size;
  };

  /// Finds the ends of comments, CDATA sections and instructions. Looking for an end in vain once
  /// is enough, so that all of a text takes linear time.
  class Opaque {
   public:
    /// The end of what begins at a '<'; `at` if it is something else, or has no end.
    std::size_t After(std::string_view text, std::size_t at);

   private:
    struct {
      std::string_view begin, end;
      bool isGone = false;
    } kinds_[3] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  };

  std::size_t FindSubset();
  std::size_t ReadSubset(std::size_t at);
  std::size_t ReadDeclaration(std::size_t at);
  std::size_t AfterBlanks(std::size_t at) const;
  void Declare(std::string_view name, std::string_view literal);
  void CopyUpTo(std::size_t end);
  void ExpandContent();
  bool Replace(std::string_view name, int level);
  void Put(std::string_view text, int level);

  std::string_view original_;
  std::string expanded_;
  std::vector<Copy> copies_;
  std::size_t copied_ = 0;  // so much of the original
  std::size_t spent_ = 0;
  Opaque opaque_;
  std::map<std::string_view, std::string> entities_;
};

}  // namespace vosmere::importing
