// The settings of FTP sites.
#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The web addresses under which uploaded files can be seen: a chain of names and links. Owns its
/// cells. Not thread-safe.
class VOSMERE_API CFtpWebAddress {
 public:
  /// One address; a cell of the chain (base/chain.h).
  class VOSMERE_API Cell {
   public:
    Cell* prev = this;
    Cell* next = nullptr;

    /// Both may be null. Owned by the cell.
    WChar* GetName() const { return name_.get(); }
    WChar* GetLink() const { return link_.get(); }

   private:
    friend class CFtpWebAddress;
    Cell(const WChar* name, const WChar* link) : name_(name), link_(link) {}

    SystemText name_;
    SystemText link_;
  };

  CFtpWebAddress() = default;
  CFtpWebAddress(const CFtpWebAddress&) = delete;
  CFtpWebAddress& operator=(const CFtpWebAddress&) = delete;
  virtual ~CFtpWebAddress();

  /// Appends an address. The texts are copied; null stays null. Returns false, with nothing added,
  /// when memory runs out.
  bool Add(const WChar* name, const WChar* link);

  /// The first address, owned by this object; null when there is none.
  Cell* GetHead() const { return head_; }

 private:
  Cell* head_ = nullptr;
};

/// The settings of an FTP site for publishing. There is no password, only the choice to remember
/// it.
///
/// Setters copy their text; null makes the field null, as it is in a new site. A returned text is
/// owned by the site and valid until it is set again. When memory runs out in a setter, the old
/// text stays and LostTexts counts it. Not thread-safe.
class VOSMERE_API CFtpConBase {
 public:
  static constexpr int kDefaultPort = 21;

  /// A new site without texts, on port 21, with all options off; null when memory runs out.
  static CFtpConBase* New();
  /// Frees a site. Null is ignored.
  static void Delete(CFtpConBase* site);

  CFtpConBase(const CFtpConBase&) = delete;
  CFtpConBase& operator=(const CFtpConBase&) = delete;
  virtual ~CFtpConBase();

  void SetTitle(const WChar* title) { title_.AssignOrNull(title); }
  WChar* GetTitle() const { return title_.get(); }
  void SetHost(const WChar* host) { host_.AssignOrNull(host); }
  WChar* GetHost() const { return host_.get(); }
  void SetUserName(const WChar* name) { userName_.AssignOrNull(name); }
  WChar* GetUserName() const { return userName_.get(); }
  /// The folder on the server in which a connection starts.
  void SetInitPath(const WChar* path) { initPath_.AssignOrNull(path); }
  WChar* GetInitPath() const { return initPath_.get(); }

  /// Whether data connections use passive mode.
  void SetPASVMode(bool passive) { passive_ = passive; }
  bool IsPASVMode() const { return passive_; }
  void SetPort(int port) { port_ = port; }
  int GetPort() const { return port_; }
  /// Whether the password is to be remembered.
  void SetSavePSW(bool save) { savePassword_ = save; }
  bool IsSavePSW() const { return savePassword_; }
  /// Whether this is the current site.
  void SetCurrent(bool current) { current_ = current; }
  bool IsCurrent() const { return current_; }

  /// The site's identity.
  void SetUUID(const WChar* uuid) { uuid_.AssignOrNull(uuid); }
  WChar* GetUUID() const { return uuid_.get(); }
  void SetStampID(const WChar* id) { stampID_.AssignOrNull(id); }
  WChar* GetStampID() const { return stampID_.get(); }

  /// The site's web addresses, which may be changed in place. Never null; owned by the site.
  CFtpWebAddress* GetFtpWebAddress() { return &webAddress_; }

 protected:
  CFtpConBase() = default;

 private:
  SystemText title_;
  SystemText host_;
  SystemText userName_;
  SystemText initPath_;
  bool passive_ = false;
  int port_ = kDefaultPort;
  bool savePassword_ = false;
  bool current_ = false;
  SystemText uuid_;
  SystemText stampID_;
  CFtpWebAddress webAddress_;
};

}  // namespace vosmere
