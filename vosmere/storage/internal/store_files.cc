// Names, reads and writes the files of a store.
#include "vosmere/storage/internal/store_files.h"

#include <algorithm>
#include <cstring>
#include <ctime>

#include "vosmere/base/ascii.h"
#include "vosmere/platform/internal/clock.h"
#include "vosmere/platform/internal/folder.h"
#include "vosmere/storage/internal/failure.h"
#include "vosmere/text/md5_digest.h"

namespace vosmere {
namespace {

const char* StartOf(FileKind kind) {
  return kind == FileKind::kCheckpoint ? "checkpoint-" : "changes-";
}

/// The number in a name that begins so; 0 for none. What follows the digits is `*rest`.
std::uint64_t NumberIn(const PathText& name, FileKind kind, PathText* rest) {
  constexpr std::size_t kMostDigits = 18;
  const PathText start = PathOf(StartOf(kind));
  if (!name.starts_with(start)) return 0;
  std::uint64_t number = 0;
  std::size_t at = start.size();
  for (; at < name.size() && ascii::IsDigit(name[at]); ++at) {
    if (at == start.size() + kMostDigits) return 0;
    number = number * 10 + (name[at] - '0');
  }
  *rest = name.substr(at);
  return number;
}

/// "20261122T051500", in UTC.
std::string TimeText() {
  const auto now = static_cast<std::time_t>(static_cast<ULONG>(ClockSeconds()));
  std::tm utc = {};
  char text[32] = "";
  if (const std::tm* const parts = std::gmtime(&now)) utc = *parts;
  std::strftime(text, sizeof text, "%Y%m%dT%H%M%S", &utc);
  return text;
}

std::string DigestText(const unsigned char (&digest)[16]) {
  return std::string(reinterpret_cast<const char*>(digest), sizeof digest);
}

/// Goes through the records of a checkpoint after its header. Why it is broken, or empty.
std::string ReadLinks(RecordReader& reader, StoredTree* tree, CMD5Digest& digest,
                      CheckpointState* state) {
  Record record;
  for (;;) {
    const RecordReader::State next = reader.Next(&record);
    if (next == RecordReader::State::kEnd) return "it ends early";
    if (next == RecordReader::State::kBad) return reader.problem();
    if (record.kind == kFooterRecord) break;
    digest.Update(reinterpret_cast<const unsigned char*>(reader.lastBytes().data()),
                  static_cast<unsigned>(reader.lastBytes().size()));
    if (record.kind != kLinksRecord) return "it holds what is not known";
    if (tree && !tree->ReadDescriptions(record.contents)) return "an item cannot be read";
  }
  digest.Final(state->digest);
  ByteReader footer(record.contents);
  if (footer.Raw(sizeof state->digest) != DigestText(state->digest))
    return "its digest is not that of its contents";
  if (reader.position() != reader.size()) return "something follows its end";
  if (tree && (!tree->root() || tree->count() != state->header.count))
    return "it does not hold as many items as it says";
  return {};
}

}  // namespace

StoreFiles::StoreFiles(const WChar* folder) {
  SetFolder(folder);
}

void StoreFiles::SetFolder(const PathText& folder) {
  folder_ = folder;
  if (NameStart(folder_) != folder_.size()) folder_ += '/';
}

PathText StoreFiles::Path(FileKind kind, std::uint64_t number) const {
  return folder_ + PathOf(StartOf(kind) + std::to_string(number));
}

PathText StoreFiles::LockPath() const {
  return folder_ + PathOf("lock");
}

bool StoreFiles::List(ULONG* error) {
  checkpoints.clear();
  logs.clear();
  isEmpty = true;
  FolderListing listing;
  PathKind kind = PathKind::kNothing;
  PathText target;
  *error = FindTarget(folder_.c_str(), &target, &kind);
  if (*error || !listing.Open(folder_.c_str())) return false;
  SetFolder(target);  // the same, also when the program changes its current folder
  while (listing.Next()) {
    const PathText name = listing.Name();
    for (const FileKind file : {FileKind::kCheckpoint, FileKind::kChanges}) {
      PathText rest;
      const std::uint64_t number = NumberIn(name, file, &rest);
      if (number == 0) continue;
      isEmpty = false;
      highest = std::max(highest, number);
      if (rest.empty()) (file == FileKind::kCheckpoint ? checkpoints : logs).push_back(number);
    }
  }
  std::sort(checkpoints.begin(), checkpoints.end());
  std::sort(logs.begin(), logs.end());
  return !listing.Failed();
}

bool StoreFiles::SetAside(FileKind kind, std::uint64_t number) const {
  const PathText path = Path(kind, number);
  const PathText aside = path + PathOf(".broken-" + TimeText());
  ULONG error = MoveToNewPlace(path.c_str(), aside.c_str());
  for (int i = 2; IsAlreadyThere(error) && i < 100; ++i)
    error = MoveToNewPlace(path.c_str(), (aside + PathOf("-" + std::to_string(i))).c_str());
  return error == 0;
}

CheckpointState ReadCheckpoint(DiskFile& file, StoredTree* tree) {
  CheckpointState state;
  RecordReader reader(file);
  state.hasHeader = reader.ReadHeader(FileKind::kCheckpoint);
  if (!state.hasHeader) {
    state.problem = reader.problem();
    return state;
  }
  state.header = reader.header();
  CMD5Digest digest;
  digest.Update(reinterpret_cast<const unsigned char*>(reader.lastBytes().data()),
                static_cast<unsigned>(reader.lastBytes().size()));
  state.problem = ReadLinks(reader, tree, digest, &state);
  if (tree) {
    tree->FinishReading();
    tree->SetNextNumber(std::max(tree->nextNumber(), state.header.nextNumber));
  }
  return state;
}

CheckpointState ReadCheckpoint(const PathText& path, StoredTree* tree) {
  DiskFile file;
  if (file.OpenToRead(path.c_str())) return ReadCheckpoint(file, tree);
  CheckpointState state;
  state.isGone = IsNotThere(file.error());
  state.problem = "it cannot be read: " + SystemMessage(file.error());
  return state;
}

bool WriteCheckpoint(const PathText& path, FileHeader header, StoredTree& tree,
                     DocumentError* error) {
  SafeFile file;
  CMD5Digest digest;
  const std::uint32_t seed = ChecksumSeed(header);
  std::string bytes;
  const auto write = [&] {
    digest.Update(reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<unsigned>(bytes.size()));
    return file.Write(bytes.data(), bytes.size());
  };
  const auto writeAll = [&] {
    WriteHeader(header, bytes);
    if (!file.Begin(path.c_str()) || !write()) return false;
    const bool described = tree.DescribeAll([&](std::string_view links) {
      bytes.clear();
      WriteRecord(seed, {header.sequence, kLinksRecord, Direction::kDone, false, links}, bytes);
      return write();
    });
    if (!described) return false;
    unsigned char whole[16];
    digest.Final(whole);
    bytes.clear();
    WriteRecord(seed, {header.sequence, kFooterRecord, Direction::kDone, false, DigestText(whole)},
                bytes);
    return file.Write(bytes.data(), bytes.size()) && file.Stored();
  };
  const auto readsBack = [&] {
    StoredTree back;
    const CheckpointState state = ReadCheckpoint(file.file(), &back);
    return state.problem.empty() ||
           file.Fail(DocumentFault::kCannotWrite,
                     ("what was written does not read back: " + state.problem).c_str());
  };
  const FileMark nothing;
  const bool done = writeAll() && readsBack() && file.Replace(&nothing);
  if (!done && error) *error = file.error();
  return done;
}

}  // namespace vosmere
