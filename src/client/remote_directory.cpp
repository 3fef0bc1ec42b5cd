// The remote pane: entering a directory, listing it, going through the tree, and the history.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "ftp/logon.h"
#include "ftp/queries.h"
#include "platform/event_loop.h"
#include "platform/text_service.h"
#include "support/files.h"
#include "support/log.h"

namespace {

constexpr size_t kSortUpTo = 99;
constexpr const char* kPassiveFailed =
    "パッシブ接続に失敗しました！\r\n"
    "ファイアウォールまたはルーターの設定をご確認ください。詳細は /kb/jp/10047.html をご覧ください。";

}  // namespace

void LFtpList::SetDirectory(const char* path) {
  // `path` may be one of the two themselves.
  char copy[kTextSize];
  TextCopy(copy, path[0] ? path : "/");
  TextCopy(szCurrentDirectory, copy);
  TextCopy(szLastDirectory, copy);
}

LProcessResult LFtpList::EnterCurrentDirectory() {
  LProcessSecureFtpChangeDirectory job = {&Ftp, &szCurrentDirectory};
  return Process(static_cast<LProcessInterface&>(*this), job);
}

bool LFtpList::ApplyDirectory() {
  if (!pWindow) return false;
  const WaitCursor cursor;
  LProcessResult result = EnterCurrentDirectory();
  for (int reconnects = 0; result == LProcessResultFailed && reconnects < 2; ++reconnects) {
    // Where that directory is gone the connection is in the root, and so is what follows.
    ReconnectFromLast();
    if (reconnects == 0) result = EnterCurrentDirectory();
  }
  if (result == LProcessResultFailed) {
    LOGERRORF("ディレクトリを「%s」に変更できません。ディレクトリ上で許可があるか確認してください。",
              szCurrentDirectory);
    return false;
  }
  pWindow->LVClear(nListId);
  Items.Clear();
  LFileTransferProtocol::DirIterator listing;
  LProcessInterfaceVoid quiet;
  // A refused listing is an empty one; a lost connection is found by the next command.
  (void)listing._LoadList(quiet, Ftp, "*");
  FillItems(listing);
  if (Items.Count() <= kSortUpTo) Items.Sort();
  ShowItems();
  if (listing.IsPassiveFailure()) {
    LOGERROR(kPassiveFailed);
    return false;
  }
  return true;
}

/// By the bytes or, where the user sees other text than these, by that.
bool LFtpList::PassesFilter(const char* name) const {
  char lower[kTextSize];
  TextCopy(lower, name);
  LCharsetsLowerCase(lower);
  if (strstr(lower, szFilter)) return true;
  if (!platform::TextDecodeName(name, lower)) return false;
  LCharsetsLowerCase(lower);
  return strstr(lower, szFilter) != nullptr;
}

void LFtpList::FillItems(LFileTransferProtocol::DirIterator& listing) {
  for (; listing.Current(); listing.Next()) {
    platform::EventLoopDraw();
    const LFileTransferProtocol::DirIterator::Item& record = *listing.Current();
    if (RemoteIsDotEntry(record.name)) continue;
    int kind = LFtpExpListItem::kFile;
    if (listing.IsDirectory()) {
      kind = LFtpExpListItem::kFolder;
    } else if (listing.IsSymbolicLink()) {
      kind = LFtpExpListItem::kSymbolicLink;
    }
    if (kind == LFtpExpListItem::kFile && szFilter[0] && !PassesFilter(record.name)) continue;
    auto* item = new LFtpExpListItem();
    item->kind = kind;
    TextCopy(item->name, record.name);
    const size_t length = strlen(item->name);
    if (length > 1 && item->name[length - 1] == '/') item->name[length - 1] = 0;
    AskForMissingDetails(*item, record);
    Items.AddHead(item);
  }
}

void LFtpList::AskForMissingDetails(LFtpExpListItem& item, const LFileTransferProtocol::DirIterator::Item& record) {
  item.modified = record.modified;
  item.size = record.size;
  TextCopy(item.attributes, record.attributes);
  TextCopy(item.owner, record.owner);
  TextCopy(item.group, record.group);
  LProcessInterfaceVoid quiet;
  // Each of these leaves its field as it is when the server does not tell.
  if (!record.modifiedKnown) {
    (void)ProcessFtpGetFileModifiedTime(quiet, Ftp, record.name, item.modified);
  }
  if (!record.sizeKnown && item.kind != LFtpExpListItem::kFolder) {
    (void)ProcessFtpGetFileSize(quiet, Ftp, record.name, item.size);
  }
  if (!record.attributesKnown) (void)ProcessFtpGetFileAttribute(quiet, Ftp, record.name, item.attributes);
  if (!record.ownerKnown) (void)ProcessFtpGetFileOwner(quiet, Ftp, record.name, item.owner);
  if (!record.groupKnown) (void)ProcessFtpGetFileOwnerGroup(quiet, Ftp, record.name, item.group);
}

