#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/ftp/ftp_site.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes a list of FTP sites. What has its default is left out, and so are empty texts. There are
/// no passwords in it.
///
/// Intended: the names and links of web addresses are written as they are, not escaped: older
/// programs read them as they find them. One with a quotation mark, an ampersand or a less-than
/// sign makes the document unreadable, so whoever fills in a site keeps them out.
class VOSMERE_API CWriteFtpSiteXML : public CWriteXML {
 public:
  CWriteFtpSiteXML() = default;
  ~CWriteFtpSiteXML() override;

  /// The list to write, which must outlive the writing; null is an empty list.
  void SetFtpConList(TList<CFtpConBase*>* head) { head_ = head; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillFtpConToBuffer(CFtpConBase* site);
  /// The addresses whose name and link are both there and not empty.
  void FillWebAddress(CFtpConBase* site);

 private:
  TList<CFtpConBase*>* head_ = nullptr;
};

/// Reads a list of FTP sites. A root element other than "ftpsites" loads, and gives an empty list.
class VOSMERE_API CReadFtpSiteXML : public CReadXML {
 public:
  CReadFtpSiteXML() = default;
  /// Frees the list with its sites unless it was detached.
  ~CReadFtpSiteXML() override;

  /// The list, which stays the reader's; null when it is empty. The next document is appended to
  /// it. What was read before a load failed stays in it.
  TList<CFtpConBase*>* GetFtpSiteList() const { return sites_.head(); }
  /// The same, now the caller's (list::DeleteItems frees it with its sites).
  TList<CFtpConBase*>* DetachFtpSiteList() { return sites_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<TList<CFtpConBase*>> sites_;
};

}  // namespace vosmere
