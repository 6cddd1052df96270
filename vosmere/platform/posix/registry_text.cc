// Reads a registry in text form: a section for each key, a line for each value. In the file of a
// Wine prefix everything beyond ASCII is escaped. In an exported file only quotes and backslashes
// are, and it may also delete keys and values.
#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "vosmere/base/ascii.h"
#include "vosmere/base/internal/wide_string.h"
#include "vosmere/platform/posix/registry_file.h"
#include "vosmere/platform/posix/text_file.h"

namespace vosmere {
namespace {

constexpr auto kNone = std::string_view::npos;
constexpr char kLineEnds[] = "\r\n";
constexpr int kNoDigit = 16;

int DigitValue(char c) {
  if (ascii::IsDigit(c)) return c - '0';
  const char letter = ascii::Fold(c);
  return letter >= 'a' && letter <= 'f' ? letter - 'a' + 10 : kNoDigit;
}

/// Removes up to `most` digits from the front of `text` and returns their value.
unsigned TakeNumber(std::string_view& text, int base, std::size_t most) {
  unsigned number = 0;
  std::size_t used = 0;
  while (used < most && used < text.size() && DigitValue(text[used]) < base)
    number = number * base + DigitValue(text[used++]);
  text.remove_prefix(used);
  return number;
}

/// Removes an escape sequence, whose backslash has been removed before, from the front of `text`
/// and returns its character. The sequences are those of C and "e" for the escape character, with
/// up to three octal or four hexadecimal digits.
char16_t TakeEscape(std::string_view& text) {
  constexpr std::string_view kLetters = "abefnrtv";
  constexpr char kMeanings[] = "\a\b\x1B\f\n\r\t\v";
  const char letter = text.front();
  if (letter >= '0' && letter <= '7') return static_cast<char16_t>(TakeNumber(text, 8, 3));
  text.remove_prefix(1);
  if (letter == 'x') return static_cast<char16_t>(TakeNumber(text, 16, 4));
  const std::size_t meaning = kLetters.find(letter);
  return meaning == kNone ? static_cast<unsigned char>(letter) : kMeanings[meaning];
}

/// Removes the escapes; in an exported file a backslash only protects the next character.
std::u16string Unescaped(std::string_view text, bool isWine) {
  std::u16string units;
  while (!text.empty()) {
    const bool escaped = text.front() == '\\' && text.size() > 1;
    if (escaped) text.remove_prefix(1);
    if (escaped && isWine) {
      units += TakeEscape(text);
      continue;
    }
    const std::size_t end = std::min(text.find('\\', 1), text.size());
    units += WideOf(std::string(text.substr(0, end)));
    text.remove_prefix(end);
  }
  return units;
}

/// Removes a quoted text from the front and returns its content; nothing when there is none or its
/// end is missing.
std::optional<std::string_view> TakeQuoted(std::string_view& text) {
  if (!text.starts_with('"')) return {};
  std::size_t end = 1;
  while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
  if (end >= text.size()) return {};
  const std::string_view quoted = text.substr(1, end - 1);
  text.remove_prefix(end + 1);
  return quoted;
}

/// Parses bytes of two hexadecimal digits, separated by commas; a backslash continues them on the
/// next line.
std::string HexBytes(std::string_view text) {
  std::string bytes;
  for (;;) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t,"), text.size()));
    if (text.starts_with('\\'))
      text.remove_prefix(std::min(text.find_first_not_of("\\ \t\r\n"), text.size()));
    if (text.empty() || DigitValue(text.front()) == kNoDigit) return bytes;
    bytes += static_cast<char>(TakeNumber(text, 16, 2));
  }
}

template <class Number>
void AppendLittleEndian(std::string& bytes, Number number) {
  for (std::size_t i = 0; i < sizeof number; ++i) bytes += static_cast<char>(number >> 8 * i);
}

/// Parses a value. `data` begins after "name=" and may continue on further lines. False for an
/// unknown type and for a deletion, which is a lone hyphen.
bool ReadData(std::string_view data, bool isWine, std::string* bytes) {
  std::string_view line = data.substr(0, data.find_first_of(kLineEnds));
  const std::size_t colon = line.starts_with('"') ? kNone : line.find(':');
  const std::string_view type = line.substr(0, colon == kNone ? 0 : colon);
  line.remove_prefix(colon + 1);
  bytes->clear();
  if (type.empty() || type.starts_with("str")) {
    const auto text = TakeQuoted(line);
    if (!text) return false;
    for (const char16_t unit : Unescaped(*text, isWine) + u'\0') AppendLittleEndian(*bytes, unit);
  } else if (type.starts_with("hex")) {
    *bytes = HexBytes(data.substr(colon + 1));
  } else if (type == "dword") {
    AppendLittleEndian(*bytes, TakeNumber(line, 16, 8));
  } else {
    return false;
  }
  return true;
}

/// A registry in text form. It indexes only the sections and parses values on demand. A file may
/// have several sections for one key, and later entries override earlier ones.
class RegistryText : public RegistryFile {
 public:
  RegistryText(std::string text, bool isWine) : text_(std::move(text)), isWine_(isWine) {}

