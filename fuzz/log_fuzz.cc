// Every change that a log asks for is made completely or refused with a reason, and leaves a tree
// that can be written and read again. Checksums would keep the fuzzer from reaching the changes, so
// it makes the changes itself; an input that begins with 'f' is a whole file.
#include <string>
#include <string_view>

#include "fuzz/support.h"
#include "vosmere/storage/internal/record_file.h"
#include "vosmere/storage/internal/stored_tree.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

// Each change is its kind, two bytes of length, and its contents; the high bit of the kind undoes
// it.
void MakeChanges(std::string_view input) {
  StoredTree tree;
  tree.SetRoot(NewLink(NT_FOLDER, true));
  while (input.size() >= 3) {
    const auto kind = static_cast<unsigned char>(input[0]);
    const std::size_t length = static_cast<unsigned char>(input[1]) |
                               static_cast<std::size_t>(static_cast<unsigned char>(input[2])) << 8;
    const std::string_view bytes = input.substr(3, length);
    const char* problem = nullptr;
    Require(tree.Make(static_cast<ChangeKind>(kind & 0x7F), bytes, kind & 0x80, &problem) ==
            !problem);
    input.remove_prefix(3 + bytes.size());
  }
  StoredTree back;
  Require(tree.DescribeAll([&](std::string_view links) { return back.ReadDescriptions(links); }));
  back.FinishReading();
  Require(back.count() == tree.count());
}

void ReadFile(std::string_view bytes) {
  WriteScratch(bytes);
  const PathText wide(ScratchPath().begin(), ScratchPath().end());
  for (const FileKind kind : {FileKind::kCheckpoint, FileKind::kChanges}) {
    DiskFile file;
    Require(file.OpenToRead(wide.c_str()));
    RecordReader reader(file);
    if (!reader.ReadHeader(kind)) continue;
    StoredTree tree;
    Record record;
    const char* problem;
    RecordReader::State state;
    while ((state = reader.Next(&record)) == RecordReader::State::kRecord)
      if (kind == FileKind::kCheckpoint)
        tree.ReadDescriptions(record.contents);
      else
        tree.Make(static_cast<ChangeKind>(record.kind), record.contents, false, &problem);
    if (state == RecordReader::State::kBad) reader.GoesOnLater(record.sequence);
    Require(reader.position() <= bytes.size());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = View(data, size);
  if (size > 0 && data[0] == 'f')
    ReadFile(input.substr(1));
  else
    MakeChanges(input);
  return 0;
}
