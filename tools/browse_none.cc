// A tool without the verb "browse".
#include "tools/browse.h"

namespace vosmere::tool {

void AddBrowse(CLI::App&, int&) {}

}  // namespace vosmere::tool
