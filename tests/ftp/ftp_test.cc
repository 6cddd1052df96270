#include "tests/support/document.h"
#include "tests/support/test.h"
#include "vosmere/cpp/own.h"
#include "vosmere/ftp/ftp_sites_document.h"

namespace vosmere::test::ftp {

TEST(FtpSite, AddressesStandInOrderAndAreAddedWholeOrNotAtAll) {
  ExpectNullAtEachFailure(CFtpConBase::New, CFtpConBase::Delete);
  CFtpWebAddress addresses;
  const Wide name = W("b"), link = W("c");
  EXPECT_TRUE(addresses.Add(W("a"), W("")) && addresses.Add(name, link));
  EXPECT_TRUE(addresses.Add(nullptr, nullptr));
  for (int successes = 0; successes < (kSystemStringsFail ? 3 : 1); ++successes) {
    const FailingMemory memory(successes);
    EXPECT_FALSE(addresses.Add(name, link));
  }
  const auto show = [](const CFtpWebAddress::Cell* cell) {
    return Utf8(cell->GetName()) + "=" + Utf8(cell->GetLink());
  };
  EXPECT_EQ(Row(addresses.GetHead(), show), "a= b=c (null)=(null)");
}

TEST(FtpSites, WebAddressesAreWrittenWholeAndUnescapedAndSoMayNotBeReadable) {
  const FtpSiteList sites(TList<CFtpConBase*>::New(CFtpConBase::New()));
  CFtpWebAddress* const addresses = sites->data->GetFtpWebAddress();
  addresses->Add(W("left out"), W(""));
  addresses->Add(nullptr, W("left out"));
  addresses->Add(W("R&D"), W("<\">"));
  CWriteFtpSiteXML writer;
  writer.SetFtpConList(sites.get());
  const std::string saved = Saved(writer);
  EXPECT_THAT(saved, HasSubstr("<savepsw>false</savepsw>\r\n"
                               "<webaddress name=\"R&D\" link=\"<\">\" /></site>"));
  CReadFtpSiteXML reader;
  EXPECT_FALSE(Load(reader, saved));
  EXPECT_EQ(reader.DetachFtpSiteList(), nullptr);
}

}  // namespace vosmere::test::ftp
