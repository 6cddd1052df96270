// What the HTTP client has open.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vosmere/platform/internal/http_message.h"
#include "vosmere/platform/win32/http_handle.h"
#include "vosmere/platform/win32/http_place.h"

namespace vosmere::http {

// Each keeps open what it stands on.

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

  // Where redirects have led.
  win32::Handle elsewhere{};  // a connection to another server
  win32::Handle handle{};
  win32::Place place{};  // that the handle is for
  bool isGet = false;
  int redirects = 0;
  bool mustResend = false;

  Error dropped = kNone;  // why the server does not take the body any more

  // The reply.
  int status = 0;
  bool lengthIsKnown = false;
  std::uint64_t left = 0;
  ULONG blockAt = 0, blockEnd = 0;  // what has come and nobody has read
  char block[16 * 1024] = {};
};

/// What the client says of its last failure.
Error LastError();

/// Opens the request's handle for a place. Throws std::bad_alloc.
Error OpenAt(Request* request, const win32::Place& place, bool get);

}  // namespace vosmere::http