bool LFtpList::EvDirectoryChanged() {
  if (bChangingDirectory) return true;
  bChangingDirectory = true;
  const bool applied = ApplyDirectory();
  if (applied) AddToRecentFileList(szCurrentDirectory);
  bChangingDirectory = false;
  return applied;
}

// Going through the tree

bool LFtpList::CmGo(const char* path) {
  char old[kTextSize];
  char wanted[kTextSize];
  TextCopy(old, szCurrentDirectory);
  TextCopy(wanted, path);
  SetDirectory(wanted);
  if (!EvDirectoryChanged()) {
    SetDirectory(old);
    // The tries have left the session where a logon puts it. What the pane shows is there, and its names go by that.
    (void)Ftp.SetCurrentDirectory(szCurrentDirectory);
    return false;
  }
  LOG("ディレクトリの変更が完了しました： ", wanted);
  return true;
}

bool LFtpList::CmOpenFolder(const char* name) {
  char path[kTextSize];
  RemoteJoin(path, szCurrentDirectory, name);
  return CmGo(path);
}

void LFtpList::CmUp() {
  if (!pWindow) return;
  EndRename();
  char up[kTextSize];
  char left[kTextSize];
  PaneUtils::GetUpPath(szCurrentDirectory, up, "/");
  LFile::_GetFileFromPath(left, szCurrentDirectory);
  SetDirectory(up);
  EvDirectoryChanged();
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, left);
}

void LFtpList::CmRefresh() {
  if (!pWindow) return;
  LOG("更新中...");
  EndRename();
  char current[kTextSize] = "";
  const int row = pWindow->LVGetCurSel(nListId);
  if (row >= 0) pWindow->LVGetString(nListId, row, current);
  bQuiet = true;
  ApplyDirectory();
  bQuiet = false;
  LOG("更新終了。");
  PaneUtils::LVSetCurSelVisible(*pWindow, nListId, current);
}

// History

void LFtpList::ClearRecentFileList() {
  RecentList.SetArrayCapacity(0);
  for (size_t i = 0; i < kRecentEntries; ++i) RecentList.Add(LStringLongTemplate<char>());
  iRecentIndex = 0;
}

void LFtpList::AddToRecentFileList(const char* path) {
  LStringLongTemplate<char> fresh(path);
  if (iRecentIndex != 0) {
    // The forward part goes; what stood behind it at the tail stays as it is.
    for (size_t from = iRecentIndex; from < kRecentEntries; ++from) RecentList[from - iRecentIndex] = RecentList[from];
  }
  for (size_t i = kRecentEntries - 1; i > 0; --i) RecentList[i] = RecentList[i - 1];
  RecentList[0] = fresh;
  iRecentIndex = 0;
}

void LFtpList::ChangeDirectoryFromRecentList() {
  if (RecentList[iRecentIndex].IsEmpty()) return;
  SetDirectory(RecentList[iRecentIndex].Text());
  ApplyDirectory();
}

void LFtpList::CmBack() {
  if (!pWindow) return;
  EndRename();
  const size_t candidate = iRecentIndex + 1;
  if (candidate >= kRecentEntries || RecentList[candidate].IsEmpty()) return;
  iRecentIndex = candidate;
  ChangeDirectoryFromRecentList();
}

void LFtpList::CmForward() {
  if (!pWindow || iRecentIndex == 0) return;
  EndRename();
  --iRecentIndex;
  ChangeDirectoryFromRecentList();
}

bool LFtpList::IsBackAccessible() const {
  return bConnected && iRecentIndex + 1 < kRecentEntries && !RecentList[iRecentIndex + 1].IsEmpty();
}

bool LFtpList::IsForwardAccessible() const {
  return bConnected && iRecentIndex != 0 && !RecentList[iRecentIndex - 1].IsEmpty();
}
