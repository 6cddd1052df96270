// Writes and reads the records of a store's files.
#include "vosmere/storage/internal/record_file.h"

#include <algorithm>

#include "vosmere/base/internal/bytes.h"
#include "vosmere/storage/internal/checksum.h"

namespace vosmere {
namespace {

constexpr std::string_view kMagic = "Vosmere store\n";
constexpr std::size_t kFront = 8;  // length and checksum
constexpr std::size_t kBlock = std::size_t{256} * 1024;
constexpr unsigned kKindMask = 0x1F, kDirectionShift = 5, kFirst = 0x80;

void PutWord(char* at, std::uint32_t word) {
  for (int i = 0; i < 4; ++i) at[i] = static_cast<char>(word >> 8 * i);
}

std::uint32_t GetWord(const char* at) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i)
    word |= static_cast<std::uint32_t>(static_cast<unsigned char>(at[i])) << 8 * i;
  return word;
}

std::uint32_t ChecksumOf(std::uint32_t seed, const char* front, std::string_view body) {
  return Checksum(Checksum(seed, front, 4), body.data(), body.size());
}

}  // namespace

void WriteRecord(std::uint32_t seed, const Record& record, std::string& bytes) {
  const std::size_t start = bytes.size();
  bytes.append(kFront, '\0');
  ByteWriter writer(bytes);
  writer.Number(record.sequence);
  bytes +=
      static_cast<char>(record.kind | static_cast<unsigned>(record.direction) << kDirectionShift |
                        (record.isFirst ? kFirst : 0));
  bytes += record.contents;
  char* const front = bytes.data() + start;
  const std::string_view body(front + kFront, bytes.size() - start - kFront);
  PutWord(front, static_cast<std::uint32_t>(body.size()));
  PutWord(front + 4, ChecksumOf(seed, front, body));
}

std::uint32_t ChecksumSeed(const FileHeader& header) {
  const char kind = static_cast<char>(header.kind);
  return Checksum(Checksum(0, header.identity.data(), header.identity.size()), &kind, 1);
}

void WriteHeader(const FileHeader& header, std::string& bytes) {
  std::string contents;
  ByteWriter writer(contents);
  writer.Raw(kMagic);
  writer.Number(FileHeader::kVersion);
  writer.Number(static_cast<std::uint64_t>(header.kind));
  writer.Raw(header.identity);
  for (const std::uint64_t number : {header.number, header.nextNumber, header.count, header.time})
    writer.Number(number);
  WriteRecord(0, {header.sequence, kHeaderRecord, Direction::kDone, true, contents}, bytes);
}

std::string RecordReader::problem() const {
  return systemError_ ? problem_ + ": " + SystemMessage(systemError_) : problem_;
}

RecordReader::State RecordReader::Bad(const char* problem) {
  problem_ = problem;
  return State::kBad;
}

bool RecordReader::ReadHeader(FileKind kind) {
  if (!file_.Size(&size_)) {
    systemError_ = file_.error();
    return problem_ = "it cannot be read", false;
  }
  Record record;
  const State state = Next(&record);
  if (state == State::kEnd) return problem_ = "it is empty", false;
  if (state == State::kBad) return false;
  ByteReader reader(record.contents);
  if (record.kind != kHeaderRecord || reader.Raw(kMagic.size()) != kMagic)
    return problem_ = "it is no file of a store", false;
  if (reader.Number() != FileHeader::kVersion)
    return problem_ = "a newer version has written it", false;
  header_.kind = static_cast<FileKind>(reader.Number());
  header_.identity = reader.Raw(kIdentitySize);
  header_.sequence = record.sequence;
  for (std::uint64_t* number :
       {&header_.number, &header_.nextNumber, &header_.count, &header_.time})
    *number = reader.Number();
  if (reader.failed() || header_.kind != kind) return problem_ = "its header is broken", false;
  seed_ = ChecksumSeed(header_);
  return true;
}

/// Whether so many bytes from the next record on are in the buffer.
bool RecordReader::Fill(std::size_t size) {
  if (buffer_.size() - at_ >= size) return true;
  if (size_ - position_ < size) return false;
  buffer_.erase(0, at_);
  at_ = 0;
  while (buffer_.size() < size) {
    const std::size_t old = buffer_.size();
    buffer_.resize(std::max(size, old + kBlock));
    std::size_t got = 0;
    const bool read = file_.ReadAt(read_, buffer_.data() + old, buffer_.size() - old, &got);
    buffer_.resize(old + got);
    read_ += got;
    if (!read) systemError_ = file_.error();
    if (!read || got == 0) return false;
  }
  return true;
}

bool RecordReader::Parse(std::string_view bytes, Record* record) const {
  ByteReader reader(bytes.substr(kFront));
  record->sequence = reader.Number();
  const std::string_view flags = reader.Raw(1);
  if (reader.failed()) return false;
  const auto what = static_cast<unsigned char>(flags[0]);
  record->kind = what & kKindMask;
  record->direction = static_cast<Direction>(what >> kDirectionShift & 3);
  record->isFirst = what & kFirst;
  record->contents = bytes.substr(static_cast<std::size_t>(flags.data() + 1 - bytes.data()));
  return record->direction <= Direction::kRedone;
}

RecordReader::State RecordReader::Next(Record* record) {
  if (position_ == size_) return State::kEnd;
  if (!Fill(kFront)) return Bad(systemError_ ? "it cannot be read" : "a record ends early");
  const std::size_t length = GetWord(buffer_.data() + at_);
  if (length < 2) return Bad("a record has no contents");
  if (!Fill(kFront + length))
    return Bad(systemError_ ? "it cannot be read" : "a record ends early");
  last_ = std::string_view(buffer_).substr(at_, kFront + length);
  if (GetWord(last_.data() + 4) != ChecksumOf(seed_, last_.data(), last_.substr(kFront)))
    return Bad("a record is damaged, or of another store");
  if (!Parse(last_, record)) return Bad("a record cannot be read");
  at_ += last_.size();
  position_ += last_.size();
  return State::kRecord;
}

bool RecordReader::GoesOnLater(std::uint64_t lastSequence) {
  constexpr std::uint64_t kMost = 64 << 20;  // no more is flushed together
  const std::uint64_t rest = size_ - position_;
  if (rest > kMost) return true;
  if (!Fill(static_cast<std::size_t>(rest))) return systemError_ != 0;
  const std::string_view bytes = std::string_view(buffer_).substr(at_, rest);
  std::uint64_t work = 4 * rest + kBlock;
  for (std::size_t at = 1; at + kFront + 2 <= bytes.size(); ++at) {
    const std::size_t length = GetWord(bytes.data() + at);
    if (length < 2 || length > bytes.size() - at - kFront) continue;
    const std::string_view whole = bytes.substr(at, kFront + length);
    Record record;
    if (!Parse(whole, &record) || !record.isFirst || record.sequence <= lastSequence ||
        record.sequence - lastSequence > rest)
      continue;
    if (work < length) return true;  // nobody writes this by accident
    work -= length;
    if (GetWord(whole.data() + 4) == ChecksumOf(seed_, whole.data(), whole.substr(kFront)))
      return true;
  }
  return false;
}

}  // namespace vosmere
