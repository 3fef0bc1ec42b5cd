// Comparing: what is newer or missing on one side gets selected there, and nothing is moved. Folders on both sides are
// walked with the pane itself, so the user sees where the comparison is.
#include "client/remote_pane.h"
#include "client/remote_paths.h"
#include "ftp/queries.h"
#include "support/files.h"

namespace {

struct LFtpRemoteIndex {
  LFtpRemoteIndex* next;
  int row;
};

bool IsSeen(LProcessInterface& process, const LStringListTemplate<char>& seen, const char* name, bool& isStopped) {
  for (size_t i = 0; i < seen.count; ++i) {
    isStopped = process.IsToStop();
    if (isStopped || strcmp(seen.strings[i], name) == 0) return true;
  }
  return false;
}

}  // namespace

/// The walk counts its steps: the pane is filled anew whenever it comes back from a folder. Null behind the last item.
const LFtpExpListItem* LFtpList::ItemAt(int place) const {
  const LFtpExpListItem* item = Items.first;
  for (int i = 0; item && i < place; ++i) item = item->next;
  return item;
}

/// Into the folder, and back to where its parent is; the pane's rows are new ones afterwards.
void LFtpList::CompareBelow(LProcessInterface& process, const char* name, const char* local, bool& localNewer,
                            bool& remoteNewer) {
  char path[kTextSize];
  RemoteJoin(path, szCurrentDirectory, name);
  for (char* c = path; *c; ++c) {
    if (*c == '\\') *c = '/';
  }
  CmGo(path);
  _TestDifferences(process, local, true, localNewer, remoteNewer);
  CmUp();
}

/// How an entry of the remote folder stands to the local one of its name, whose path is `local` then.
LFtpList::Difference LFtpList::CompareItem(LProcessInterface& process, const LFtpExpListItem& item,
                                           const char* localFolder, char (&local)[kTextSize]) {
  // A path that is cut would name the folder it stands in, and that would be walked again.
  if (!TransferPathFits(localFolder, item.name) || !TransferPathFits(szCurrentDirectory, item.name)) {
    return Difference::kNone;
  }
  LFile::_MakeFilePath(local, localFolder, item.name, "");
  if (item.kind == LFtpExpListItem::kFolder) {
    return LFile::TestFileExists(local) ? Difference::kFolderOnBothSides : Difference::kRemoteWins;
  }
  char name[kTextSize];  // The question pumps: the item may be gone behind it.
  TextCopy(name, item.name);
  const int64_t localTime = LocalModifiedTime(local);
  int64_t remoteTime = 0;
  (void)ProcessFtpGetFileModifiedTime(process, Ftp, name, remoteTime);
  if (localTime == 0 || localTime < remoteTime) return Difference::kRemoteWins;
  return localTime == remoteTime ? Difference::kNone : Difference::kLocalWins;
}

void LFtpList::CmDirectoryCompare(LProcessInterface& process, const char* localFolder,
                                  LStringListTemplate<char>& localNames, bool recurse) {
  CmRefresh();
  LStringListTemplate<char> seen;
  LList<LFtpRemoteIndex> gathered;
  const LFtpExpListItem* item = Items.first;
  for (int place = 1; item && !process.IsToStop(); ++place) {
    char name[kTextSize];
    char local[kTextSize];
    TextCopy(name, item->name);
    pWindow->LVSetSel(nListId, pWindow->LVFindString(nListId, name), false);
    if (process.IsToStop()) return;
    bool localNewer = false;
    bool remoteNewer = false;
    const Difference difference = CompareItem(process, *item, localFolder, local);
    switch (difference) {
      case Difference::kNone: break;
      case Difference::kLocalWins: localNewer = true; break;
      case Difference::kRemoteWins: remoteNewer = true; break;
      case Difference::kFolderOnBothSides:
        if (recurse) CompareBelow(process, name, local, localNewer, remoteNewer);
        break;
    }
    // The way up from a folder selects its row.
    const int row = pWindow->LVFindString(nListId, name);
    pWindow->LVSetSel(nListId, row, false);
    if (process.IsToStop()) return;
    // Gathered, because the walk through the folders fills the pane anew.
    if (remoteNewer) gathered.AddHead(new LFtpRemoteIndex{nullptr, row});
    if (localNewer) localNames.Add(name);
    seen.Add(name);
    item = difference == Difference::kFolderOnBothSides ? ItemAt(place) : item->next;
  }
  if (process.IsToStop()) return;
  LFile::FolderIteratorAllFiles entry;
  bool isStopped = false;
  for (bool more = entry.Open(localFolder); more && !isStopped; more = entry.Next()) {
    if (!IsSeen(process, seen, entry.Name(), isStopped)) localNames.Add(entry.Name());
  }
  if (isStopped) return;
  for (const LFtpRemoteIndex* index = gathered.first; index; index = index->next) {
    pWindow->LVSetSel(nListId, index->row, true);
  }
}

void LFtpList::_TestDifferences(LProcessInterface& process, const char* localFolder, bool recurse, bool& localNewer,
                                bool& remoteNewer) {
  localNewer = remoteNewer = false;
  CmRefresh();
  LStringListTemplate<char> seen;
  const LFtpExpListItem* item = Items.first;
  for (int place = 1; item && !process.IsToStop(); ++place) {
    char name[kTextSize];
    char local[kTextSize];
    TextCopy(name, item->name);
    const Difference difference = CompareItem(process, *item, localFolder, local);
    switch (difference) {
      case Difference::kNone: break;
      case Difference::kRemoteWins: remoteNewer = true; break;
      case Difference::kLocalWins:
        localNewer = true;
        if (remoteNewer) return;
        break;
      case Difference::kFolderOnBothSides:
        // What is found below replaces what was found so far.
        if (recurse) CompareBelow(process, name, local, localNewer, remoteNewer);
        break;
    }
    seen.Add(name);
    item = difference == Difference::kFolderOnBothSides ? ItemAt(place) : item->next;
  }
  LFile::FolderIteratorAllFiles entry;
  bool isStopped = process.IsToStop();
  for (bool more = entry.Open(localFolder); more && !isStopped; more = entry.Next()) {
    if (entry.Name()[0] != '.' && !IsSeen(process, seen, entry.Name(), isStopped)) localNewer = true;
    if (localNewer && remoteNewer) return;
  }
}
