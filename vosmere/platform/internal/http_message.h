// The request line and header of an HTTP request, in the same bytes on every system.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/types.h"

namespace vosmere::http {

/// A server to connect to.
struct Address {
  std::string name;  ///< ASCII; an IPv6 address is in brackets
  unsigned port;
  bool ownPort;  ///< whether it differs from the protocol's default port

  /// The text for the Host header: the name, with the port if it is not the default one.
  std::string Text() const;
};

/// Parses `name`, `name:8080`, `[::1]` or `[::1]:8080`. False for anything else. Names with
/// characters beyond ASCII have to be in their ASCII form (RFC 5891).
bool ParseAddress(const WChar* host, bool secure, Address* address);

/// The path for the request line: with a leading slash, and with characters that cannot occur there
/// percent-encoded.
std::string RequestTarget(const WChar* path);

/// Whether a text is a single line, so that it cannot add header lines of its own.
bool IsHeaderLine(std::string_view line);

/// Parses the value of a Content-Length header, which may have blanks and a line end around it.
/// False if it is not a number or does not fit in a signed 64-bit number.
bool ParseLength(std::string_view text, std::uint64_t* length);

/// The request line and header of a POST request.
struct RequestHead {
  /// Adds a header line, replacing an added one with the same name (case-insensitive, as HTTP is).
  void Set(std::string_view line);
  std::string target;
  std::string host;
  std::string agent;
  std::vector<std::string> added;  ///< header lines without their line ends
  bool keepConnection = false;

  /// The header lines without their line ends, in the order in which the Windows client sends them.
  std::vector<std::string> Lines(ULONG bodyLength) const;
  /// Everything before the body.
  std::string Text(ULONG bodyLength) const;
};

}  // namespace vosmere::http