  /// Call once, before everything else. False when the file has too many keys.
  bool Index() {
    std::size_t at = 0, count = 0;
    for (std::size_t next; at < text_.size(); at = next) {
      next = NextSection(at);
      if (text_[at] == '[' && Add(std::string_view(text_).substr(at, next - at)) &&
          ++count > kRegistryKeyLimit)
        return false;
    }
    return true;
  }

  /// A key also exists if only a key below it has a section.
  bool HasKey(const std::u16string& key) const override {
    const std::u16string wanted = Folded(key);
    const auto below = sections_.lower_bound(wanted + u'\\');
    return wanted.empty() || sections_.contains(wanted) ||
           (below != sections_.end() && below->first.starts_with(wanted + u'\\'));
  }

  bool ReadValue(const std::u16string& key, const std::u16string& name,
                 std::string* bytes) const override {
    const auto found = sections_.find(Folded(key));
    if (found == sections_.end()) return false;
    const std::u16string wanted = Folded(name);
    bool has = false;
    for (const std::string_view section : found->second)
      has = ReadLast(section, wanted, has, bytes);
    return has;
  }

 private:
  /// The offset of the next line that begins with a bracket.
  std::size_t NextSection(std::size_t at) const {
    while ((at = text_.find('[', at + 1)) != kNone)
      if (text_[at - 1] == '\n' || text_[at - 1] == '\r') return at;
    return text_.size();
  }

  /// Adds a section to the index, or deletes the key. False when the section is not one of the
  /// user's keys.
  bool Add(std::string_view section) {
    const std::size_t line = std::min(section.find_first_of(kLineEnds), section.size());
    const std::size_t end = section.rfind(']', line - 1);
    if (end == kNone) return false;
    std::string_view path = section.substr(1, end - 1);
    const bool takenBack = path.starts_with('-');
    if (takenBack) path.remove_prefix(1);
    std::u16string key = Folded(isWine_ ? Unescaped(path, true) : WideOf(std::string(path)));
    if (!isWine_) {
      const auto root = {u"hkey_current_user", u"hkcu"};
      const std::u16string first = key.substr(0, key.find(u'\\'));
      if (std::find(root.begin(), root.end(), first) == root.end()) return false;
      key.erase(0, first.size() + 1);
    }
    if (takenBack)
      TakeBack(key);
    else
      sections_[key].push_back(section.substr(line));
    return true;
  }

  /// Deletes a key with the keys below it. They are adjacent in the map, since a bracket is the
  /// next character after the backslash.
  void TakeBack(const std::u16string& key) {
    sections_.erase(key);
    sections_.erase(sections_.lower_bound(key + u'\\'), sections_.lower_bound(key + u']'));
  }

  /// Searches the lines of a section for a value; the last one counts. `has` says whether an
  /// earlier section contains the value. Returns whether it exists after this section.
  bool ReadLast(std::string_view section, const std::u16string& wanted, bool has,
                std::string* bytes) const {
    for (;;) {
      section.remove_prefix(std::min(section.find_first_not_of(kLineEnds), section.size()));
      if (section.empty()) return has;
      const std::size_t size = std::min(section.find_first_of(kLineEnds), section.size());
      std::string_view line = section.substr(0, size);
      std::optional<std::string_view> name = TakeQuoted(line);
      if (!name && line.starts_with("@=")) {  // the key's default value, which has no name
        name = "";
        line.remove_prefix(1);
      }
      if (name && line.starts_with('=') && Folded(Unescaped(*name, isWine_)) == wanted)
        has = ReadData(section.substr(line.data() + 1 - section.data()), isWine_, bytes);
      section.remove_prefix(size);
    }
  }

  std::string text_;
  bool isWine_;
  std::map<std::u16string, std::vector<std::string_view>> sections_;
};

}  // namespace

RegistryFile::~RegistryFile() = default;

std::unique_ptr<RegistryFile> OpenRegistryText(std::string bytes) {
  std::string text = TextOf(std::move(bytes));
  const bool isWine = text.starts_with("WINE REGISTRY Version 2");
  if (!isWine && !text.starts_with("Windows Registry Editor Version 5.00") &&
      !text.starts_with("REGEDIT4"))
    return nullptr;
  auto registry = std::make_unique<RegistryText>(std::move(text), isWine);
  if (!registry->Index()) return nullptr;
  return registry;
}

}  // namespace vosmere
