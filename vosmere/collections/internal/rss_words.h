// The words by which the RSS document of a collection names the kinds of an item.
#pragma once

#include <string_view>

namespace vosmere {

/// By tagVSMITEMTYPE; a plain address has none.
inline constexpr std::string_view kItemTypeWords[] = {"", "note", "webpage", "file"};

/// By tagVSMITEMFILETYPE.
inline constexpr std::string_view kFileTypeWords[] = {"unknown", "pdf", "doc", "ppt",
                                                      "txt",     "xml", "xls"};

}  // namespace vosmere
