// The job records of a transfer: a flat list of files, moved one after the other over the one session.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"
#include "support/containers.h"
#include "support/strings.h"

class LFtpList;

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
  LList<LXfrDownloadItem> files;  ///< AddFile puts in front: fetched in the reverse order of collecting.
  LStringLongTemplate<char> localFolder;

  void AddFile(const char* local, const char* remote);
};

/// One file to send; the remote name is relative to the directory of the run.
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
  LList<LXfrUploadItem> files;
  LStringLongTemplate<char> localFolder;
  const LVector<LStringLongTemplate<char>>* source;  ///< Local paths to send; null means nothing to do.

  void AddFile(const char* local, const char* remote);
};

/// Collects the selected files of the remote pane, with the questions about what is there already, and brings them
/// down one after the other.
[[nodiscard]] LProcessResult ProcessFtpDownloadList(LProcessInterface&, FtpDownloadFileList&);
/// The same upwards, from the record's source.
[[nodiscard]] LProcessResult ProcessFtpUploadList(LProcessInterface&, FtpUploadFileList&);

/// What the progress dialogs run.
LProcessResult Process(LProcessInterface&, FtpDownloadFileList&);
LProcessResult Process(LProcessInterface&, FtpUploadFileList&);
