// The second page of a site's sheet.
#include "sites/dialogs/site_properties.h"
#include "support/files.h"
#include "support/window/alert.h"

namespace {

/// On unless the field says "0".
bool IsOnOrAbsent(const LSharedSettingsRecord& record, const char* field) {
  char value[kTextSize];
  record.GetString(field, value);
  return value[0] != '0';
}

}  // namespace

void LSPAdvancedPage::InitDialog() {
  char documents[kTextSize], remote[kTextSize] = {}, local[kTextSize];
  LFile::GetUserDocumentsFolder(documents);
  EditPromptSet(kRemoteStart, "例： /var/www/html");
  EditPromptSet(kLocalStart, documents);
  SetToolTip(kLabel, "サイトの一覧に表示する名前です。空欄の場合は自動的に付けられます。");
  SetToolTip(kRemoteRecent, "前回の接続で最後に表示したリモートディレクトリを開きます。");
  SetToolTip(kRemoteFixed, "接続するたびに、下に指定したリモートディレクトリを開きます。");
  SetToolTip(kRemoteStart, "接続したときに開くリモートディレクトリです。");
  SetToolTip(kRemoteBrowse, "サーバーのディレクトリから選択します。");
  SetToolTip(kLocalRecent, "前回の接続で最後に表示したローカルフォルダを開きます。");
  SetToolTip(kLocalFixed, "接続するたびに、下に指定したローカルフォルダを開きます。");
  SetToolTip(kLocalStart, "接続したときに開くローカルフォルダです。");
  SetToolTip(kLocalBrowse, "このコンピュータのフォルダから選択します。");

  const LSharedSettingsRecord& site = LSPGeneralPage::srUser;
  const bool isNew = !LSPGeneralPage::szPrimaryKey[0];
  TextCopy(local, documents);
  if (!isNew) {
    site.GetString("Directory", "/", remote);
    site.GetString("LocalDirectory", "/", local);
  }
  SetText(kLabel, LSPGeneralPage::szPrimaryKey);
  SetText(kRemoteStart, remote);
  SetText(kLocalStart, local);
  SetRadioCheck(isNew || IsOnOrAbsent(site, "UseRecentRemote") ? kRemoteRecent : kRemoteFixed);
  SetRadioCheck(isNew || IsOnOrAbsent(site, "UseRecentLocal") ? kLocalRecent : kLocalFixed);
  bInitialised = true;
}

void LSPAdvancedPage::EnableControls() {
  const bool isLocalFixed = GetRadioCheck(kLocalFixed);
  EnableControl(kRemoteStart, GetRadioCheck(kRemoteFixed));
  EnableControl(kRemoteBrowse, false);  // Needs a browser of the server, which the program does not have.
  EnableControl(kLocalStart, isLocalFixed);
  EnableControl(kLocalBrowse, isLocalFixed);
}

void LSPAdvancedPage::CmLocalDirSelect() {
  char folder[kTextSize];
  GetTextAndTrim(kLocalStart, folder);
  if (LFile::BrowseFolder(Sheet(), "ローカルフォルダを選択する", folder)) SetText(kLocalStart, folder);
}

void LSPAdvancedPage::Command(int id, intptr_t data) {
  switch (id) {
    case kRemoteRecent:
    case kRemoteFixed:
    case kLocalRecent:
    case kLocalFixed: EnableControls(); break;
    case kLocalBrowse: CmLocalDirSelect(); break;
    default: LPropertyPage::Command(id, data);
  }
}

void LSPAdvancedPage::CmHelp() {
  LAlertWithButtonText::DisplayOkInfo(
      Sheet(),
      "サイト名は、サイトの一覧に表示する名前です。\n接続したときに開くディレクトリは、前回使ったものか、指定した"
      "ものから選びます。",
      "詳細プロパティ", "OK");
}
