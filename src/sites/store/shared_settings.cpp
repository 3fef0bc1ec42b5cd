#include "sites/store/shared_settings.h"

#include <fcntl.h>
#include <sys/file.h>

#include "core/process.h"
#include "platform/file_io.h"
#include "sites/store/settings.h"
#include "support/file_handles.h"
#include "support/files.h"

namespace {

constexpr char kValue[] = "value";

LXMLElement* FindChild(const LXMLElement& parent, const char* name) {
  LXMLElement* child = parent.children.first;
  while (child && (!child->tagName || strcmp(child->tagName, name) != 0)) child = child->next;
  return child;
}

LXMLElement& FindOrAddChild(LXMLElement& parent, const char* name) {
  if (LXMLElement* found = FindChild(parent, name)) return *found;
  LXMLElement* child = new LXMLElement(name);
  parent.children.AddTail(child);
  return *child;
}

/// False, with an empty document, if there is no file to read; a syntax error leaves what stands before it.
bool Load(const char* file, LXMLDocument& document) {
  document.children.Clear();
  LProcessInterfaceVoid process;
  char ignored[kTextSize] = {};  // Nobody is there to be told about a file the user never sees.
  return document.LoadFromFile(process, file, ignored) == LProcessResultOk;
}

/// Replaces the file's content. It is emptied only under the lock: a reader, which locks it too, sees no half
/// of it.
bool Save(const char* file, const LXMLDocument& document) {
  LStringLongTemplate<char> text;
  document.SaveAll(text);
  const int descriptor = platform::FileOpen(file, O_RDWR | O_CREAT | O_NONBLOCK, 0666);
  if (descriptor < 0) return false;
  const bool written = platform::FileLock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
                       platform::FileTruncate(descriptor, 0) == 0 &&
                       LWriteFileRef(descriptor).Write(text.Text(), text.length);
  platform::FileClose(descriptor);
  return written;
}

void EnsureFolder(const char* path) {
  if (!LFile::TestFileExists(path) && !platform::FileIsReachable(path)) LFile::CreateFolderTree(path);
}

void SharedFile(char (&out)[kTextSize]) {
  GetSharedFolder(out);
  LFile::_MakeFilePath(out, out, "SharedSettings", ".xml");
}

void UserHiddenFile(char (&out)[kTextSize]) {
  GetUserHiddenFolder(out);
  LFile::_MakeFilePath(out, out, "orvaneftp", ".xml");
}

template <typename T>
T NumberOr(const char* text, T defaultValue) {
  return text[0] == 0 ? defaultValue : LSettingNumberFromText<T>(text);
}

}  // namespace

void GetSharedFolder(char (&out)[kTextSize]) {
  LFile::GetUserDataFolderApp(out);
  LFile::_MakeFilePath(out, out, "Shared", "");
  EnsureFolder(out);
}

void GetUserHiddenFolder(char (&out)[kTextSize]) {
  platform::FolderPath(platform::Folder::kHome, out);
  LFile::_MakeFilePath(out, out, ".tessalysoft", "");
  EnsureFolder(out);
}

bool LXMLSettingGetString(const char* file, const char* section, const char* key, const char* defaultValue,
                          char (&out)[kTextSize]) {
  LXMLDocument document;
  Load(file, document);
  const LXMLElement* element = FindChild(document, section);
  if (element) element = FindChild(*element, key);
  const char* value = element ? element->attributes.GetParm(kValue) : nullptr;
  TextCopy(out, value ? value : defaultValue);
  return value != nullptr;
}

bool LXMLSettingSetString(const char* file, const char* section, const char* key, const char* value) {
  LXMLDocument document;
  Load(file, document);
  FindOrAddChild(FindOrAddChild(document, section), key).attributes.SetParmBottom(kValue, value);
  return Save(file, document);
}

bool _LSharedSettingGetString(const char* section, const char* key, const char* defaultValue, char (&out)[kTextSize]) {
  char file[kTextSize];
  SharedFile(file);
  return LXMLSettingGetString(file, section, key, defaultValue, out);
}

bool LSharedSettingSetString(const char* section, const char* key, const char* value) {
  char file[kTextSize];
  SharedFile(file);
  return LXMLSettingSetString(file, section, key, value);
}

template <typename T>
T LSharedSettingGet(const char* section, const char* key, T defaultValue) {
  char text[kTextSize];
  _LSharedSettingGetString(section, key, "", text);
  return NumberOr(text, defaultValue);
}
template int LSharedSettingGet(const char*, const char*, int);

bool _LUserHiddenSettingGetString(const char* section, const char* key, const char* defaultValue,
                                  char (&out)[kTextSize]) {
  char file[kTextSize];
  UserHiddenFile(file);
  return LXMLSettingGetString(file, section, key, defaultValue, out);
}

bool LUserHiddenSettingSetString(const char* section, const char* key, const char* value) {
  char file[kTextSize];
  UserHiddenFile(file);
  return LXMLSettingSetString(file, section, key, value);
}

template <typename T>
T LUserHiddenSettingGet(const char* section, const char* key, T defaultValue) {
  char text[kTextSize];
  _LUserHiddenSettingGetString(section, key, "", text);
  return NumberOr(text, defaultValue);
}
template int LUserHiddenSettingGet(const char*, const char*, int);

bool LSharedSettingsSave(const LXMLDocument& document) {
  char file[kTextSize];
  SharedFile(file);
  return Save(file, document);
}

bool LSharedSettingsLoad(LXMLDocument& document) {
  char file[kTextSize];
  SharedFile(file);
  return Load(file, document);
}
