#include "tools/source.h"

#include <filesystem>
#include <fstream>

#include "tools/failure.h"
#include "tools/text.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kMostBytes = std::size_t{256} * 1024 * 1024;

std::string ReadOnce(const std::string& file) {
  std::ifstream in(PathOf(file), std::ios::binary);
  std::string bytes;
  for (char piece[64 * 1024]; in && bytes.size() <= kMostBytes;) {
    in.read(piece, sizeof piece);
    bytes.append(piece, static_cast<std::size_t>(in.gcount()));
  }
  if (bytes.size() > kMostBytes)
    throw Failure{kTrouble, Printable(file) + ": error: more than 256 MiB, and no plain file"};
  if (!in.eof()) throw Failure{kTrouble, Printable(file) + ": error: cannot be read"};
  return bytes;
}

}  // namespace

Source SourceOf(const std::string& file) {
  std::error_code ignored;
  if (std::filesystem::is_other(PathOf(file), ignored))
    return [bytes = ReadOnce(file)](CReadXML& reader) {
      return reader.LoadXML(bytes.data(), static_cast<int>(bytes.size()));
    };
  return [file](CReadXML& reader) { return reader.LoadFile(ToWide(file).get()); };
}

}  // namespace vosmere::tool
