// Colors in messages and output.
#include "tools/colors.h"

namespace vosmere::tool {
namespace {

Colors chosen = Colors::kAuto;

}  // namespace

void SetColors(Colors colors) {
  chosen = colors;
}

bool TakesColors(Stream stream) {
  return chosen == Colors::kAlways || (chosen == Colors::kAuto && TerminalTakesColors(stream));
}

std::string Colored(const std::string& text, const char* color, Stream stream) {
  return TakesColors(stream) ? color + text + "\033[m" : text;
}

std::string ColoredMessage(std::string message, Stream stream) {
  for (const std::string kind : {"error:", "warning:"})
    if (const std::size_t at = message.find(": " + kind); at != message.npos)
      return message.replace(at + 2, kind.size(),
                             Colored(kind, kind == "error:" ? kRed : kYellow, stream));
  return message;
}

}  // namespace vosmere::tool
