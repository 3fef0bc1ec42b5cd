// Loading an XML file under a process. It stands here and not beside the reader because it asks the process
// whether to stop, which the support library knows by name alone.
#include <sys/stat.h>

#include "core/process.h"
#include "support/files.h"
#include "support/memory.h"
#include "support/xml.h"

namespace {

/// What a tree may take, as a multiple of its text.
constexpr uint64_t kMemoryForEachByte = 20;

uint64_t FileSize(const char* path) {
  struct stat status {};
  return stat(path, &status) == 0 && status.st_size > 0 ? static_cast<uint64_t>(status.st_size) : 0;
}

bool AskToStop(LProcessInterface& process) { return process.IsToStop(); }

}  // namespace

LProcessResult LXMLDocument::LoadFromFile(LProcessInterface& process, const char* path, char (&error)[kTextSize]) {
  if (!LFile::TestFileExists(path)) {
    TextFormat(error, "ファイル%sがありません", path);
    return LProcessResultFailed;
  }
  if (LMemoryGetFreeHeapSize() <= kMemoryForEachByte * FileSize(path)) {
    TextFormat(error, "%sを読み込むには容量が不足しています", path);
    return LProcessResultFailed;
  }
  if (process.IsToStop()) return LProcessResultStopped;
  LXMLLoaderTemplate<char> loader(error);
  if (!LLoadTextAutoChar(path, loader.text)) {
    TextFormat(error, "xmlファイル%sを開くことができません", path);
    return LProcessResultFailed;
  }
  if (process.IsToStop()) return LProcessResultStopped;
  error[0] = 0;
  loader.process = &process;
  loader.pAskToStop = AskToStop;
  LoadData(loader);
  return loader.bStopped || process.IsToStop() ? LProcessResultStopped : LProcessResultOk;
}
