// Loads documents on other threads. These need not initialise COM, although the parser on Windows
// is a COM component.
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
