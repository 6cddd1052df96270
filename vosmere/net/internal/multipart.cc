// The texts of a multipart/form-data body.
#include "vosmere/net/internal/multipart.h"

#include <vector>

#include "vosmere/net/internal/join.h"
#include "vosmere/platform/internal/code_page.h"

namespace vosmere::multipart {
namespace {

/// The part of a path after its last slash or backslash.
const WChar* BaseName(const WChar* path) {
  const WChar* base = path;
  for (const WChar unit : WideView(path)) {
    ++path;
    if (unit == '/' || unit == '\\') base = path;
  }
  return base;
}

/// Browsers percent-encode these three characters and no others.
const char* EscapeOf(WChar unit) {
  switch (unit) {
    case '"': return "%22";
    case '\r': return "%0D";
    case '\n': return "%0A";
    default: return nullptr;
  }
}

/// A name escaped for a quoted parameter, so that it cannot end the quotes or the header line.
std::vector<WChar> Quoted(const WChar* name) {
  std::vector<WChar> quoted;
  for (const WChar unit : WideView(name)) {
    if (const char* const escape = EscapeOf(unit))
      quoted.insert(quoted.end(), escape, escape + 3);
    else
      quoted.push_back(unit);
  }
  quoted.push_back(0);
  return quoted;
}

}  // namespace

JoinedText FileHead(Form form, const WChar* boundary, const WChar* field, const WChar* path) {
  constexpr const char* kDisposition = "\r\nContent-Disposition: form-data; name=\"";
  constexpr const char* kType = "\"\r\nContent-Type: application/upload\r\n\r\n";
  if (form == Form::kOld)
    return Join({"--", boundary, kDisposition, field, "\";filename=\"", path, kType});
  return Join({"--", boundary, kDisposition, Quoted(field).data(), "\"; filename=\"",
               Quoted(BaseName(path)).data(), kType});
}

JoinedText Field(Form form, const WChar* boundary, const WChar* name, const WChar* value) {
  const std::vector<WChar> quoted = form == Form::kClean ? Quoted(name) : std::vector<WChar>();
  return Join({"\r\n--", boundary, "\r\nContent-Disposition: form-data; name=\"",
               form == Form::kClean ? quoted.data() : name, "\"\r\n\r\n", value});
}

JoinedText Tail(const WChar* boundary) {
  return Join({"\r\n", "--", boundary, "--\r\n"});
}

std::string ContentType(Form form, const WChar* boundary) {
  return std::string("Content-Type: multipart/form-data") + (form == Form::kClean ? "; " : ", ") +
         "boundary=" + BytesOf(kCodePageUtf8, WideView(boundary));
}

}  // namespace vosmere::multipart
