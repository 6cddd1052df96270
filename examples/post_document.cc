// Posts a document to a web server: post_document HOST. Without HOST, to a port that no server
// listens on.
//
// Prints: 127.0.0.1:9: the server cannot be reached
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

Result<Reply> PostList(const Tree& tree, std::string_view host) {
  CWriteColctTreeOPML writer;
  writer.SetTreeRoot(tree.get());
  const SystemString document(writer.GetXMLBSTR());
  return Upload(host, "/receive").Field("owner", "ann").SendText("list.opml", document.get());
}

int main(int argc, char** argv) {
  const Tree tree = NewTree("Reading list");
  const Result<Reply> reply = PostList(tree, argc > 1 ? argv[1] : "127.0.0.1:9");
  if (!reply)
    std::cout << reply.error() << '\n';
  else
    std::cout << reply->status << ": " << reply->text << '\n';
  return reply && reply->IsOk() ? 0 : 1;
}
