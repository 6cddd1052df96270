// CBaseTool. AssignUUID is in tree/base_node.cc, because this room must not know items.
#include "vosmere/text/toolbox.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "vosmere/platform/internal/uuid.h"
#include "vosmere/platform/keys.h"
#include "vosmere/text/internal/pub_date_format.h"

namespace vosmere {
namespace {

// The smallest buffer that GetPubDate accepts, and the most that it writes.
constexpr int kPubDateCapacity = 40;

}  // namespace

CBaseTool::~CBaseTool() = default;

bool CBaseTool::GetUUID(WChar* text, int capacity) {
  WChar uuid[kUuidTextLength + 1];
  if (capacity < kUuidTextLength + 1 || !NewUuidText(uuid)) return false;
  std::copy_n(uuid, kUuidTextLength + 1, text);
  return true;
}

bool CBaseTool::GetPubDate(LONG seconds, WChar* text, int capacity) {
  if (capacity > 0) *text = 0;
  if (capacity < kPubDateCapacity) return false;
  const PubDateFormat format;
  char date[PubDateFormat::kDateRoom];
  const int length = format.Date(seconds, date);
  if (length == 0) return true;
  WChar* const end = text + kPubDateCapacity - 1;
  text = std::copy_n(date, length, text);
  *text++ = ' ';
  const std::string_view zone = format.zone();
  *std::copy_n(zone.begin(), std::min<std::ptrdiff_t>(zone.size(), end - text), text) = 0;
  return true;
}

int CBaseTool::GetModifyKeyState() {
  const bool shift = KeyState(kKeyShift) < 0;
  const bool control = KeyState(kKeyControl) < 0;
  if (shift && control) return 4;
  if (shift) return 1;
  if (control) return 2;
  return KeyState(kKeyAlt) < 0 ? 3 : 0;
}

void CBaseTool::Delete(void* buffer) {
  delete[] static_cast<char*>(buffer);
}

}  // namespace vosmere
