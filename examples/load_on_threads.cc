// Loads documents on threads of their own. On Windows the parser is a COM component, which a thread
// need not have initialised.
//
// Prints: a, b
#include <iostream>
#include <string>
#include <thread>

#include "vosmere/cpp.h"

using namespace vosmere;

std::string TitleOf(std::string_view title) {
  const std::string document =
      "<opml><head><title>" + std::string(title) + "</title></head></opml>";
  const Result<Tree> tree = Load<Tree>(Bytes(document));
  return tree ? ToUtf8(NameOf(tree->get()).get()) : ToString(tree.error());
}

int main() {
  std::string a, b;
  std::thread first([&] { a = TitleOf("a"); }), second([&] { b = TitleOf("b"); });
  first.join();
  second.join();
  std::cout << a << ", " << b << '\n';
}
