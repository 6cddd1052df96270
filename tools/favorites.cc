// The verb "favorites".
#include "tools/favorites.h"

#include <iostream>

#include "tools/contents.h"
#include "tools/document.h"
#include "tools/document_source.h"
#include "tools/link_files.h"
#include "tools/output.h"
#include "tools/text.h"
#include "vosmere/cpp.h"
#include "vosmere/favorites/import_favorites.h"
#include "vosmere/platform/registry.h"
#include "vosmere/tree/tree_walk.h"

namespace vosmere::tool {
namespace {

void Show(RNode* root, const FavoritesReport& report) {
  std::size_t level = 1;
  std::cout << "[tree] " << Printable(root->item->GetName()) << '\n';
  WalkBelow(
      root,
      [&](RNode* link) {
        const bool isFolder = link->type == NT_FOLDER;
        std::cout << std::string(2 * level++, ' ') << (isFolder ? "[folder] " : "[page] ")
                  << Printable(link->item->GetName());
        if (!isFolder) std::cout << "  " << Printable(static_cast<CUrlNode*>(link->item)->GetUrl());
        std::cout << '\n';
        return true;
      },
      [&](RNode*) { --level; });
  std::cout << Counted(report.folders, "folder*, ") << Counted(report.items, "page*\n");
}

using Warnings = std::vector<std::pair<LONG, const char*>>;

/// How often something was left out or not understood, and what, for Counted.
Warnings WarningsOf(const FavoritesReport& report) {
  Warnings warnings = {
      {report.recordsNotUnderstood, "damaged record* in the stored order"},
      {report.foldersNotRead, "folder* left empty: unreadable, or a link to another folder"},
      {report.shortcutsWithoutAddress,
       "shortcut* without an address, or with one that is too long"},
      {report.otherFiles, "file* left out: no Internet shortcut"}};
  std::erase_if(warnings, [](const auto& warning) { return warning.first <= 0; });
  return warnings;
}

void PrintWarnings(const std::string& name, const FavoritesReport& report) {
  if (report.foldersInOrder == 0)
    std::cerr << name << ": warning: no stored menu order was found; sorted by name\n";
  for (const auto& [count, what] : WarningsOf(report))
    std::cerr << name << ": warning: " << Counted(count, what) << '\n';
}

void PrintJson(Tree tree, const FavoritesReport& report) {
  Json warnings = Json::array();
  for (const auto& [count, what] : WarningsOf(report))
    warnings.push_back({{"what", Counted(count, what)}, {"count", count}});
  const AnyDocument document = std::move(tree);
  std::cout << "{\"hasOrder\":" << (report.foldersInOrder ? "true" : "false")
            << ",\"warnings\":" << JsonText(warnings) << ",\"tree\":";
  ShowJson(ContentOf(document), std::cout);
  std::cout << "}\n";
}

void Write(CWriteXML&& writer, const std::string& out) {
  WriteOutput(out, [&](const FilePath& path) -> std::optional<Error> {
    if (writer.SaveToFile(path.get())) return {};
    return Error(path.name(), writer.LastError());
  });
}

/// Writes the tree as a collection whose items keep their order.
void WriteRss(Tree tree, const std::string& out) {
  const Collection colct = CollectionOf(std::move(tree));
  const Result<SavedBytes> saved = SaveToBytes(colct);
  if (!saved) throw FailureOf(OutputName(out), saved.error());
  WriteOutput(out, [&](const FilePath& path) { return WriteFile(path, saved->bytes); });
}

}  // namespace

int Favorites(const FavoritesOptions& options) {
  const InputFile registry(options.registry);
  if (!options.registry.empty() && !SetUserRegistry(FilePath(PathOf(registry.name())).get()))
    throw FileFailure(kTrouble, InputName(options.registry), "cannot be read as a user's registry");
  const FilePath folder = PathOf(options.folder);
  FavoritesReport report;
  Tree tree(ImportFavorites(nullptr, options.folder.empty() ? nullptr : folder.get(), &report));
  const std::string name = options.folder.empty() ? "Favorites" : Printable(options.folder);
  if (!tree && options.folder.empty())
    throw FileFailure(kTrouble, name, "the user's folder is not known or cannot be read");
  if (!tree) throw FileFailure(kTrouble, name, "the folder cannot be read");

  if (!options.opml.empty()) Write(LinkOpml(tree.get()), options.opml);
  if (!options.html.empty()) Write(CWriteBookmarks(tree.get()), options.html);
  if (options.opml.empty() && options.html.empty() && options.rss.empty() && !options.json)
    Show(tree.get(), report);
  if (!options.rss.empty()) WriteRss(std::move(tree), options.rss);
  if (options.json)
    PrintJson(std::move(tree), report);
  else
    PrintWarnings(name, report);
  return kFine;
}

}  // namespace vosmere::tool
