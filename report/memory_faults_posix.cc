// Allocations that are refused: every operation of the library, each allocation in it, once and
// from then on.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

#include "report/memory_rows_services.h"
#include "report/section.h"
#include "vosmere/platform/internal/clock.h"

namespace vosmere::report {
namespace {

/// What came of one row, as its process tells it.
struct Tally {
  long points = 0;
  long done = 0;     ///< the operation did all the same what it does with memory
  long refused = 0;  ///< it said that memory ran out, and nothing was lost
  long faults = 0;
  char fault[400] = {};
};

class Trial {
 public:
  Trial(const Row& row, bool isShort) : row_(row), isShort_(isShort) {}

  Tally Run() {
    Memory plenty(heap::kNone, false);
    Once(plenty);  // what is set up once and stays, such as the parser's tables
    Memory again(heap::kNone, false);
    const Left left = Once(again);
    if (!left) Blame("fails with memory", 0, false);
    usual_ = left.value_or("");
    for (const bool onlyOnce : {true, false}) RefuseEach(onlyOnce);
    return tally_;
  }

 private:
  void RefuseEach(bool onlyOnce) {
    for (long number = 0; tally_.faults < 20; number += isShort_ && number > 30 ? 11 : 1) {
      const long before = heap::blocks;
      if (!RefuseOne(number, onlyOnce)) return;
      ++tally_.points;
      if (heap::blocks == before) continue;
      // What stays from time to time is a cache; what stays each time is lost.
      const long lost = heap::blocks - before;
      for (int i = 0; i < 3; ++i) RefuseOne(number, onlyOnce, false);
      const long later = heap::blocks;
      for (int i = 0; i < 3; ++i) RefuseOne(number, onlyOnce, false);
      if (heap::blocks - later >= 3)
        Blame("loses " + std::to_string(lost) + " blocks", number, onlyOnce);
    }
  }

  /// False when the operation does not get that far.
  bool RefuseOne(long number, bool onlyOnce, bool counts = true) {
    Memory memory(number, onlyOnce);
    try {
      const Left left = row_.run(memory);
      if (!memory.wasRefused()) return false;
      if (!counts) return true;
      if (left && *left != usual_)
        Blame("succeeds with another result: '" + Difference(*left) + "'", number, onlyOnce);
      ++(left ? tally_.done : tally_.refused);
    } catch (const Broken& broken) {
      if (counts) Blame(broken.what(), number, onlyOnce);
    } catch (const std::exception& thrown) {
      if (counts) Blame(std::string("throws ") + thrown.what(), number, onlyOnce);
    }
    return memory.wasRefused();
  }

  std::string Difference(const std::string& left) const {
    std::size_t at = 0;
    while (at < left.size() && at < usual_.size() && left[at] == usual_[at]) ++at;
    at = at > 20 ? at - 20 : 0;
    return left.substr(at, 60) + "' where it is '" + usual_.substr(std::min(at, usual_.size()), 60);
  }

  Left Once(Memory& memory) try { return row_.run(memory); } catch (const std::exception& thrown) {
    Blame(std::string("with memory: ") + thrown.what(), 0, false);
    return "";
  }

  void Blame(const std::string& what, long number, bool onlyOnce) {
    const std::string all = what + " (allocation " + std::to_string(number) +
                            (onlyOnce ? " refused)" : " and later refused)");
    if (tally_.faults++ == 0) std::snprintf(tally_.fault, sizeof tally_.fault, "%s", all.c_str());
  }

  const Row& row_;
  const bool isShort_;
  std::string usual_;
  Tally tally_;
};

/// Each row in a process of its own, so that a crash is a result like others.
Tally RunApart(const Row& row, bool isShort) {
  std::array<int, 2> ends;
  if (pipe(ends.data()) != 0) std::abort();
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    alarm(300);
    SetClockForTesting([] { return LONG{1'200'000'000}; });
    const Tally tally = Trial(row, isShort).Run();
    _exit(write(ends[1], &tally, sizeof tally) != sizeof tally);
  }
  close(ends[1]);
  Tally tally;
  const bool told = read(ends[0], &tally, sizeof tally) == sizeof tally;
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (told) return tally;
  tally = {};
  tally.faults = 1;
  std::snprintf(tally.fault, sizeof tally.fault,
                WIFSIGNALED(status) ? "ends with signal %d" : "ends with code %d",
                WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status));
  return tally;
}

}  // namespace
}  // namespace vosmere::report

#ifdef VOSMERE_SANITIZED
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

/// The option --only NAME runs the rows of that name.
int main(int argc, char** argv) {
  using namespace vosmere::report;
  Section section(
      argc, argv,
      kSanitized ? "Memory that is refused, under AddressSanitizer" : "Memory that is refused");
  struct Room {
    std::string name;
    long rows = 0;
    Tally tally;
  };
  std::vector<Room> rooms;
  std::size_t operations = 0;
  Room all{"all", 0, {}};
  const char* const only = argc > 2 && std::strcmp(argv[1], "--only") == 0 ? argv[2] : nullptr;
  for (const Row& row : Rows()) {
    if (only && !std::strstr(row.name, only)) continue;
    if (rooms.empty() || rooms.back().name != row.room) rooms.push_back({row.room, 0, {}});
    const Tally tally = RunApart(row, section.isShort());
    ++operations;
    for (Room* room : {&rooms.back(), &all}) {
      ++room->rows;
      room->tally.points += tally.points;
      room->tally.done += tally.done;
      room->tally.refused += tally.refused;
      room->tally.faults += tally.faults;
    }
    if (only)
      std::fprintf(stderr, "%s: %ld points, %ld done, %ld refused\n", row.name, tally.points,
                   tally.done, tally.refused);
    if (tally.faults)
      section.Wrong(std::string(row.room) + ": " + row.name + ": " + tally.fault + ", " +
                    std::to_string(tally.faults) + " faults");
  }
  section.Say(std::string("Every operation was run with its first, second, ... allocation refused: "
                          "only this one, and this one with all "
                          "later ones") +
              (section.isShort()
                   ? " (in this short form with the first thirty and every eleventh after them)"
                   : "") +
              ". The whole heap of the process refuses: the library's, the XML parser's, the "
              "runtime's, on every thread. An operation has "
              "to end with what it gives with memory, or to say that memory ran out and leave what "
              "was there; nothing may be "
              "lost, freed twice or read after it was freed" +
              (kSanitized ? ", which AddressSanitizer watches" : "") + ".");
  section.Row("Room", "Operations", "Points", "Done all the same", "Said that memory ran out",
              "Faults");
  rooms.push_back(all);
  for (const Room& room : rooms)
    section.Row(room.name, room.rows, room.tally.points, room.tally.done, room.tally.refused,
                room.tally.faults);
  return section.End();
}
