// Writes an item as an HTML page, and sorts a program's own list.
//
// Prints: 2 1 ; <html
#include <filesystem>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

// Sorts by number; a Sorter is the same for the links of a tree.
class SortNumbers : private ListSorter<int*> {
 public:
  static TList<int*>* Descending(TList<int*>* head) {
    SortNumbers().BubbleSort(&head, Compare, nullptr);
    return head;
  }

 private:
  static int Compare(void* a, void* b, void*) {
    return CompareValue(*static_cast<int*>(a), *static_cast<int*>(b));
  }
};

int main() {
  int numbers[] = {1, 2};
  TList<int*>* list = nullptr;
  for (int& number : numbers) list::Append(list, &number);
  list = SortNumbers::Descending(list);
  for (const int& number : ListRange(list)) std::cout << number << ' ';
  list::Delete(list, [](int*) {});

  const Tree tree = NewTree("Notes");
  CUrlNode* const note = Add<CUrlNode>(tree, "Weather", "http://a.example/");
  SetDescription(*note, "Sunny.");
  const FilePath path(std::filesystem::temp_directory_path() / "vosmere-note.html");
  CWriteNoteHtml writer;
  if (!writer.WriteToFile(note, path.get())) return 1;
  CReadFile file;
  FileBytes bytes;
  int count = 0;
  if (!file.OpenFile(path.get()) || !file.ReadToBuffer(Out(bytes), &count)) return 1;
  file.CloseFile();
  std::filesystem::remove(path.native());
  std::cout << "; " << std::string_view(bytes.get(), static_cast<std::size_t>(count)).substr(0, 5);
  std::cout << '\n';
}
