// Keeps the toolbars of a window and the texts of a published page as documents.
//
// Prints: Links is 300 wide; Ann's pages
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

int main() {
  const ParserThread parser;  // readers below the layer need it
  CTBarBandInfo bands;
  TBARBANDINFO links;
  links.SetTitle(Wide("Links"));
  links.SetClsid(Wide("{01020304-0506-0708-090A-0B0C0D0E0F10}"));
  links.enabled = links.hasContainerData = true;
  links.width = 300;
  bands.AddBandInfoCopy(&links);
  CWriteToolbarXML layout;
  layout.SetTBarBandInfo(&bands);
  CReadVosmereXML toolbars;
  if (!toolbars.LoadBSTRXML(SystemString(layout.GetXMLBSTR()).get())) return 1;
  const ToolbarBands read(static_cast<CTBarBandInfo*>(toolbars.DetachData()));
  {
    const SynchGuard lock(*read);  // other threads may add bands
    for (const TBARBANDINFO& band : Each(read->GetRBandInfoItemHead()))
      std::cout << ToUtf8(band.title) << " is " << band.width << " wide; ";
  }

  CPageData page, again;
  page.SetPageTitle(Wide("Ann's pages"));
  CWritePageDataXML writer(&page);
  CReadPageDataXML reader(&again);
  if (!reader.LoadBSTRXML(SystemString(writer.GetXMLBSTR()).get())) return 1;
  std::cout << ToUtf8(again.GetPageTitle()) << '\n';
}
