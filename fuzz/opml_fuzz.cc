// Any bytes load or fail; what loads can be saved.
#include <cstddef>
#include <cstdint>

#include "vosmere/base/system_string.h"
#include "vosmere/collections/opml_reader.h"
#include "vosmere/collections/opml_writer.h"
#include "vosmere/tree/tree_link.h"
#include "vosmere/tree/tree_tool.h"

using namespace vosmere;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CReadColctTreeOPML reader;
  reader.LoadXML(reinterpret_cast<const char*>(data), static_cast<int>(size));
  if (RNode* const tree = reader.DetachTreeRoot()) {
    CWriteColctTreeOPML writer;
    writer.SetTreeRoot(tree);
    SysFreeString(writer.GetXMLBSTR());
    DeleteTree(tree);
  }
  return 0;
}
