// Any name, description and time become a page of the same form, in well-formed UTF-8. The first
// eight bytes are the time and the length of the name, the rest are UTF-16.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/support.h"
#include "vosmere/cpp.h"
#include "vosmere/pages/note_html.h"

using namespace vosmere;
using namespace vosmere::fuzz;

namespace {

std::string Page(CUrlNode* item) {
  const std::u16string path(ScratchPath().begin(), ScratchPath().end());
  CWriteNoteHtml writer;
  Require(writer.WriteToFile(item, Wide(path)));
  std::ifstream in(ScratchPath(), std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 8) return 0;
  std::uint32_t numbers[2];
  std::memcpy(numbers, data, sizeof numbers);
  std::u16string units((size - 8) / 2, u'\0');
  std::memcpy(units.data(), data + 8, units.size() * 2);
  std::erase(units, u'\0');
  const std::size_t split = std::min<std::size_t>(numbers[1], units.size());

  const Item<CUrlNode> item(CUrlNode::New());
  item->SetName(Wide(units.substr(0, split)));
  item->SetDescription(Wide(units.substr(split)));
  item->GetNodeStat()->SetStatTime(0, static_cast<LONG>(numbers[0]), 0, CNodeStat::kModified);
  const std::string name = ToUtf8(item->GetName()), body = ToUtf8(item->GetDescription());
  const std::string begin =
      "<html><META http-equiv=Content-Type content=\"text/html; charset=unicode\"><title>" + name +
      "</title><body><font size=+1>&nbsp;<p><b>" + name +
      "</b></font><br><hr style=\"color:'#bbc';height:'1'\"><br><div>" + body +
      "</div><p><font size=-1>";
  const std::string page = Page(item.get());
  Require(page.starts_with(begin) && page.ends_with("</font></body><html>"));
  return 0;
}
