// The verb "note".
#include "tools/note.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <vector>

#include "tools/contents.h"
#include "tools/document.h"
#include "tools/output.h"
#include "tools/report.h"
#include "tools/text.h"
#include "vosmere/pages/note_html.h"

namespace vosmere::tool {
namespace {

/// Whether the whole page was written. The library does not report this, for example when the disk
/// is full, so the end of the file is checked.
bool IsWhole(const std::filesystem::path& path) {
  constexpr std::string_view kEnd = "</body><html>";
  std::ifstream file(path, std::ios::binary);
  file.seekg(-static_cast<std::streamoff>(kEnd.size()), std::ios::end);
  return std::string(std::istreambuf_iterator<char>(file), {}) == kEnd;
}

constexpr std::string_view kBetweenNames = " > ";

/// The names of the folders around an item, and its own name.
std::string PlaceOf(const CBaseNode& item) {
  std::string place = ToUtf8(item.GetName());
  const RNode* const link = item.GetRNode();
  for (const RNode* at = link ? link->parent : nullptr; at && at->parent; at = at->parent)
    place.insert(0, ToUtf8(at->item->GetName()).append(kBetweenNames));
  return place;
}

/// Whether `place` equals PlaceOf(item), without building that text for every item of a document.
/// Compares from the end, where most items already differ.
bool IsPlaceOf(std::string_view place, const CBaseNode& item) {
  for (const RNode* link = item.GetRNode(); link && link->parent; link = link->parent) {
    const std::string name = ToUtf8(link->item->GetName());
    if (!place.ends_with(name)) return false;
    place.remove_suffix(name.size());
    if (place.empty()) return !link->parent->parent;
    if (!place.ends_with(kBetweenNames)) return false;
    place.remove_suffix(kBetweenNames.size());
  }
  return false;
}

std::vector<CBaseNode*> ItemsCalled(const std::string& name, const AnyDocument& document) {
  std::vector<CBaseNode*> items;
  if (name.empty()) return items;
  ForEachItem(document, [&](CBaseNode& item) {
    if (IdentityOf(item) == name || NameOf(item) == name || IsPlaceOf(name, item))
      items.push_back(&item);
  });
  return items;
}

/// The message for a name that several items have.
std::string Shared(const std::string& name, const std::vector<CBaseNode*>& items) {
  constexpr std::size_t kMostNamed = 10;
  std::string message = std::to_string(items.size()) + " items are called '" + Printable(name) +
                        "'; name one by its folders or its identity: ";
  const char* separator = "";
  for (std::size_t i = 0; i < std::min(items.size(), kMostNamed); ++i) {
    const std::string id = ToUtf8(items[i]->GetUUID());
    message += separator + Printable(PlaceOf(*items[i])) +
               (id.empty() ? " (no identity)" : " (" + Printable(id) + ')');
    separator = "; ";
  }
  if (items.size() > kMostNamed)
    message += " and " + std::to_string(items.size() - kMostNamed) + " more";
  return message;
}

}  // namespace

int Note(const NoteOptions& options) {
  KeepReportApart(options.out, options.json);
  std::error_code ignored;
  if (!IsStandard(options.in) && !IsStandard(options.out) &&
      std::filesystem::equivalent(PathOf(options.in), PathOf(options.out), ignored))
    throw FileFailure(kTrouble, Printable(options.out), "the note would overwrite the document");
  const AnyDocument document = LoadDocument(options.in);
  const std::vector<CBaseNode*> items = ItemsCalled(options.item, document);
  if (items.size() > 1)
    throw FileFailure(kBadFile, InputName(options.in), Shared(options.item, items));
  if (items.empty())
    throw FileFailure(kBadFile, InputName(options.in),
                      "no item has the name or identity '" + Printable(options.item) + '\'');
  WriteOutput(options.out, [&](const FilePath& path) -> std::optional<Error> {
    if (CWriteNoteHtml().WriteToFile(items[0], path.get()) && IsWhole(path.native())) return {};
    return detail::FileError(path, "cannot be written");
  });
  if (options.json) PrintReport({{"item", PlaceOf(*items[0])}, {"id", IdentityOf(*items[0])}});
  return kFine;
}

}  // namespace vosmere::tool
