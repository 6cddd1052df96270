// Safe saves of bytes and of other files, and the marks of files.
#include "vosmere/storage/safe_save.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "vosmere/storage/internal/failure.h"
#include "vosmere/storage/internal/safe_file.h"
#include "vosmere/text/md5_digest.h"

namespace vosmere {
namespace {

constexpr std::size_t kBlock = 1 << 20;
constexpr unsigned kMostAtOnce = 1u << 30;

void AddTo(CMD5Digest& digest, const void* bytes, std::size_t size) {
  for (auto* at = static_cast<const unsigned char*>(bytes); size > 0;) {
    const auto part = static_cast<unsigned>(std::min<std::size_t>(size, kMostAtOnce));
    digest.Update(at, part);
    at += part;
    size -= part;
  }
}

/// Calls `use(bytes, size)` with the whole file in blocks, until it is false.
template <class Use>
bool ReadBlocks(DiskFile& file, Use use) {
  const auto block = std::make_unique_for_overwrite<unsigned char[]>(kBlock);
  for (std::uint64_t position = 0;;) {
    std::size_t got = 0;
    if (!file.ReadAt(position, block.get(), kBlock, &got)) return false;
    if (got == 0) return true;
    if (!use(block.get(), got)) return false;
    position += got;
  }
}

/// Whether a file reads as these pieces.
bool Holds(DiskFile& file, const FilePiece* pieces, std::size_t count) {
  const FilePiece* const end = pieces + count;
  std::size_t done = 0;  // of the first piece
  const bool same = ReadBlocks(file, [&](const unsigned char* bytes, std::size_t size) {
    while (size > 0) {
      while (pieces != end && done == pieces->size) ++pieces, done = 0;
      if (pieces == end) return false;
      const std::size_t part = std::min(size, pieces->size - done);
      if (std::memcmp(bytes, static_cast<const char*>(pieces->data) + done, part) != 0)
        return false;
      bytes += part;
      size -= part;
      done += part;
    }
    return true;
  });
  while (pieces != end && done == pieces->size) ++pieces, done = 0;
  return same && pieces == end;
}

FileMark MarkOf(const FilePiece* pieces, std::size_t count) {
  CMD5Digest digest;
  FileMark mark;
  mark.isThere = true;
  for (const FilePiece* piece = pieces; piece != pieces + count; ++piece) {
    AddTo(digest, piece->data, piece->size);
    mark.size += piece->size;
  }
  digest.Final(mark.digest);
  return mark;
}

bool ReadsBackOtherwise(SafeFile& file) {
  return file.Fail(DocumentFault::kCannotWrite, "what was written does not read back",
                   file.file().error());
}

/// Without memory false, with the reason.
template <class Act>
bool UnlessNoMemory(DocumentError* error, Act act) {
  try {
    return act();
  } catch (const std::bad_alloc&) {
    return FailWith(error, DocumentFault::kNoMemory, "memory ran out");
  }
}

}  // namespace

bool MarkOf(DiskFile& file, FileMark* mark) {
  CMD5Digest digest;
  *mark = {};
  mark->isThere = true;
  const bool read = ReadBlocks(file, [&](const unsigned char* bytes, std::size_t size) {
    AddTo(digest, bytes, size);
    mark->size += size;
    return true;
  });
  digest.Final(mark->digest);
  return read;
}

bool ReadFileMark(const WChar* path, FileMark* mark, DocumentError* error) {
  return UnlessNoMemory(error, [=] {
    *mark = {};
    DiskFile file;
    if (!path) return FailWith(error, DocumentFault::kCannotOpen, "no file was named");
    if (!file.OpenToRead(path))
      return IsNotThere(file.error()) ||
             FailWith(error, DocumentFault::kCannotOpen, "cannot be read", file.error());
    return MarkOf(file, mark) ||
           FailWith(error, DocumentFault::kCannotRead, "cannot be read", file.error());
  });
}

bool SafeSave(const WChar* path, const FilePiece* pieces, std::size_t count,
              const FileMark* expected, FileMark* saved, DocumentError* error) {
  return UnlessNoMemory(error, [=] {
    SafeFile file;
    const bool done =
        file.Begin(path) &&
        std::all_of(pieces, pieces + count,
                    [&](const FilePiece& piece) { return file.Write(piece.data, piece.size); }) &&
        file.Stored() && (Holds(file.file(), pieces, count) || ReadsBackOtherwise(file)) &&
        file.Replace(expected);
    if (!done && error) *error = file.error();
    if (done && saved) *saved = MarkOf(pieces, count);
    return done;
  });
}

bool CanSaveTo(const WChar* path, DocumentError* error) {
  return UnlessNoMemory(error, [=] {
    SafeFile file;
    const bool found = file.Find(path);
    if (!found && error) *error = file.error();
    return found;
  });
}

bool SafeCopy(const WChar* from, const WChar* path, const FileMark* expected, FileMark* saved,
              DocumentError* error) {
  return UnlessNoMemory(error, [=] {
    DiskFile source;
    FileMark held, written;
    if (!from || !source.OpenToRead(from) || !MarkOf(source, &held))
      return FailWith(error, DocumentFault::kCannotRead, "what is to be saved cannot be read",
                      source.error());
    SafeFile file;
    const bool done =
        file.Begin(path) &&
        ReadBlocks(source,
                   [&](const void* bytes, std::size_t size) { return file.Write(bytes, size); }) &&
        file.Stored() &&
        ((MarkOf(file.file(), &written) && written == held) || ReadsBackOtherwise(file)) &&
        file.Replace(expected);
    if (!done && error) *error = file.error();
    if (!done && error && error->fault == DocumentFault::kNone)
      FailWith(error, DocumentFault::kCannotRead, "what is to be saved cannot be read",
               source.error());
    if (done && saved) *saved = held;
    return done;
  });
}

}  // namespace vosmere
