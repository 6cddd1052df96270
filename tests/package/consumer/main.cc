// A program of somebody else: includes the headers in an awkward way, and uses what is compiled.
#if defined(WINDOWS_FIRST)
#include <windows.h>
#endif
#include "vosmere/base/version.h"
#include "vosmere/cpp.h"
#include "vosmere/vosmere.h"
#if defined(min) || defined(max)
#error "a header of the library defines min or max"
#endif
#if defined(_WIN32)
#include <windows.h>
#endif

#include <cstdio>

using namespace vosmere;

int main() {
  const Tree tree = NewTree("list");
  Add<CFolderNode>(tree, "Q&A");
  const Result<SavedBytes> saved = SaveToBytes(tree);
  const Result<Tree> again = saved ? Load<Tree>(Bytes(saved->bytes)) : Result<Tree>(saved.error());
  const bool fine = again && Find<CFolderNode>(*again, "Q&A") && kBuildNumber == VOSMERE_VERSION;
  std::puts(fine ? "version " VOSMERE_VERSION_TEXT : "does not work");
  return !fine;
}
