#include "tools/document_source.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <system_error>

#include "tools/failure.h"
#include "tools/terminal.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

[[noreturn]] void Refuse(const std::string& file, const std::string& why) {
  throw FileFailure(kTrouble, InputName(file), why);
}

/// What may wait for its bytes, and give them only once.
class Intake {
 public:
  explicit Intake(const std::string& file) : isStandard_(IsStandard(file)) {
    if (isStandard_)
      MakeInputBinary();
    else
      file_.open(PathOf(file), std::ios::binary);
  }

  /// 0 at the end, and when reading fails.
  std::size_t Read(char* bytes, std::size_t capacity) {
    if (isStandard_) return std::fread(bytes, 1, capacity, stdin);
    file_.read(bytes, static_cast<std::streamsize>(capacity));
    return static_cast<std::size_t>(file_.gcount());
  }
  bool Failed() const { return isStandard_ ? std::ferror(stdin) : !file_.is_open() || file_.bad(); }

 private:
  bool isStandard_;
  std::ifstream file_;
};

std::string ReadOnce(const std::string& file) {
  Intake intake(file);
  std::string bytes;
  char piece[64 * 1024];
  for (std::size_t got; (got = intake.Read(piece, sizeof piece)) > 0;) {
    if (bytes.size() + got > kMostBytes) Refuse(file, "more than 256 MiB, and no plain file");
    bytes.append(piece, got);
  }
  if (intake.Failed()) Refuse(file, "cannot be read: " + std::generic_category().message(errno));
  return bytes;
}

}  // namespace

bool LoadFrom(const std::string& file, CReadXML& reader) {
  std::error_code ignored;
  if (!IsStandard(file) && !std::filesystem::is_other(PathOf(file), ignored))
    return reader.LoadFile(LibraryPath(PathOf(file)).get());
  const std::string bytes = ReadOnce(file);
  return reader.LoadXML(bytes.data(), static_cast<int>(bytes.size()));
}

InputFile::InputFile(const std::string& file) try : name_(file) {
  if (!IsStandard(file)) return;
  const std::string bytes = ReadOnce(file);
  copy_.emplace().Create(kForTheUserAlone);
  if (!(std::ofstream(copy_->path(), std::ios::binary) << bytes).flush())
    Refuse(file, "cannot be kept in a file for the time being");
  const std::u8string name = copy_->path().u8string();
  name_.assign(name.begin(), name.end());
} catch (const std::filesystem::filesystem_error& error) {
  Refuse(file, Printable(error.code().message()));
}

}  // namespace vosmere::tool
