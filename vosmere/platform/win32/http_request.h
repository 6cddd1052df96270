// The sessions, connections and requests of HTTP through WinINet.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/win32/http_handle.h"
#include "vosmere/platform/win32/http_place.h"

namespace vosmere::http {

// Each one keeps the handles open on which its own is based.

struct Session {
  std::shared_ptr<win32::Handle> handle;
  std::string agent;
  Timeouts timeouts;
};

struct Connection {
  Session session;
  std::shared_ptr<win32::Handle> handle;
  Address address;
  bool secure;
};

struct Request {
  Connection connection;
  win32::Place origin;
  RequestHead head;

  // The current address, which redirects change.
  win32::Handle elsewhere{};  // a connection to another server
  win32::Handle handle{};
  win32::Place place{};  // the address that `handle` is for
  bool isGet = false;
  int redirects = 0;
  bool mustResend = false;

  Error dropped = kNone;  // the reason if the server no longer accepts the body

  // The reply.
  int status = 0;
  bool lengthIsKnown = false;
  std::uint64_t left = 0;
  ULONG blockAt = 0, blockEnd = 0;  // the unread part of the reply in `block`
  char block[16 * 1024] = {};
};

/// The error of the last call of WinINet.
Error LastError();

/// Opens the request's handle for an address. Throws std::bad_alloc.
Error OpenAt(Request* request, const win32::Place& place, bool get);

}  // namespace vosmere::http
