// The property sheet of a site: the form of a new one, and of one that is edited. Main thread; events run while it is
// open.
#pragma once

#include "sites/dialogs/site_record.h"
#include "support/window/property_sheet.h"

class LSPAdvancedPage;

/// The label that the last stored sheet gave its site.
extern char szFinishLabel[kTextSize];

/// Server, port, user, password and protection. Its CmOk checks and stores both pages, and tests the connection.
class LSPGeneralPage : public LPropertyPage {
 public:
  enum Control : int {
    kGroup = 12602,
    kPrompt = 12603,
    kServerLabel = 12608,
    kServer = 12609,
    kPort = 12610,
    kPortLabel = 12611,
    kUserLabel = 12614,
    kUser = 12615,
    kPasswordLabel = 12618,
    kPassword = 12619,
    kRemember = 12622,
    kProtectionLabel = 12624,
    kProtection = 12625,
  };

  void InitDialog() override;
  void Command(int id, intptr_t data) override;
  bool CmOk() override;
  void CmHelp() override;
  LPropertyPage* PageAtFault() override { return pFault; }

  LSPAdvancedPage* pAdvanced = nullptr;  ///< The other page; set before the sheet opens.

  // The site that the sheet is opened for; set before it opens. A new one has no label.
  static char szPrimaryKey[kTextSize];
  static char szServer[kTextSize];
  static char szUserName[kTextSize];
  static LSharedSettingsRecord srUser;  ///< Its record; at nothing while there is none.

 private:
  friend class LSPAdvancedPage;
  enum : int { kServerLeft = 1000, kProtectionChosen = 1001, kPortLeft = 1002 };

  void LoadSite();
  void ShowDefaultPort();
  void EvProtectionChosen();
  void EvPortLeft();
  bool AskForDefaultPort(const char* question, const char* defaultPort);
  /// A tip at the control of one of the pages, which comes to the front; false.
  bool Refuse(LPropertyPage& page, int control, const char* tip);
  bool RefuseServer();
  bool ReadLabel(char (&label)[kTextSize]);
  bool ReadServer(struct TypedServer& typed);
  bool ReadDirectory(const char* typedPath, SiteFields& fields);
  bool ReadLocalDirectory(SiteFields& fields);
  void CmTest();

  LPropertyPage* pFault = this;
};

/// The name of the site, and where both panes start.
class LSPAdvancedPage : public LPropertyPage {
 public:
  enum Control : int {
    kLabel = 13603,
    kLabelLabel = 13604,
    kRemoteGroup = 13606,
    kRemoteRecent = 13607,
    kRemoteFixed = 13608,
    kRemoteStart = 13611,
    kRemoteStartLabel = 13612,
    kRemoteBrowse = 13613,
    kLocalGroup = 13614,
    kLocalRecent = 13615,
    kLocalFixed = 13616,
    kLocalStart = 13619,
    kLocalStartLabel = 13620,
    kLocalBrowse = 13621,
  };

  void InitDialog() override;
  void EnableControls() override;
  void Command(int id, intptr_t data) override;
  void CmHelp() override;

  LSPGeneralPage* pGeneral = nullptr;  ///< The other page; set before the sheet opens.
  bool bInitialised = false;           ///< Its controls hold the site.

 private:
  void CmLocalDirSelect();
};

/// Opens the sheet on `view`. The label that the site has afterwards, or null when cancelled; the text stands until
/// the next call. An empty label is a new site.
const char* SitePropertiesDlg(LMacWindow* view, const char* label, const char* server, const char* user);
