// The job records of a transfer: a flat list of files, moved one after the other over the one session, and the folders
// that the run has made or entered, so that a cancelled run can be taken back.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"
#include "support/containers.h"
#include "support/strings.h"

class LFtpList;

/// A synchronise run is on: the list jobs work on lists that are filled already and collect nothing.
extern bool gbSynchronizing;

/// Waits of the list jobs, in milliseconds, for tests to shorten.
struct TransferWaits {
  unsigned lateCancelSliceMs = 200;  ///< Ten of these hold the dialog of a finished download for a late cancel.
  unsigned wakeLogonMs = 500;        ///< After each logon that follows a sleep of the machine.
};
extern TransferWaits gTransferWaits;

/// A text in a list.
struct LStringLongItem {
  LStringLongItem* next;
  LStringLongTemplate<char> text;
};

/// One file to bring down.
struct DownloadFile {
  LFileTransferProtocol* protocol;
  char local[kTextSize];
  char remote[kTextSize];
  char error[kTextSize];  ///< The server's or our own words; empty means the file is fine.
};
struct LXfrDownloadItem {
  LXfrDownloadItem* next;
  DownloadFile file;
};

struct FtpDownloadFileList {
  LFtpList* owner;
  LFileTransferProtocol* protocol;
  LList<LXfrDownloadItem> files;          ///< AddFile puts in front: fetched in the reverse order of collecting.
  LList<LStringLongItem> createdFolders;  ///< Local ones, deepest first, also those that were there before.
  LStringLongTemplate<char> localFolder;
  LVector<LStringLongTemplate<char>> names;  ///< What is collected, in the directory of the run.
  bool bLeftOut = false;                     ///< Something was not collected: refused, not to be listed, too long.

  void AddFile(const char* local, const char* remote);
  void AddFolderToCreatedFolderList(const char* path);
};

/// How a local name becomes a name on the server.
struct FtpNameRules {
  bool noSpaces;
  bool lowerCase;

  /// As the user has set them. A look into the store: once for a job, not for each of its files.
  static FtpNameRules FromSettings();
};

/// One file to send; the remote name is relative to the item's remote directory.
struct UploadFile {
  LFileTransferProtocol* protocol;
  char local[kTextSize];
  char remote[kTextSize];
  char error[kTextSize];
};
struct LXfrUploadItem {
  LXfrUploadItem* next;
  UploadFile file;
};

struct FtpUploadFileList {
  LFtpList* owner;
  LFileTransferProtocol* protocol;
  LList<LXfrUploadItem> files;                       ///< In front again: sent in the reverse order of collecting.
  LStringListTemplate<char> uploadedNames;           ///< What the clean-up deletes beside the folders; no run fills it.
  LList<LStringLongItem> createdFolders;             ///< Remote ones, deepest first, also those that were there before.
  LStringLongTemplate<char> localFolder;             ///< The root that relative paths are taken against.
  const LVector<LStringLongTemplate<char>>* source;  ///< Local paths to send; null means nothing to do.
  FtpNameRules nameRules = FtpNameRules::FromSettings();

  void AddFile(const char* local, const char* remote);
  void AddFolderToCreatedFolderList(const char* path);
};

/// Takes back what a cancelled upload has made on the server.
struct FtpUploadFileListCleanup {
  FtpUploadFileList* list;
};

/// Collects the selection of the remote pane, with the questions about what is there already, and brings its files down
/// one after the other. A finished run waits two seconds for a late cancel.
[[nodiscard]] LProcessResult ProcessFtpDownloadList(LProcessInterface&, FtpDownloadFileList&);
/// The same upwards, from the record's source. 2 also when a file failed three times: the rest is not sent.
[[nodiscard]] LProcessResult ProcessFtpUploadList(LProcessInterface&, FtpUploadFileList&);

/// Gives a file that came down the date that the server tells.
void KeepServerDate(const DownloadFile&);

/// What the progress dialogs run.
LProcessResult Process(LProcessInterface&, FtpDownloadFileList&);
LProcessResult Process(LProcessInterface&, FtpUploadFileList&);
LProcessResult Process(LProcessInterface&, FtpUploadFileListCleanup&);
/// One file of an upload.
LProcessResult Process(ChildInterface&, UploadFile&);
