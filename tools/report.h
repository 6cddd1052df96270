// What a verb reports besides its output, as JSON for scripts.
#pragma once

#include <string>
#include <vector>

#include "tools/document_content.h"
#include "vosmere/cpp.h"

namespace vosmere::tool {

Json JsonOf(const Losses& losses);
Json JsonOf(const std::vector<Conflict>& conflicts);
Json JsonOf(const std::vector<Repair>& repairs);

/// Prints a report as one line of JSON.
void PrintReport(const Json& report);

/// Throws Failure if the document and the report would both go to standard output.
void KeepReportApart(const std::string& output, bool asJson);

}  // namespace vosmere::tool
