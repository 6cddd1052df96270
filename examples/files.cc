// Writes and reads files, replaces one safely, and builds a text in pieces.
//
// Prints: one, two: 8 bytes; changed since: yes; freed: 1
#include <filesystem>
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const ReplacingFile scratch(std::filesystem::temp_directory_path());  // removed at the end
  const FilePath path(scratch.path());
  CChunkBuffer buffer;
  buffer.Append("one, ", 5);
  buffer.Append("two", 3);
  Chunk* chunk = nullptr;  // the buffer owns its chunks
  buffer.Get(&chunk);
  CWriteFile file;
  if (!file.OpenFile(path.get())) {
    std::cerr << "error " << file.SystemError() << '\n';
    return 1;
  }
  for (; chunk; chunk = chunk->next) file.WriteStreamData(chunk->data, chunk->used);
  file.CloseFile();

  CReadFile reader;
  FileBytes bytes;  // Out makes an OutPointer, which hands it what is stored
  int count = 0;
  if (!reader.OpenFile(path.get()) || !reader.ReadToBuffer(Out(bytes), &count)) return 1;
  reader.CloseFile();
  std::cout << std::string_view(bytes.get(), static_cast<std::size_t>(count)) << ": " << count
            << " bytes; changed since: ";

  const Result<FileMark> mark = MarkOf(path);
  const FilePiece pieces[] = {{"three", 5}};
  DocumentError error;
  if (!SafeSave(path.get(), pieces, 1, &*mark, nullptr, &error)) std::cerr << error.reason;
  std::cout << (*MarkOf(path) == *mark ? "no" : "yes");

  Array<int> numbers;  // for members of exported classes; an OwnedPointer frees as it is told
  numbers.push_back(1);
  const OwnedPointer<int, WithDelete> owned(new int(numbers[0]));
  const OwnedPointer<int, WithArrayDelete> several(new int[2]{1, 2});
  const OwnedPointer<WChar, FreeWith<SysFreeString>> text(SysAllocString(Wide("x").get()));
  std::cout << "; freed: " << *owned << '\n';
}
