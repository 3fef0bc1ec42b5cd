// The remote pane: the controller of the right-hand list, and the owner of the program's one FTP session.
//
// All remote operations work on the server's current directory by name. A lost connection is met by reconnecting
// inside the operation that found it out, from the saved logon. Main thread only; any command may run inside a wait.
#pragma once

#include <memory>

#include "core/process.h"
#include "ftp/dir_iterator.h"
#include "ftp/protocol.h"
#include "support/containers.h"
#include "support/strings.h"
#include "support/window/drag_drop.h"
#include "support/window/list_view.h"
#include "support/window/timers.h"

/// One row of the shown directory; a node of its list.
struct LFtpExpListItem {
  enum Kind : int { kFile = 0, kFolder = 1, kSymbolicLink = 2 };
  LFtpExpListItem* next;
  int kind;
  char name[kTextSize];
  int64_t modified;  ///< Seconds on the wall-clock scale of listings.
  uint64_t size;     ///< Bytes; 0 for a folder.
  char attributes[kTextSize];
  char owner[kTextSize];
  char group[kTextSize];
};

/// Folders first, then the names byte by byte; never 0.
template <>
int LListArrayComparePtr<LFtpExpListItem>(const LFtpExpListItem* a, const LFtpExpListItem* b);

struct FtpDownloadFileList;
struct FtpNameRules;
struct FtpUploadFileList;
struct PermissionDigits;

