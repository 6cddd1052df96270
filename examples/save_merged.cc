// Saves a list that another program has changed since it was loaded: its changes stay.
//
// Prints: merged: yes, Weekly Daily
#include <filesystem>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const std::filesystem::path file = std::filesystem::temp_directory_path() / "vosmere-merged.opml";
  Tree tree = NewTree("List");
  if (!Save(file, tree)) return 1;
  SaveOptions options;
  options.expected = *MarkOf(file);
  const Result<Tree> base = Load<Tree>(file);

  const Result<Tree> other = Load<Tree>(file);  // another program
  Add<CFolderNode>(*other, "Weekly");
  if (!Save(file, *other)) return 1;

  Add<CFolderNode>(tree, "Daily");
  const Result<SavedMerge> saved = SaveMerged(file, *base, tree, options);
  if (!saved) {
    std::cerr << saved.error() << '\n';
    return 1;
  }
  std::cout << "merged: " << (saved->wasMerged ? "yes," : "no,");
  for (const CFolderNode& folder : Folders(tree)) std::cout << ' ' << NameOf(folder);
  std::cout << '\n';
  std::filesystem::remove(file);
}
