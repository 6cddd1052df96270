// Saves documents as bookmark files.
#include "tools/bookmarks.h"

#include <algorithm>

#include "tools/document.h"
#include "tools/text.h"
#include "vosmere/base/ascii.h"

namespace vosmere::tool {

bool HasEnding(const std::string& file, std::initializer_list<const char*> endings) {
  std::string name = file;
  std::transform(name.begin(), name.end(), name.begin(), ascii::Fold<char>);
  return std::any_of(endings.begin(), endings.end(),
                     [&](const char* ending) { return name.ends_with(ending); });
}

bool IsBookmarkName(const std::string& file) {
  return HasEnding(file, {".html", ".htm"});
}

SavedBytes BookmarksOf(const AnyDocument& document, const std::string& file) {
  Tree items;
  const Tree* tree = std::get_if<Tree>(&document);
  if (const auto* const colct = std::get_if<Collection>(&document)) {
    items = Copy((*colct)->GetLocRNodeRoot());
    SetName(*items->item, (*colct)->GetName());
    tree = &items;
  }
  if (!tree) throw FileFailure(kBadFile, InputName(file), "is no list of bookmarks");
  Result<SavedBytes> saved = BookmarksToBytes(*tree);
  if (!saved) throw FailureOf(InputName(file), saved.error());
  return std::move(*saved);
}

}  // namespace vosmere::tool
