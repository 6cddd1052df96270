#include "vosmere/pages/note_html.h"

#include <string_view>
#include <vector>

#include "vosmere/base/wide_view.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {
namespace {

class Page {
 public:
  void Add(std::string_view ascii) { text_.insert(text_.end(), ascii.begin(), ascii.end()); }
  void Add(WideView text) { text_.insert(text_.end(), text.begin(), text.end()); }
  const WChar* Terminated() {
    text_.push_back(0);
    return text_.data();
  }

 private:
  std::vector<WChar> text_;
};

}  // namespace

CWriteNoteHtml::~CWriteNoteHtml() = default;

bool CWriteNoteHtml::WriteToFile(CBaseNode* item, const WChar* path) {
  if (!item) return false;
  LONG modified = 0;
  item->GetNodeStat()->GetStatTime(nullptr, &modified, nullptr);
  WChar date[128];
  CBaseTool::GetPubDate(modified, date, 128);
  Page page;
  page.Add("<html>");
  page.Add("<META http-equiv=Content-Type content=\"text/html; charset=unicode\">");
  page.Add("<title>");
  page.Add(WideView(item->GetName()));
  page.Add("</title><body><font size=+1>&nbsp;<p><b>");
  page.Add(WideView(item->GetName()));
  page.Add("</b></font><br><hr style=\"color:'#bbc';height:'1'\"><br><div>");
  page.Add(WideView(item->GetDescription()));
  page.Add("</div><p><font size=-1>");
  page.Add(WideView(date));
  page.Add("</font></body><html>");
  const WChar* const text = page.Terminated();
  if (!OpenFile(path)) return false;
  WriteData(text);
  CloseFile();
  return true;
}

}  // namespace vosmere