/// As an LProcessInterface it is used for short talks in the foreground: it never stops, writes its status to the
/// history unless `bQuiet`, and its errors in any case.
class LFtpList : public LListViewSorter,
                 public LProcessInterfaceVoid,
                 public LDragDropHandler,
                 public LListViewDropTarget {
 public:
  // Columns
  enum Column { kName, kSize, kKind, kModified, kAttributes, kOwner, kGroup };
  static constexpr const char* kWordFolder = "フォルダ";
  static constexpr const char* kWordLink = "リンク";
  static constexpr const char* kWordFile = "ファイル";

  /// Once, when the window has its controls.
  void InitList(LMacWindow& window, int id);

  // Connection
  /// Connects and shows `directory`; "/" if that cannot be entered. Asks for a password where the server refuses.
  bool CmConnect(const char* server, const char* user, const char* password, const char* directory, bool secure,
                 bool implicitSSL, bool showProgress);
  /// Leaves the server; the second form also clears the pane.
  void CmDisconnect_();
  void CmDisconnect();
  /// Asks the server for its directory; a failure marks the pane as not connected.
  void EvCheckConnection();

  // Showing a directory
  bool ApplyDirectory();
  bool EvDirectoryChanged();
  /// False, with the old directory kept, if it cannot be entered.
  bool CmGo(const char* path);
  void CmUp();
  bool CmOpenFolder(const char* name);
  void CmRefresh();
  /// Opens the one selected row: a folder, a link, or with `openFiles` a file.
  void EvDoubleClick(bool openFiles);

  // Operations on single items
  /// Opens the field for the current row's new name.
  void CmRename();
  void EvListEditStart();
  void EvListEditComplete(int row, const char* text);
  void CmNewFolder(const char* name);
  /// True when deleting ran or nothing was selected.
  bool CmDelete();
  /// Deletes the selected items; the first failure ends it.
  LProcessResult CmDelete(LProcessInterface& process);
  /// Opens a temporary copy with the desktop's program for it.
  bool CmOpenFile(const char* name);
  /// `text` is a link's row: its name, or the name with the target behind it.
  void CmOpenSymbolicLink(const char* text, bool openFiles);
  void CmChangePermissions();
  static void ConvertRemoteFileAttributesToValues(const char* text, unsigned char& owner, unsigned char& group,
                                                  unsigned char& others);
  static void ConvertValuesToRemoteFileAttributes(char (&out)[kTextSize], unsigned char owner, unsigned char group,
                                                  unsigned char others, char first, bool numeric);

  // Context menus
  void EvRightClick();
  void EvRightClickHeader();
  /// Shows or hides the column of that menu id.
  void EvColumnChange(unsigned short id);

  // History
  void CmBack();
  void CmForward();
  void ChangeDirectoryFromRecentList();
  void AddToRecentFileList(const char* path);
  void ClearRecentFileList();
  bool IsBackAccessible() const;
  bool IsForwardAccessible() const;

  // Transfers
  /// Brings the selected files down into `localFolder`.
  void CmDownloadList(const char* localFolder);
  /// Sends files and folders; 0 done, 1 stopped, 2 failed.
  LProcessResult CmUploadList(const LVector<LStringLongTemplate<char>>& files, const char* localFolder);

  // Collecting a download. `name` stands in the server's current directory, `localDir` is where it goes. False ends the
  // collecting; what was queued so far is still fetched.
  bool _CmDownloadItemListInterfaced(FtpDownloadFileList&, const char* localDir, const char* name, LProcessInterface&);
  bool _CmDownloadFolderInterfaced(FtpDownloadFileList&, const char* localDir, const char* name, LProcessInterface&);
  bool _CmDownloadSymbolicLinkInterfaced(FtpDownloadFileList&, const char* localDir, const char* name,
                                         LProcessInterface&);
  /// Queues a file, unless the user keeps the one that is there.
  bool _CmAppendDownloadFile(FtpDownloadFileList&, const char* localDir, const char* name);
  /// True for a folder and for a link, which `kind` tells apart. `remoteDir` is entered again after a reconnect.
  bool _IsDirectoryFTP(LProcessInterface&, const char* name, const char* remoteDir, signed char& kind);

  // Collecting an upload. Remote folders are made on the way. A result other than 0 ends the collecting.
  [[nodiscard]] LProcessResult _CmUploadItemList(LProcessInterface&, FtpUploadFileList&, const char* localRoot,
                                                 const char* path);
  [[nodiscard]] LProcessResult _CmUploadFoldersAndFilesList(LProcessInterface&, FtpUploadFileList&,
                                                            const char* localRoot, const char* folder);
  [[nodiscard]] LProcessResult _CmAppendUploadFile(LProcessInterface&, FtpUploadFileList&, const char* localRoot,
                                                   const char* path);
  /// False when the remote file is to stay. `name` is clean and stands in the server's current directory.
  bool _CheckCanOverwrite(LProcessInterface&, const char* name);
  // The same for a drop on the window, which has no dialog yet: nothing stops them. False ends the collecting.
  [[nodiscard]] bool _CmUploadItemList(FtpUploadFileList&, const char* localRoot, const char* path);
  [[nodiscard]] bool _CmUploadFoldersAndFilesList(FtpUploadFileList&, const char* localRoot, const char* folder);
  [[nodiscard]] bool _CmAppendUploadFile(FtpUploadFileList&, const char* localRoot, const char* path);
  bool _CheckCanOverwrite(const char* name);
  /// Asks, unless an answer for all stands; the answer is in `bOverwriteYes`.
  void _GetOverwritePermission(const char* name);

  // Two folders
  /// Brings the top-level names of both folders level, by date and in both directions. `files` are the full paths of
  /// what the local pane shows. Says what it did in the history only.
  void CmSynchronize(LProcessInterface&, const char* localFolder, const LVector<LStringLongTemplate<char>>& files);
  /// Selects the rows that are newer here or missing locally; `localNames` takes what is newer or only there.
  void CmDirectoryCompare(LProcessInterface&, const char* localFolder, LStringListTemplate<char>& localNames,
                          bool recurse);
  void _TestDifferences(LProcessInterface&, const char* localFolder, bool recurse, bool& localNewer, bool& remoteNewer);

  /// Connects again from the saved logon, without a dialog.
  bool ReconnectFromLast();

  bool IsFolderSelected() const;
  const char* RowKindWord(int row, char (&word)[kTextSize]) const;

  // Server calls that reconnect up to three times from the saved logon. `level` is the directory that the caller works
  // in, entered again after a reconnect; null is the pane's own.
  bool _GetCurrentDirectoryFTP(char (&path)[kTextSize], const char* level = nullptr);
  bool _SetCurrentDirectoryFTP(const char* path, const char* level = nullptr);
  bool _CreateDirectoryFTP(const char* path);

  /// A name as the user wants it on the server: without blanks, in lower case.
  static void FtpCleanPath(char (&out)[kTextSize], const char* in, const FtpNameRules&);
  /// The way from the local root to the file, as the user wants it on the server.
  static void RemoteNameOfUpload(char (&out)[kTextSize], const char* localRoot, const char* path, const FtpNameRules&);
  int MakeRemoteFilePath(char (&out)[kTextSize], const char* localBase, const char* remoteBase,
                         const char* localPath) const;

  // LDragDropHandler
  /// Makes the remote folders of what was dropped on the window, with the questions about its files. No file is sent:
  /// the way of files is a drop on the list, and the button.
  void EvDropFiles(LDroppedFileData& files) override;
  // LListViewDropTarget: files go up into the folder under the pointer; rows of the list itself are moved into it. The
  // setting "DragSource" tells which of the two comes, "local" or "remote".
  /// Nothing is selected while files are over the list; its own rows stay selected.
  bool EvDragEnter(unsigned int& effect) override;
  /// Selects a folder, and marks the gap beside anything else.
  bool EvDragOver(const LPoint& point, unsigned int& effect) override;
  /// Brings the selection of the beginning back.
  bool EvDragLeave() override;
  bool EvDrop(const LPoint& point, unsigned int& effect, const LDroppedFileData& files) override;

  // LListViewSorter
  int LVCompareFunc(LListViewSorter* sorter, const char* a, const char* b) override;
  // LProcessInterface
  void SetError(const char* text) override;
  void SetStatus(const char* text, int level) override;

  /// Tells the window to leave the connection alone, and to look at it again.
  LQueuedNotifyDataSender NotifySender;

  // State
  bool bConnected = false;       ///< Logged on.
  bool bReconnectArmed = false;  ///< A lost connection starts reconnect tries; cleared when the login is cancelled.
  bool bQuiet = false;           ///< SetStatus stays silent.
  bool bOverwriteYes = false;    ///< Answer of the last overwrite question of the running job.
  bool bOverwriteForAll = false;
  char szServer[kTextSize] = {};               ///< Of the last good connection.
  char szCurrentDirectory[kTextSize] = {};     ///< As the server's answer to PWD gave it.
  char szBaseRemoteDirectory[kTextSize] = {};  ///< Roots of the running transfer.
  char szBaseLocalDirectory[kTextSize] = {};
  bool bDownloadedAll = false;    ///< The last CmDownloadList brought all of the selection.
  bool bSyncNoPrompt = false;     ///< Synchronising no longer asks, until the program ends.
  bool bDropToRow = false;        ///< The next upload goes into the folder of the current row.
  char szFilter[kTextSize] = {};  ///< Lower case; empty for none.
  LFileTransferProtocol Ftp;

  // The last logon, so that any job can reconnect
  static char szLastServer[kTextSize];
  static char szLastUsername[kTextSize];
  static char szLastPassword[kTextSize];
  static char szLastDirectory[kTextSize];
  static bool bLastSecure;
  static bool bLastImplicitSSL;
  static bool bPowerSuspendStandBy;          ///< The machine is going to sleep.
  static unsigned uStandBys;                 ///< How often it has.
  static ChildInterface* pCurrentInterface;  ///< Of the transfer now running, or null.

  LMacWindow* Window() const { return pWindow; }
  int ListId() const { return nListId; }

 private:
  static constexpr size_t kRecentEntries = 10;

  LProcessResult Connect(const char* server, const char* user, const char* password, bool secure, bool implicitSSL,
                         bool showProgress);
  /// A selected row, kept over waits in which the list may be filled anew.
  struct SelectedItem {
    char name[kTextSize];
    bool isFile;
  };
  void GetSelectedItems(LVector<SelectedItem>& items) const;
  LProcessResult DeleteFolder(LProcessInterface& process, LProcessInterface& share, const char* name);
  LProcessResult DeleteFile(LProcessInterface& process, const char* name);
  LFtpExpListItem* FindItem(const char* name);
  bool ChangePermissionsOf(const char* name, const PermissionDigits& digits, int row);
  void ShowNewPermissions(const char* name, const PermissionDigits& wanted, int row);
  bool AskForPassword(const char* server, const char* user, char (&password)[kTextSize]);
  template <typename Call>
  bool TryWithReconnects(Call call, const char* level);
  LProcessResult EnterCurrentDirectory();
  bool PassesFilter(const char* name) const;
  void FillItems(LFileTransferProtocol::DirIterator& listing);
  void AskForMissingDetails(LFtpExpListItem& item, const LFileTransferProtocol::DirIterator::Item& record);
  void ShowItems();
  int ImageOf(const LFtpExpListItem& item);
  void SetDirectory(const char* path);
  void EndRename();
  enum class Difference { kNone, kLocalWins, kRemoteWins, kFolderOnBothSides };
  Difference CompareItem(LProcessInterface&, const LFtpExpListItem& item, const char* localFolder,
                         char (&local)[kTextSize]);
  void CompareBelow(LProcessInterface&, const char* name, const char* local, bool& localNewer, bool& remoteNewer);
  const LFtpExpListItem* ItemAt(int place) const;
  bool IsFolderRow(int row) const;
  bool IsDragRow(int row) const;
  void UploadDropped(const LDroppedFileData& files);
  void MoveDragRows();

  LList<LFtpExpListItem> Items;
  LVector<LStringLongTemplate<char>> RecentList;  ///< Newest first, always ten, those not yet filled empty.
  size_t iRecentIndex = 0;
  int iDropRow = -1;                      ///< The last folder that a drag was over; -1 for none yet.
  std::unique_ptr<unsigned[]> pDragRows;  ///< The rows being dragged, in order, and -1; null for files from elsewhere.
  size_t nDragRows = 0;                   ///< With the -1.
  bool bRenaming = false;                 ///< The field for a row's new name is open.
  char szEditName[kTextSize] = {};        ///< The row's text when its editing began; empty for a new folder's row.
  bool bChangingDirectory = false;        ///< Re-entry guard of EvDirectoryChanged.
  LLVImageList ImageList;
  int iFolderIcon = -1;
  int nListId = 0;
  LMacWindow* pWindow = nullptr;  ///< Null until InitList.
};

/// Asks for a password in a dialog that shows server and user. False when cancelled.
bool OpenUserLoginDlg(LMacWindow* view, const char* server, const char* user, char (&passwordOut)[kTextSize]);
