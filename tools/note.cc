#include "tools/note.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "tools/document.h"
#include "tools/kinds/items.h"
#include "tools/replace_file.h"
#include "tools/text.h"
#include "vosmere/pages/note_html.h"

namespace vosmere::tool {
namespace {

/// Whether the page is there to its end, which the library does not tell: the disk may be full.
bool IsWhole(const WChar* path) {
  constexpr std::string_view kEnd = "</body><html>";
  std::ifstream file(std::filesystem::path(ToUtf16(path)), std::ios::binary);
  file.seekg(-static_cast<std::streamoff>(kEnd.size()), std::ios::end);
  return std::string(std::istreambuf_iterator<char>(file), {}) == kEnd;
}

}  // namespace

int Note(const NoteOptions& options) {
  std::error_code ignored;
  if (std::filesystem::equivalent(PathOf(options.in), PathOf(options.out), ignored))
    throw Failure{kTrouble, Printable(options.out) + ": error: is the document itself"};
  const Document document(options.in);
  CBaseNode* const item = document.Find([&](const CBaseNode& candidate) {
    return !options.item.empty() && (TextOf(candidate.GetName()) == options.item ||
                                     TextOf(candidate.GetUUID()) == options.item);
  });
  if (!item)
    throw Failure{kBadFile, Printable(options.in) + ": error: no item has the name or identity '" +
                                Printable(options.item) + "'"};
  ReplaceFile(options.out, [&](const WChar* path) {
    if (!CWriteNoteHtml().WriteToFile(item, path) || !IsWhole(path))
      throw Failure{kTrouble, Printable(options.out) + ": error: cannot be written"};
  });
  return kFine;
}

}  // namespace vosmere::tool
