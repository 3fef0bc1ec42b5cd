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

/// Joins the two, and makes the folder if it is missing.
void MakeFolderIn(char (&out)[kTextSize], const char* parent, const char* name) {
  LFile::_MakeFilePath(out, parent, name, "");
  if (!LFile::TestFileExists(out)) LFile::CreateFolderTree(out);
}

/// One of the two files, which differ in nothing but where they lie.
struct SettingsFile {
  SettingsFile(void (&getFolder)(char (&)[kTextSize]), const char* name) {
    getFolder(path);
    LFile::_MakeFilePath(path, path, name, ".xml");
  }
  static SettingsFile Shared() { return {GetSharedFolder, "SharedSettings"}; }
  static SettingsFile UserHidden() { return {GetUserHiddenFolder, "orvaneftp"}; }

  template <typename T>
  T Number(const char* section, const char* key, T defaultValue) const {
    char text[kTextSize];
    LXMLSettingGetString(path, section, key, "", text);
    return text[0] == 0 ? defaultValue : LSettingNumberFromText<T>(text);
  }

  char path[kTextSize];
};

}  // namespace

void GetSharedFolder(char (&out)[kTextSize]) {
  LFile::GetUserDataFolderApp(out);
  MakeFolderIn(out, out, "Shared");
}

void GetUserHiddenFolder(char (&out)[kTextSize]) {
  platform::FolderPath(platform::Folder::kHome, out);
  MakeFolderIn(out, out, ".tessalysoft");
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
  return LXMLSettingGetString(SettingsFile::Shared().path, section, key, defaultValue, out);
}

bool LSharedSettingSetString(const char* section, const char* key, const char* value) {
  return LXMLSettingSetString(SettingsFile::Shared().path, section, key, value);
}

template <typename T>
T LSharedSettingGet(const char* section, const char* key, T defaultValue) {
  return SettingsFile::Shared().Number(section, key, defaultValue);
}
template int LSharedSettingGet(const char*, const char*, int);

bool _LUserHiddenSettingGetString(const char* section, const char* key, const char* defaultValue,
                                  char (&out)[kTextSize]) {
  return LXMLSettingGetString(SettingsFile::UserHidden().path, section, key, defaultValue, out);
}

bool LUserHiddenSettingSetString(const char* section, const char* key, const char* value) {
  return LXMLSettingSetString(SettingsFile::UserHidden().path, section, key, value);
}

template <typename T>
T LUserHiddenSettingGet(const char* section, const char* key, T defaultValue) {
  return SettingsFile::UserHidden().Number(section, key, defaultValue);
}
template int LUserHiddenSettingGet(const char*, const char*, int);

bool LSharedSettingsSave(const LXMLDocument& document) { return Save(SettingsFile::Shared().path, document); }

bool LSharedSettingsLoad(LXMLDocument& document) { return Load(SettingsFile::Shared().path, document); }
