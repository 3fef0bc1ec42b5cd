#include "support/dat_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include "platform/file_io.h"
#include "support/file_handles.h"
#include "support/files.h"

LDatFileNativeSystem gLDatFileNativeSystem;

namespace {

constexpr unsigned kLockMs = 1000;
constexpr size_t kLineSize = 552;  // Two fixed texts, the sign between them and the line end fit.

/// A line end in a text would begin a line of its own.
template <size_t N>
void CopyOneLine(char (&out)[N], const char* text) {
  TextCopyPart(out, text, strcspn(text, "\r\n"));
}

}  // namespace

LDatFileNativeEntry* LDatFileNativeSection::Find(const char* key) const {
  LDatFileNativeEntry* entry = entries.first;
  while (entry && strcmp(entry->szKey, key) != 0) entry = entry->next;
  return entry;
}

LDatFileNativeSection* LDatFileNativeFile::FindSection(const char* name) const {
  LDatFileNativeSection* section = sections.first;
  while (section && strcmp(section->szName, name) != 0) section = section->next;
  return section;
}

LDatFileNativeSection* LDatFileNativeFile::SectionNamed(const char* name) {
  char line[kTextSize];
  CopyOneLine(line, name);
  if (LDatFileNativeSection* found = FindSection(line)) return found;
  LDatFileNativeSection* section = new LDatFileNativeSection;
  sections.AddTail(section);
  TextCopy(section->szName, line);
  return section;
}

const char* LDatFileNativeFile::Get(const char* section, const char* key) const {
  const LDatFileNativeSection* found = FindSection(section);
  const LDatFileNativeEntry* entry = found ? found->Find(key) : nullptr;
  return entry ? entry->szValue : nullptr;
}

void LDatFileNativeFile::Set(const char* section, const char* key, const char* value) {
  LDatFileNativeSection* target = SectionNamed(section);
  char line[kTextSize];
  CopyOneLine(line, key);
  LDatFileNativeEntry* entry = target->Find(line);
  if (!entry) {
    entry = new LDatFileNativeEntry;
    target->entries.AddTail(entry);
    TextCopy(entry->szKey, line);
  }
  CopyOneLine(entry->szValue, value);
  bDirty = true;
}

void LDatFileNativeFile::RememberStatus() {
  struct stat status {};
  const bool there = stat(szPath, &status) == 0;
  iModified = there ? status.st_mtime : 0;
  iSize = there ? status.st_size : 0;
}

bool LDatFileNativeFile::IsChangedOnDisk() const {
  struct stat status {};
  if (stat(szPath, &status) != 0) return iModified != 0 || iSize != 0;
  return status.st_mtime != iModified || status.st_size != iSize;
}

void LDatFileNativeFile::ReadLines(int descriptor) {
  LReadFileBuffered reader(descriptor);
  char section[kTextSize] = "";
  char line[kLineSize];
  while (reader.ReadLine(line, sizeof line)) {
    const size_t length = strlen(line);
    char* equals = strchr(line, '=');
    if (length >= 2 && line[0] == '[' && line[length - 1] == ']') {
      TextCopyPart(section, line + 1, length - 2);
      SectionNamed(section);  // So that an empty section is kept, too.
    } else if (equals) {
      *equals = 0;
      char key[kTextSize];
      TextCopy(key, line);
      Set(section, key, equals + 1);
    }
  }
}

bool LDatFileNativeFile::Load() {
  const int descriptor = platform::FileOpen(szPath, O_RDONLY, 0);
  if (descriptor == -1) return false;
  const bool locked = flocktimed(descriptor, LOCK_SH | LOCK_NB, kLockMs) == 0;
  if (locked) {
    sections.Clear();
    ReadLines(descriptor);
    RememberStatus();
    bDirty = false;
  }
  platform::FileClose(descriptor);
  return locked;
}

void LDatFileNativeFile::Save() {
  LWriteFile file(szPath, kLockMs);
  if (file.descriptor == -1) return;
  char line[kLineSize];
  for (const auto* section = sections.first; section; section = section->next) {
    TextFormat(line, "[%s]\r\n", section->szName);
    file.WriteString(line);
    for (const auto* entry = section->entries.first; entry; entry = entry->next) {
      TextFormat(line, "%s=%s\r\n", entry->szKey, entry->szValue);
      file.WriteString(line);
    }
    file.WriteString("\r\n");
  }
  const off_t end = platform::FileSeek(file.descriptor, 0, SEEK_CUR);
  if (end >= 0) platform::FileTruncate(file.descriptor, end);
  file.Close();
  RememberStatus();
  bDirty = false;
}

LDatFileNativeFile* LDatFileNativeSystem::Open(const char* path) {
  LDatFileNativeFile* file = files.first;
  while (file && strcmp(file->szPath, path) != 0) file = file->next;
  if (!file) {
    file = new LDatFileNativeFile(path);
    files.AddTail(file);
  }
  if (!file->bDirty && file->IsChangedOnDisk()) file->Load();
  return file;
}

bool LDatFileNativeSystem::Read(const char* path, const char* section, const char* key, char (&out)[kTextSize]) {
  const std::lock_guard lock(mutex);
  const char* value = Open(path)->Get(section, key);
  TextCopy(out, value);
  return value != nullptr;
}

void LDatFileNativeSystem::Write(const char* path, const char* section, const char* key, const char* value) {
  const std::lock_guard lock(mutex);
  Open(path)->Set(section, key, value);
}

void LDatFileNativeSystem::Clear() {
  const std::lock_guard lock(mutex);
  for (LDatFileNativeFile* file = files.first; file; file = file->next) {
    if (file->bDirty) file->Save();
  }
  files.Clear();
}
