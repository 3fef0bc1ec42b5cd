#include "ftp/permissions.h"

#include <cstdlib>
#include <cstring>

#include "ftp/commands.h"
#include "ftp/queries.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr size_t kMaskLength = 10;     ///< Of "drwxr-xr-x"; what follows is no matter.
constexpr size_t kLeastDigits = 4;     ///< Of "0755".
constexpr unsigned char kMayRead = 4;  ///< A digit from here on.

/// Of three letters.
unsigned char DigitOfMask(const char* letters) {
  int digit = 0;
  for (int i = 0; i < 3; ++i) {
    if (letters[i] == 'r') digit += 4;
    if (letters[i] == 'w') digit += 2;
    if (letters[i] == 'x') digit += 1;
  }
  return static_cast<unsigned char>(digit);
}

}  // namespace

LProcessResult Process(LProcessInterface& process, GetPermissionsData& data) {
  process.SetStatus("アクセス許可の取得中 ", 0);
  process.SetStatus("データを設定中", 1);
  process.SetStatus("コマンドを送信中", 1);
  process.SetProgressIndeterminateOn();
  const LProcessResult result = ProcessFtpGetFileAttribute(process, *data.pSession, data.name, data.attributes);
  process.SetProgressIndeterminateOff();
  return result;
}

void FtpPermissionDigits(const char* text, unsigned char& owner, unsigned char& group, unsigned char& others) {
  owner = group = others = 0;
  const size_t length = strlen(text);
  if (length >= kMaskLength) {
    owner = DigitOfMask(text + 1);
    group = DigitOfMask(text + 4);
    others = DigitOfMask(text + 7);
  } else if (length >= kLeastDigits && strspn(text, "0123456789") == length) {
    owner = static_cast<unsigned char>(text[1] - '0');
    group = static_cast<unsigned char>(text[2] - '0');
    others = static_cast<unsigned char>(strtol(text + 3, nullptr, 10));
  }
}

bool FTPTestUserHasReadPermissions(LProcessInterface& process, LFileTransferProtocol& session, const char* path) {
  char folder[kTextSize];
  char file[kTextSize];
  LFile::_GetFolderFromPath(folder, path);
  LFile::_GetFileFromPath(file, path);
  if (folder[0]) {
    char command[kFtpLongCommand];
    FtpFormatCommand(command, "CWD %s\r\n", folder);
    // Where it cannot go the file is looked for in vain, which counts as readable.
    (void)ProcessFtpSendAndWaitForReply(process, session, command, nullptr, nullptr);
  }
  GetPermissionsData data = {};
  TextCopy(data.name, file);
  data.pSession = &session;
  // Without an answer the text is empty.
  (void)Process(process, data);
  if (data.attributes[0] == 0 || strpbrk(data.attributes, "rR")) return true;
  unsigned char owner, group, others;
  FtpPermissionDigits(data.attributes, owner, group, others);
  if (owner >= kMayRead || group >= kMayRead || others >= kMayRead) return true;
  LOGERRORF("このユーザーには「%s」を表示またはダウンロードする権限がありません。", file);
  return false;
}
