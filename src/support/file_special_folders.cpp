// The folders that the platform keeps for the user and for programs.
#include "platform/file_io.h"
#include "support/files.h"

namespace {

constexpr char kProgramData[] = "OrvaneFTP";

/// On an account that is new, a base folder may not have been made by any program yet.
void MakeBaseFolder(const char* path, mode_t mode) {
  if (!path[0] || LFile::TestFileExists(path)) return;
  char parent[kTextSize];
  LFile::_GetFolderFromPath(parent, path);
  if (!LFile::TestFileExists(parent)) LFile::CreateFolderTree(parent);
  platform::FileMakeFolder(path, mode);
}

}  // namespace

void LFile::GetUserSpecialFolder(char (&out)[kTextSize], platform::Folder kind, const char* fallback) {
  if (platform::FolderPath(kind, out)) return;
  char home[kTextSize];
  platform::FolderPath(platform::Folder::kHome, home);
  _MakeFilePath(out, home, fallback, "");
  if (!TestFileExists(out)) CreateFolderTree(out);
}

void LFile::GetUserDocumentsFolder(char (&out)[kTextSize]) {
  GetUserSpecialFolder(out, platform::Folder::kDocuments, "Documents");
}

void LFile::GetUserDownloadFolder(char (&out)[kTextSize]) {
  GetUserSpecialFolder(out, platform::Folder::kDownloads, "Downloads");
}

void LFile::GetUserApplicationsFolder(char (&out)[kTextSize]) {
  GetUserSpecialFolder(out, platform::Folder::kApplications, "Applications");
}

void LFile::GetTempFolder(char (&out)[kTextSize]) {
  GetUserSpecialFolder(out, platform::Folder::kCaches, "Library/Caches");
  MakeBaseFolder(out, 0777);
}

void LFile::GetUserDataFolderApp(char (&out)[kTextSize]) {
  GetUserSpecialFolder(out, platform::Folder::kData, "Library/Application Support");
  MakeBaseFolder(out, 0700);
  _MakeFilePath(out, out, kProgramData, "");
  platform::FileMakeFolder(out, 0777);
}

void LFile::GetUserDataFolderAppSubFolder(const char* sub, char (&out)[kTextSize]) {
  GetUserDataFolderApp(out);
  _MakeFilePath(out, out, sub, "");
  platform::FileMakeFolder(out, 0777);
}

void LFile::GetApplicationsFolder(char (&out)[kTextSize]) {
  if (!platform::FolderPath(platform::Folder::kSystemApplications, out)) TextCopy(out, "/Applications");
}

void LFile::GetProgramFolderApp(char (&out)[kTextSize]) { platform::FolderPath(platform::Folder::kProgram, out); }
