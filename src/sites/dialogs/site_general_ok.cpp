// OK on a site's sheet: the checks in their order, the store, and the test of the connection.
#include "ftp/connection_test.h"
#include "sites/dialogs/host_name.h"
#include "sites/dialogs/site_properties.h"
#include "sites/dialogs/site_walk.h"
#include "support/files.h"

namespace {

using Advanced = LSPAdvancedPage;

/// Anonymous servers ask for something of the shape of an e-mail address.
constexpr const char* kAnonymousPassword = "anonymous@example.com";

constexpr const char* kServerIsMissing =
    "転送先のFTPサーバーを入力してください。ドメイン形式（例：ftp.example.com）またはIP形式（例：192.168.0.32.）"
    "で入力してください。";
/// The first "サイト" with a number that is free, or that the site has already.
void NumberedLabel(char (&label)[kTextSize], const char* oldLabel) {
  for (int number = 1;; ++number) {
    TextFormat(label, "サイト%d", number);
    if (strcasecmp(label, oldLabel) == 0 || !SiteLabelExists(label)) return;
  }
}

}  // namespace

bool LSPGeneralPage::Refuse(LPropertyPage& page, int control, const char* tip) {
  pFault = &page;
  page.BringPageToFront();
  page.SetFocus(control);
  page.BubbleTipShow(control, tip);
  return false;
}

bool LSPGeneralPage::RefuseServer() { return Refuse(*this, kServer, kServerIsWrong); }

bool LSPGeneralPage::ReadLabel(char (&label)[kTextSize]) {
  label[0] = 0;
  if (pAdvanced->bInitialised) pAdvanced->GetTextAndTrim(Advanced::kLabel, label);
  if (!label[0]) TextCopy(label, szPrimaryKey);
  if (strpbrk(label, "/\\")) {
    return Refuse(*pAdvanced, Advanced::kLabel, "サイト名にスラッシュ（/）は使えません。 ");
  }
  if (strcasecmp(label, szPrimaryKey) != 0 && SiteLabelExists(label)) {
    return Refuse(*pAdvanced, Advanced::kLabel, "未使用のサイト名を入力してください。");
  }
  if (!label[0]) NumberedLabel(label, szPrimaryKey);
  return true;
}

/// The address goes back into its field without scheme and port.
bool LSPGeneralPage::ReadServer(TypedServer& typed) {
  char address[kTextSize], port[kTextSize];
  GetTextAndTrim(kServer, address);
  if (!address[0]) return Refuse(*this, kServer, kServerIsMissing);
  GetTextAndTrim(kPort, port);
  typed = ReadTypedServer(address, port);
  SetText(kServer, typed.szAddress);
  return ScrubIpOrHostName(typed.szServer) || RefuseServer();
}

bool LSPGeneralPage::ReadDirectory(const char* typedPath, SiteFields& fields) {
  pAdvanced->GetTextAndTrim(Advanced::kRemoteStart, fields.szDirectory);
  const bool differ = typedPath[0] && fields.szDirectory[0] && strcasecmp(typedPath, fields.szDirectory) != 0;
  if (differ && pAdvanced->GetRadioCheck(Advanced::kRemoteFixed)) {
    return Refuse(*pAdvanced, Advanced::kRemoteStart,
                  "サーバーアドレスで指定したディレクトリがリモートディレクトリのパスと異なっています ");
  }
  if (typedPath[0]) {
    TextCopy(fields.szDirectory, typedPath);
    pAdvanced->SetText(Advanced::kRemoteStart, typedPath);
    pAdvanced->SetRadioCheck(Advanced::kRemoteFixed);
    pAdvanced->EnableControls();
  }
  fields.bUseRecentRemote = pAdvanced->GetRadioCheck(Advanced::kRemoteRecent);
  return true;
}

bool LSPGeneralPage::ReadLocalDirectory(SiteFields& fields) {
  pAdvanced->GetTextAndTrim(Advanced::kLocalStart, fields.szLocalDirectory);
  if (!LFile::TestFileExists(fields.szLocalDirectory)) {
    return Refuse(*pAdvanced, Advanced::kLocalStart, "正しいフォルダを選択してください。");
  }
  fields.bUseRecentLocal = pAdvanced->GetRadioCheck(Advanced::kLocalRecent);
  return true;
}

/// The record is placed before the folders are checked: a refusal after that leaves it without fields.
bool LSPGeneralPage::CmOk() {
  char label[kTextSize], user[kTextSize];
  TypedServer typed;
  SiteFields fields = {};
  if (!ReadLabel(label) || !ReadServer(typed)) return false;
  if (!SiteFitsStore(label, typed.szServer)) {
    return Refuse(*pAdvanced, Advanced::kLabel, "サイト名とサーバー名が長すぎます。");
  }
  GetTextAndTrim(kUser, user);
  GetPasswordTextAndTrim(kPassword, fields.szPassword);
  if (!fields.szPassword[0]) SetCheck(kRemember, false);

  SiteBookmarks bookmarks;
  LSharedSettingsRecord first;
  AccountsOpenServer(label, typed.szServer).Open(first, "0");
  bookmarks.Read(first);
  PlaceSite(srUser, {szPrimaryKey, szServer, szUserName, label, typed.szServer, user}, fields.szUserName);
  if (!ReadDirectory(typed.szPath, fields) || !ReadLocalDirectory(fields)) return false;

  TextCopy(fields.szServer, typed.szServer);
  fields.bRemember = GetCheck(kRemember);
  fields.iProtection = PDLGetCurSel(kProtection);
  WriteSite(srUser, fields);
  bookmarks.Write(srUser);
  TextCopy(szFinishLabel, label);
  CmTest();
  return true;
}

void LSPGeneralPage::CmTest() {
  TypedServer typed;
  if (!ReadServer(typed)) return;
  char user[kTextSize], password[kTextSize], directory[kTextSize] = "/";
  GetTextAndTrim(kUser, user);
  if (!user[0]) TextCopy(user, "anonymous");
  GetPasswordTextAndTrim(kPassword, password);
  if (!password[0] && strcmp(user, "anonymous") == 0) TextCopy(password, kAnonymousPassword);
  if (pAdvanced->bInitialised) pAdvanced->GetText(Advanced::kRemoteStart, directory);
  const int protection = PDLGetCurSel(kProtection);
  LFtpTestReadWrite(Sheet(), typed.szServer, user, password, directory, protection != kProtectionNone,
                    protection == kProtectionImplicit);
}
