// A value or an error. The only exception thrown here is std::bad_alloc.
//
//   Result<Tree> list = Load<Tree>("reading-list.opml");
//   if (!list) {
//     std::cerr << list.error() << '\n';              // reading-list.opml:4:12: mismatched tag
//     return 1;
//   }
//   Show(*list);
#pragma once

#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

#include "vosmere/base/document_error.h"

namespace vosmere {

/// Why something failed, and where.
struct Error {
  std::string source;        ///< the file, server or the like; empty if there is none
  std::string reason;        ///< a message in UTF-8: one line, without a full stop
  int line = 0;              ///< from 1; 0 if unknown
  int column = 0;            ///< in characters, from 1; 0 if unknown
  std::string element;       ///< the path of the element, "/rss/channel/item[2]"; empty if unknown
  unsigned systemError = 0;  ///< errno on Linux, the system's code on Windows; 0 for none
  DocumentFault fault = DocumentFault::kNone;  ///< set by the functions for documents

  Error() = default;
  Error(std::string failed, std::string why) : source(std::move(failed)), reason(std::move(why)) {}
  Error(std::string document, const DocumentError& record)
      : source(std::move(document)),
        reason(record.reason),
        line(record.line),
        column(record.column),
        element(record.element),
        systemError(record.systemError),
        fault(record.fault) {
    const bool isRefused = fault == DocumentFault::kCannotOpen ||
                           fault == DocumentFault::kCannotRead ||
                           fault == DocumentFault::kCannotWrite;
    if (!isRefused || !systemError) return;
    const std::string cause = std::system_category().message(static_cast<int>(systemError));
    if (reason.find(cause) == reason.npos) reason += ": " + cause;
  }
};

/// "file:4:12: reason". Unknown parts are left out.
inline std::string ToString(const Error& error) {
  std::string place = error.source;
  if (error.line) place += (place.empty() ? "line " : ":") + std::to_string(error.line);
  if (error.line && error.column) place += ":" + std::to_string(error.column);
  return place.empty() ? error.reason : place + ": " + error.reason;
}

inline std::ostream& operator<<(std::ostream& out, const Error& error) {
  return out << ToString(error);
}

/// Holds a T or an Error. Dereferencing a result without a value prints the error to standard error
/// and aborts the program. A moved-from result still holds a T or an Error, but a moved-from one.
template <class T>
class [[nodiscard]] Result {
  static_assert(std::is_object_v<T> && !std::is_same_v<T, Error>);

 public:
  Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return state_.index() == 0; }

  T& operator*() & { return *operator->(); }
  const T& operator*() const& { return *operator->(); }
  T&& operator*() && { return std::move(*operator->()); }
  T* operator->() { return Checked(std::get_if<0>(&state_)); }
  const T* operator->() const { return Checked(std::get_if<0>(&state_)); }

  /// The error; an empty one if the result has a value.
  const Error& error() const {
    static const Error none;
    const Error* const error = std::get_if<1>(&state_);
    return error ? *error : none;
  }

 private:
  template <class Value>
  Value* Checked(Value* value) const {
    if (value) return value;
    std::fprintf(stderr, "%s\n", ToString(error()).c_str());
    std::abort();
  }

  std::variant<T, Error> state_;
};

}  // namespace vosmere
