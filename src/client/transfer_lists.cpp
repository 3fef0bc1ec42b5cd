#include "client/transfer_lists.h"

#include "sites/store/settings.h"

bool gbSynchronizing = false;
TransferWaits gTransferWaits;

namespace {

template <typename Item, typename List>
void AddInFront(List& list, LFileTransferProtocol* protocol, const char* local, const char* remote) {
  auto* item = new Item();
  item->file.protocol = protocol;
  TextCopy(item->file.local, local);
  TextCopy(item->file.remote, remote);
  list.AddHead(item);
}

void AddFolderInFront(LList<LStringLongItem>& folders, const char* path) {
  auto* item = new LStringLongItem();
  item->text = path;
  folders.AddHead(item);
}

}  // namespace

FtpNameRules FtpNameRules::FromSettings() {
  return {LUserSettingIsOn("Settings", "FtpNoSpaces"), LUserSettingIsOn("Settings", "FtpLowerCase")};
}

void FtpDownloadFileList::AddFile(const char* local, const char* remote) {
  AddInFront<LXfrDownloadItem>(files, protocol, local, remote);
}

void FtpDownloadFileList::AddFolderToCreatedFolderList(const char* path) { AddFolderInFront(createdFolders, path); }

void FtpUploadFileList::AddFile(const char* local, const char* remote) {
  AddInFront<LXfrUploadItem>(files, protocol, local, remote);
}

void FtpUploadFileList::AddFolderToCreatedFolderList(const char* path) { AddFolderInFront(createdFolders, path); }
