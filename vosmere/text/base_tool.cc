#include "vosmere/text/base_tool.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "vosmere/nodes/base_node.h"
#include "vosmere/platform/clock.h"
#include "vosmere/platform/keys.h"
#include "vosmere/platform/uuid.h"

namespace vosmere {
namespace {

constexpr int kDateCapacity = 40;

// Feeds are read by machines, so the names are English whatever the locale says.
constexpr const char* kWeekdays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                   "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

void FormatZone(char (&zone)[16], LONG secondsWest) {
  const int minutes = std::abs(secondsWest) / 60;
  if (secondsWest == 0)
    std::snprintf(zone, sizeof zone, " GMT");
  else
    std::snprintf(zone, sizeof zone, " %c%02d%02d", secondsWest > 0 ? '+' : '-', minutes / 60,
                  minutes % 60);
}

}  // namespace

CBaseTool::~CBaseTool() = default;

bool CBaseTool::GetUUID(WChar* text, int capacity) {
  WChar uuid[kUuidTextLength + 1];
  if (capacity <= kUuidTextLength || !NewUuidText(uuid)) return false;
  std::copy(uuid, uuid + kUuidTextLength + 1, text);
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
  if (capacity < kDateCapacity) return false;
  CalendarTime time;
  if (!LocalCalendar(seconds, &time)) return true;
  char zone[16], date[128];
  FormatZone(zone, ZoneSecondsWest());
  std::snprintf(date, sizeof date, "%s, %02d %s %d %02d:%02d:%02d%s", kWeekdays[time.weekday],
                time.day, kMonths[time.month - 1], time.year, time.hour, time.minute, time.second,
                zone);
  date[kDateCapacity - 1] = 0;
  std::copy(date, date + std::strlen(date) + 1, text);
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

void CBaseTool::Delete(void* buffer) { delete[] static_cast<char*>(buffer); }

}  // namespace vosmere
