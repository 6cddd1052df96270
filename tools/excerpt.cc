// The line of a file that an error is about.
#include "tools/excerpt.h"

#include <fstream>
#include <limits>

#include "tools/text.h"

namespace vosmere::tool {
namespace {

constexpr std::size_t kWidth = 76;
constexpr LONG kFarthest = 1 << 20;  // columns beyond are not searched for

/// Whether the byte is not the first one of a character.
bool IsInside(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t Characters(std::string_view text) {
  std::size_t count = 0;
  for (const char byte : text) count += !IsInside(byte);
  return count;
}

std::string FirstCharacters(const std::string& text, std::size_t count) {
  std::size_t end = 0;
  while (end < text.size() && (count > 0 || IsInside(text[end]))) {
    if (!IsInside(text[end])) --count;
    ++end;
  }
  return text.substr(0, end);
}

/// The line as far as some characters after the column.
std::string LineOf(const std::filesystem::path& path, LONG line, LONG column) {
  std::ifstream file(path, std::ios::binary);
  while (--line > 0) file.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  std::string text(4 * (static_cast<std::size_t>(column) + kWidth), '\0');
  file.read(text.data(), static_cast<std::streamsize>(text.size()));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text.substr(0, text.find_first_of("\r\n"));
}

}  // namespace

std::string Excerpt(const std::filesystem::path& file, LONG line, LONG column) {
  std::error_code ignored;
  if (line <= 0 || column <= 0 || column > kFarthest ||
      !std::filesystem::is_regular_file(file, ignored))
    return {};
  std::string text = LineOf(file, line, column);
  if (text.empty() || text.find('\0') != text.npos) return {};
  for (char& byte : text)
    if (byte == '\t') byte = ' ';
  std::string before = FirstCharacters(text, static_cast<std::size_t>(column) - 1);
  std::string after = text.substr(before.size());
  const std::size_t length = Characters(before);
  std::string cut;
  if (length > kWidth / 2) {
    before.erase(0, FirstCharacters(before, length - kWidth / 2).size());
    cut = "...";
  }
  before = cut + Printable(before);
  after = Printable(FirstCharacters(after, kWidth / 2));
  return "  " + before + after + "\n  " + std::string(Characters(before), ' ') + "^\n";
}

}  // namespace vosmere::tool
