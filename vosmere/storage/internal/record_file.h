// Files that consist of records. If the end of a file was not written, the records before it can
// still be read.
//
// A record is the length of the body (4 bytes), a checksum (4 bytes), and the body: sequence
// number, kind, contents. The checksum includes the identity of the store, so that a record of
// another store is recognised. The first record of a file is its header.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "vosmere/base/document_error.h"
#include "vosmere/platform/internal/disk.h"

namespace vosmere {

inline constexpr std::size_t kIdentitySize = 36;  // a UUID as text

enum class FileKind : unsigned char { kCheckpoint = 1, kChanges = 2 };

/// The header of a file.
struct FileHeader {
  static constexpr std::uint64_t kVersion = 1;

  FileKind kind = FileKind::kCheckpoint;
  std::string identity;          // of the store
  std::uint64_t number = 0;      // of the generation
  std::uint64_t sequence = 0;    // of the last change in a checkpoint, or before a log
  std::uint64_t nextNumber = 1;  // the next new link gets; in a checkpoint
  std::uint64_t count = 0;       // how many links there are; in a checkpoint
  std::uint64_t time = 0;        // seconds since 1970
};

/// Kinds of record beside those of changes (stored_tree.h).
inline constexpr unsigned kHeaderRecord = 16, kLinksRecord = 17, kFooterRecord = 18;
/// Which way a change was made.
enum class Direction : unsigned char { kDone = 0, kUndone = 1, kRedone = 2 };

struct Record {
  std::uint64_t sequence = 0;
  unsigned kind = 0;
  Direction direction = Direction::kDone;
  bool isFirst = false;  // the first of a group: everything before it had been flushed
  std::string_view contents;
};

/// Appends the bytes of a record.
void WriteRecord(std::uint32_t seed, const Record& record, std::string& bytes);
/// The checksum of the identity and the kind of file, with which those of its records begin.
std::uint32_t ChecksumSeed(const FileHeader& header);
void WriteHeader(const FileHeader& header, std::string& bytes);

/// Reads a file from its beginning.
class RecordReader {
 public:
  enum class State { kRecord, kEnd, kBad };

  explicit RecordReader(DiskFile& file) : file_(file) {}

  /// False, with the reason in `problem()`, if the file has no valid header of this kind.
  bool ReadHeader(FileKind kind);
  const FileHeader& header() const { return header_; }

  /// The record is valid until the next call.
  State Next(Record* record);
  std::string problem() const;
  ULONG systemError() const { return systemError_; }

  /// How far the file has been read.
  std::uint64_t position() const { return position_; }
  std::uint64_t size() const { return size_; }
  /// Whether a valid record of a later group follows after the place where reading failed. If not,
  /// only the last group is damaged: it was being written when the program or the power failed.
  bool GoesOnLater(std::uint64_t lastSequence);
  /// The bytes of the last record as they are in the file.
  std::string_view lastBytes() const { return last_; }

 private:
  State Bad(const char* problem);
  bool Fill(std::size_t size);
  bool Parse(std::string_view bytes, Record* record) const;

  DiskFile& file_;
  FileHeader header_;
  std::uint32_t seed_ = 0;
  std::uint64_t size_ = 0, position_ = 0;
  std::string buffer_;      // of the file, from bufferStart_
  std::size_t at_ = 0;      // of the next record in it
  std::uint64_t read_ = 0;  // of the file
  std::string_view last_;
  std::string problem_;
  ULONG systemError_ = 0;
};

}  // namespace vosmere
