// Loads XML documents and turns every failure into a DocumentError.
#include "vosmere/xml/read_xml.h"

#include <cstdio>
#include <exception>
#include <new>
#include <optional>
#include <utility>

#include "vosmere/base/owned_text.h"
#include "vosmere/platform/internal/xml_document.h"

namespace vosmere {
namespace {

DocumentError MakeError(DocumentFault fault, const char* reason) {
  DocumentError error;
  error.fault = fault;
  std::snprintf(error.reason, sizeof error.reason, "%s", reason);
  return error;
}

[[noreturn]] void FailNothingGiven() {
  throw DocumentFailure{MakeError(DocumentFault::kCannotOpen, "no document was given")};
}

}  // namespace

CReadXML::~CReadXML() {
  FreeData();
}

void CReadXML::FreeData() {
  if (data_) deleteData_(std::exchange(data_, nullptr));
}

void* CReadXML::DetachData() {
  return std::exchange(data_, nullptr);
}

void CReadXML::ThrowIfTextsWereLost() const {
  if (LostTexts() != lostTextsBefore_) throw std::bad_alloc();
}

template <class Read>
bool CReadXML::ReadWith(Read read) {
  error_ = {};
  lostTextsBefore_ = LostTexts();
  try {
    read();
    ThrowIfTextsWereLost();
  } catch (const DocumentFailure& failure) {
    error_ = failure.error;
  } catch (const std::bad_alloc&) {
    error_ = MakeError(DocumentFault::kNoMemory, "memory ran out");
  } catch (const std::exception& exception) {
    error_ = MakeError(DocumentFault::kHandlerFailed, exception.what());
  } catch (...) {
    // A reader may belong to a program and throw anything.
    error_ = MakeError(DocumentFault::kHandlerFailed, "the document's reader failed");
  }
  report_ = nullptr;  // both are valid only during the load
  document_ = nullptr;
  return error_.fault == DocumentFault::kNone;
}

void CReadXML::ReadRoot(const XmlNode& root, const XmlDocument* document) {
  if (!root.FirstChild()) return;
  std::optional<xml::Report> report;
  if (lossReport_) report_ = &report.emplace(lossReport_, lossReportTo_, document);
  document_ = document;
  InvokeParser(root);
}

bool CReadXML::ReadParsed(const XmlNode& root, const CReadXML& parsed) {
  return ReadWith([&] { ReadRoot(root, parsed.document_); });
}

template <class Load>
bool CReadXML::LoadWith(Load load) {
  return ReadWith([&] {
    XmlDocument document;
    if (lossReport_) document.KeepPlaces();  // takes memory, so only for a report
    load(document);
    ReadRoot(document.Root(), &document);
  });
}

bool CReadXML::LoadFile(const WChar* path) {
  return LoadWith([=](XmlDocument& document) {
    if (!path) FailNothingGiven();
    document.LoadFile(path);
  });
}

bool CReadXML::LoadBSTRXML(const WChar* text) {
  return LoadWith([=](XmlDocument& document) {
    if (!text) FailNothingGiven();
    document.LoadText(text);
  });
}

bool CReadXML::LoadXML(const char* bytes, int length) {
  return LoadWith([=](XmlDocument& document) {
    if (!bytes) FailNothingGiven();
    document.LoadBytes(bytes, length);
  });
}

}  // namespace vosmere
