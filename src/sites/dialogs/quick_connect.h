// Quick connect: a server typed in at the moment, saved as a numbered site or not at all. Main thread.
#pragma once

#include "support/text.h"
#include "support/window/dialog.h"

/// The label of a session that is not saved. It has no record.
constexpr const char* kQuickConnectLabel = "クイック接続";

class LQuickConnectDlg : public LDialog {
 public:
  enum Control : int {
    kServer = 102,
    kServerLabel = 103,
    kPort = 104,
    kPortLabel = 105,
    kUser = 106,
    kUserLabel = 107,
    kPassword = 108,
    kPasswordLabel = 109,
    kSavePassword = 112,
    kSave = 115,
    kProtection = 116,
    kProtectionLabel = 117,
  };

  /// Modal. True when the fields below say what to connect to.
  bool Open(LMacWindow* view);

  void InitDialog() override;
  void EnableControls() override;
  void Command(int id, intptr_t data) override;
  bool CmOk() override;
  void CmHelp() override;

  char szServer[kTextSize] = {};  ///< Host, or host, colon, port.
  char szUser[kTextSize] = {};
  char szPassword[kTextSize] = {};
  char szLabel[kTextSize] = {};  ///< The label in use.
  bool bSaved = false;
  bool bUseSSL = false;
  bool bImplicit = false;

 private:
  bool Refuse(int control, const char* tip);
  void SaveSite(int protection);
};
