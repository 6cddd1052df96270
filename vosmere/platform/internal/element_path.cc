// Writes the path of an element into a DocumentError.
#include "vosmere/platform/internal/element_path.h"

#include <cstdio>
#include <cstring>

#include "vosmere/platform/internal/code_page.h"

namespace vosmere {

bool PrecedeElement(DocumentError* error, WideView name, std::size_t position) {
  constexpr std::size_t kNameUnits = 40;
  constexpr char kCut[] = "...";
  char step[sizeof error->element] = "/";
  const WideView shown = FirstWhole(name, kNameUnits);
  std::size_t length = 1 + static_cast<std::size_t>(
                               WideToBytes(kCodePageUtf8, shown.data, static_cast<int>(shown.size),
                                           step + 1, static_cast<int>(kNameUnits * 3)));
  if (position > 1)
    length += static_cast<std::size_t>(
        std::snprintf(step + length, sizeof step - length, "[%zu]", position));
  char* const path = error->element;
  const std::size_t before = std::strlen(path) + 1;
  const bool fits = before + length + sizeof kCut <= sizeof error->element;
  if (!fits) length = sizeof kCut - 1;
  std::memmove(path + length, path, before);
  std::memcpy(path, fits ? step : kCut, length);
  return fits;
}

}  // namespace vosmere
