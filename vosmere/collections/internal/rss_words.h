// The words for the types of items in the RSS document of a collection.
#pragma once

#include <string_view>

namespace vosmere {

/// Indexed by tagVSMITEMTYPE. A plain link has no word.
inline constexpr std::string_view kItemTypeWords[] = {"", "note", "webpage", "file"};

/// Indexed by tagVSMITEMFILETYPE.
inline constexpr std::string_view kFileTypeWords[] = {"unknown", "pdf", "doc", "ppt",
                                                      "txt",     "xml", "xls"};

}  // namespace vosmere
