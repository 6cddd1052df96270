// Prints for each document of a file a line with a plus or a minus for the fast path and one for
// libxml2, and "different" when both load it with different trees.
#include <cstdio>

#include "report/documents_file.h"
#include "tests/support/xml_trees.h"

using namespace vosmere::test;

int main(int argc, char** argv) {
  for (const std::string& document : vosmere::report::DocumentsIn(argc > 1 ? argv[1] : "")) {
    const auto fast = ByTheFastPath(document), parsed = ByTheParser(document);
    std::printf("%c%c%s\n", fast ? '+' : '-', parsed ? '+' : '-',
                fast && fast != parsed ? " different" : "");
  }
}
