// Operations that are tried with memory refused, one a row, and what each of them promises then.
//
//   {"text", "ToUtf8", [](Memory& memory) {
//      const Texts t;                                            // set up, with memory
//      std::string utf8;
//      if (!memory.Try([&] { utf8 = ToUtf8(t.wide); })) return Nothing();
//      return Shown(utf8);                                       // compared with that of other
//      runs
//    }},
#pragma once

#include <cstddef>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

#include "vosmere/base/owned_text.h"
#include "vosmere/cpp/result.h"

namespace vosmere::report {

class RefusedMemory;

/// What an operation left, as a text; nullopt when it said that memory ran out.
using Left = std::optional<std::string>;

/// A promise that was broken.
struct Broken : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Which allocation of the operation is refused, if one is.
class Memory {
 public:
  Memory(long number, bool onlyOnce) : number_(number), onlyOnce_(onlyOnce) {}

  /// Runs the operation; false when it threw std::bad_alloc, or returned false or null. One without
  /// a result has failed when LostTexts says so.
  template <class Work>
  bool Try(Work work);

  /// An operation that reports an error reports the lack of memory, and nothing else.
  template <class Said>
  void Blames(const Said& error) const {
    constexpr unsigned kNoMemoryOfSystem = 12;
    if (!threw_ && error.fault != DocumentFault::kNoMemory &&
        error.systemError != kNoMemoryOfSystem)
      throw Broken("says '" + std::string(error.reason) + "'");
  }
  static void Expect(bool is, const char* what) {
    if (!is) throw Broken(what);
  }

  bool wasRefused() const { return wasRefused_; }

 private:
  const long number_;
  const bool onlyOnce_;
  bool wasRefused_ = false;
  bool threw_ = false;
};

struct Row {
  const char* room;
  const char* name;
  Left (*run)(Memory& memory);
};

}  // namespace vosmere::report
