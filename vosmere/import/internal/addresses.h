// Addresses that run something when they are opened.
#pragma once

#include <cstddef>
#include <string_view>

#include "vosmere/import/internal/repair_list.h"

namespace vosmere::importing {

/// Whether opening an address runs what it contains or names: "javascript:" and the like, "data:",
/// and "file:" with the name of a program. Blanks and control characters in it do not matter, nor
/// do upper and lower case. `address` has no references of markup.
bool RunsSomething(std::string_view address);

/// An address as it stands in markup, without blanks around it. What is unusual of it is added to
/// the repairs (null for nobody), at the position `at`: blanks around it, one that runs something,
/// and one that is too long, which no item takes.
std::string_view FixAddress(std::string_view raw, std::size_t at, RepairList* repairs);

}  // namespace vosmere::importing
