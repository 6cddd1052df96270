// Builds the whole page in memory first, so that an existing file is not truncated in vain.
#include "vosmere/pages/note_html.h"

#include <string>
#include <string_view>
#include <vector>

#include "vosmere/base/wide_view.h"
#include "vosmere/platform/internal/code_page.h"
#include "vosmere/text/toolbox.h"
#include "vosmere/tree/base_node.h"

namespace vosmere {
namespace {

/// Collects the page as UTF-16.
class Page {
 public:
  void Add(std::string_view ascii) { text_.insert(text_.end(), ascii.begin(), ascii.end()); }
  void Add(WideView text) { text_.insert(text_.end(), text.begin(), text.end()); }
  std::string Utf8() const { return BytesOf(kCodePageUtf8, {text_.data(), text_.size()}); }

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
  const std::string bytes = page.Utf8();
  if (!OpenFile(path)) return false;  // only now, because memory may have run out before
  Write(bytes.data(), bytes.size());
  CloseFile();
  return true;
}

}  // namespace vosmere
