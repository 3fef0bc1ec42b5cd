// The site manager: the list of all sites, to connect to one, and to add, edit and delete them. Main thread; events run
// while it is open.
#pragma once

#include "sites/dialogs/site_walk.h"
#include "support/window/icons.h"
#include "support/window/resizable_dialog.h"

class MainDialogCore;

class SiteManagerDlg : public LResizableDialog {
 public:
  enum Control : int {
    kList = 102,
    kAdd = 104,
    kProperties = 105,
    kDelete = 106,
    kDisconnect = 107,
  };
  enum Column : int { kLabel, kServer, kUser, kDirectory, kState };

  explicit SiteManagerDlg(MainDialogCore& mainDialog) : pMain(&mainDialog) {}

  /// Modal. True when a site was chosen to connect to: the one of the row `iSelected`.
  bool Open(LMacWindow* view);

  void InitDialog() override;
  void EnableControls() override;
  void Command(int id, intptr_t data) override;
  bool CmOk() override;
  void CmHelp() override;
  using LResizableDialog::LayoutControls;
  void LayoutControls(int width, int height) override;

  int iSelected = -1;               ///< The row that was connected; -1 for none.
  bool bSelectedConnected = false;  ///< It is the site that is connected.

 private:
  static constexpr int kSelectionChanged = 10000;
  static constexpr int kRightClick = 10001;

  void FillList();
  void AddRow(const SiteRecord& site, const LSharedSettingsRecord& record, const SiteRecord& current, int labelRow);
  SiteRecord RowSite(int row) const;
  void CmSiteAdd();
  void CmSiteProperties();
  void CmSiteDelete();
  void DeleteRow(int row);
  void CmSiteDisconnect();
  void EvRightClick();
  void Reselect(int row);

  MainDialogCore* pMain;  ///< Not owned; outlives the dialog.
  int iConnected = -1;    ///< Row of the connected site; -1 for none.
  LLVImageList Images;
  int iImageDisconnected = -1;
  int iImageConnected = -1;
};
