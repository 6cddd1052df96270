#include "vosmere/text/base_tool.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "vosmere/nodes/base_node.h"
#include "vosmere/platform/clock.h"
#include "vosmere/platform/keys.h"
#include "vosmere/platform/uuid.h"
#include "vosmere/text/date_names.h"

namespace vosmere {
namespace {

constexpr int kPubDateCapacity = 40;

template <std::size_t N>
void FormatZone(char (&zone)[N]) {
  const LONG west = ZoneSecondsWest();
  const LONG minutes = std::abs(west) / 60;
  if (west == 0)
    std::snprintf(zone, N, "GMT");
  else
    std::snprintf(zone, N, "%c%02d%02d", west > 0 ? '+' : '-', minutes / 60, minutes % 60);
}

}  // namespace

CBaseTool::~CBaseTool() = default;

bool CBaseTool::GetUUID(WChar* text, int capacity) {
  WChar uuid[kUuidTextLength + 1];
  if (capacity < kUuidTextLength + 1 || !NewUuidText(uuid)) return false;
  std::copy_n(uuid, kUuidTextLength + 1, text);
  return true;
}

bool CBaseTool::AssignUUID(CBaseNode* node) {
  WChar uuid[kUuidTextLength + 1];
  if (!GetUUID(uuid, kUuidTextLength + 1)) return false;
  node->SetUUID(uuid);
  return true;
}

bool CBaseTool::GetPubDate(LONG seconds, WChar* text, int capacity) {
  if (capacity > 0) *text = 0;
  if (capacity < kPubDateCapacity) return false;
  CalendarTime time;
  if (!LocalCalendar(seconds, &time)) return true;

  char zone[32];
  FormatZone(zone);
  char date[128];
  const int length =
      std::snprintf(date, sizeof date, "%.3s, %02d %.3s %d %02d:%02d:%02d %s",
                    kDayNames[time.weekday].data(), time.day, kMonthNames[time.month - 1].data(),
                    time.year, time.hour, time.minute, time.second, zone);
  *std::copy_n(date, std::min(length, kPubDateCapacity - 1), text) = 0;
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
