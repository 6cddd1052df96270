// What a request says before its body: the same bytes from every system's client.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/types.h"

namespace vosmere::http {

/// The place to connect to.
struct Address {
  std::string name;  ///< ASCII; an IPv6 address stands in brackets
  unsigned port;
  bool ownPort;  ///< not the protocol's usual one

  /// As the request names it.
  std::string Text() const;
};

/// Takes `name`, `name:8080`, `[::1]` and `[::1]:8080` apart. False when it is none of them; names
/// beyond ASCII are to be given in their ASCII form (RFC 5891).
bool ParseAddress(const WChar* host, bool secure, Address* address);

/// The path as a request line has it: with its slash, and what cannot stand there as %20 and the
/// like.
std::string RequestTarget(const WChar* path);

/// Whether it can stand in a head: nothing within ends the line.
bool IsHeaderLine(std::string_view line);

/// The length that a reply names, maybe with blanks and a line end around it. False for anything
/// but a number, and for one that a signed 64-bit number cannot hold.
bool ParseLength(std::string_view text, std::uint64_t* length);

struct RequestHead {
  /// Adds a header line, in the place of one with the same name.
  void Set(std::string_view line);
  std::string target;
  std::string host;
  std::string agent;
  std::vector<std::string> added;  ///< header lines without their ends
  bool keepConnection = false;

  /// Header lines without their ends, in the Windows client's order.
  std::vector<std::string> Lines(ULONG bodyLength) const;
  /// Everything up to the body.
  std::string Text(ULONG bodyLength) const;
};

}  // namespace vosmere::http
