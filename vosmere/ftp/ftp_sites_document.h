// Writes and reads the document that stores the user's FTP sites.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/list.h"
#include "vosmere/ftp/ftp_site.h"
#include "vosmere/xml/item_chain.h"
#include "vosmere/xml/read_xml.h"
#include "vosmere/xml/write_xml.h"

namespace vosmere {

/// Writes a list of FTP sites. Left out are empty texts, the default port, and passive mode and the
/// mark of the current site when they are off. Passwords are not stored.
///
/// Intended: names and links of web addresses are not escaped, because older programs read them as
/// they are. A quotation mark, an ampersand or a less-than sign in them makes the document
/// unreadable, so the program must not put such characters into a site.
class VOSMERE_API CWriteFtpSiteXML : public CWriteXML {
 public:
  CWriteFtpSiteXML() = default;
  ~CWriteFtpSiteXML() override;

  /// The list to write, not owned; it must outlive the writing. Null is the empty list.
  void SetFtpConList(TList<CFtpConBase*>* head) { head_ = head; }

 protected:
  bool FillData() override;

  void AddHead();
  void AddTail();
  void FillFtpConToBuffer(CFtpConBase* site);
  /// Writes the addresses whose name and link are both not empty.
  void FillWebAddress(CFtpConBase* site);

 private:
  TList<CFtpConBase*>* head_ = nullptr;
};

/// Reads a list of FTP sites. If the root element is not "ftpsites", the load succeeds with an
/// empty list.
class VOSMERE_API CReadFtpSiteXML : public CReadXML {
 public:
  CReadFtpSiteXML() = default;
  /// Frees the list with its sites unless it was detached.
  ~CReadFtpSiteXML() override;

  /// The list, owned by the reader; null when it is empty. The next load appends to it. A load that
  /// fails keeps the sites that were read before the error.
  TList<CFtpConBase*>* GetFtpSiteList() const { return sites_.head(); }
  /// Gives the list to the caller, who frees it and its sites with list::DeleteItems.
  TList<CFtpConBase*>* DetachFtpSiteList() { return sites_.Detach(); }

 protected:
  void InvokeParser(XmlNode root) override;

 private:
  xml::ItemChain<TList<CFtpConBase*>> sites_;
};

}  // namespace vosmere
