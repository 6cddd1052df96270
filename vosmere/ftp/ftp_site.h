#pragma once

#include "vosmere/base/export.h"
#include "vosmere/base/owned_text.h"
#include "vosmere/base/types.h"

namespace vosmere {

/// The web addresses under which uploaded files are seen: a chain of names and links. It owns its
/// cells. One thread at a time.
class VOSMERE_API CFtpWebAddress {
 public:
  /// One address, a cell of the chain (base/chain.h).
  class VOSMERE_API Cell {
   public:
    Cell* prev = this;
    Cell* next = nullptr;

    /// Either may be null.
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

  /// Adds one at the end; the texts are copied, and null stays null. False, with nothing added,
  /// when memory runs out.
  bool Add(const WChar* name, const WChar* link);

  /// Null when there is none.
  Cell* GetHead() const { return head_; }

 private:
  Cell* head_ = nullptr;
};

/// The settings of an FTP site to publish to. It holds no password, only whether to remember one.
///
/// Texts are copied; null clears. A getter's text is null until it is set, and lives until it is
/// set again. When memory runs out in a setter, the old text stays. One thread at a time.
class VOSMERE_API CFtpConBase {
 public:
  static constexpr int kDefaultPort = 21;

  /// A site without any text, on port 21, with everything else off; null when memory runs out.
  static CFtpConBase* New();
  /// Null is ignored.
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
  /// The folder to begin in.
  void SetInitPath(const WChar* path) { initPath_.AssignOrNull(path); }
  WChar* GetInitPath() const { return initPath_.get(); }

  /// Whether data connections are passive.
  void SetPASVMode(bool passive) { passive_ = passive; }
  bool IsPASVMode() const { return passive_; }
  void SetPort(int port) { port_ = port; }
  int GetPort() const { return port_; }
  /// Whether the password is to be remembered.
  void SetSavePSW(bool save) { savePassword_ = save; }
  bool IsSavePSW() const { return savePassword_; }
  /// Whether this is the site in use.
  void SetCurrent(bool current) { current_ = current; }
  bool IsCurrent() const { return current_; }

  /// The site's identity.
  void SetUUID(const WChar* uuid) { uuid_.AssignOrNull(uuid); }
  WChar* GetUUID() const { return uuid_.get(); }
  void SetStampID(const WChar* id) { stampID_.AssignOrNull(id); }
  WChar* GetStampID() const { return stampID_.get(); }

  /// The site's own addresses, to be changed in place. Never null.
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
