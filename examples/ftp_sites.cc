// Makes a list of FTP sites, writes its document, and reads it back.
//
// Prints: Blog on ftp.blog.example:2121, seen at http://blog.example/
#include <iostream>

#include "vosmere/cpp.h"

using namespace vosmere;

FtpSiteList Sites() {
  FtpSiteList sites;
  CFtpConBase& site = Append(sites);
  site.SetTitle(Wide("Blog"));
  site.SetHost(Wide("ftp.blog.example"));
  site.SetPort(2121);
  CFtpWebAddress* const addresses = site.GetFtpWebAddress();  // owned by the site
  addresses->Add(Wide("Home"), Wide("http://blog.example/"));
  return sites;
}

int main() {
  const ParserThread parser;  // readers below the layer need it
  const FtpSiteList sites = Sites();
  CWriteFtpSiteXML writer;
  writer.SetFtpConList(sites.get());
  const SystemString document(writer.GetXMLBSTR());

  CReadFtpSiteXML reader;  // Load<FtpSiteList> of the layer does the same with less
  if (!reader.LoadBSTRXML(document.get())) {
    std::cerr << reader.LastError().reason << '\n';
    return 1;
  }
  const FtpSiteList again(reader.DetachFtpSiteList());
  for (CFtpConBase& site : Each(again)) {
    std::cout << ToUtf8(site.GetTitle()) << " on " << ToUtf8(site.GetHost()) << ':'
              << site.GetPort();
    std::cout << ", seen at " << ToUtf8(site.GetFtpWebAddress()->GetHead()->GetLink()) << '\n';
  }
}
