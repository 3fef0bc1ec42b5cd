// Verbs for tests of transfers in the real window.
#pragma once

#include <QElapsedTimer>

#include "client/transfer_lists.h"
#include "ui/window_fixture.h"

class TransferTest : public WindowTest {
 protected:
  TransferTest() { gTransferWaits = {5, 5}; }
  ~TransferTest() override { gTransferWaits = {}; }

  static constexpr int kActionLine = 101;
  static constexpr int kItemLine = 102;
  static constexpr int kBar = 104;
  static constexpr const char* kDownloading = "ファイル一覧をダウンロード中";
  static constexpr const char* kUploading = "アップロード中のファイル一覧";
  /// A person sees no delay below 200 ms; a loaded machine under sanitizers gets more.
  static constexpr qint64 kCancelLimitMs = 1000;

  void Download(std::initializer_list<const char*> names) {
    Select(kRemoteList, names);
    Press(kDownloadButton);
  }
  void Upload(std::initializer_list<const char*> names) {
    Select(kLocalList, names);
    Press(kUploadButton);
  }
  void Transfer(bool isDown, std::initializer_list<const char*> names) { isDown ? Download(names) : Upload(names); }
  static const char* TitleOf(bool isDown) { return isDown ? kDownloading : kUploading; }
  /// The share of the progress bar that is filled, 0 to 1.
  static double Progress(platform::Window* dialog);

  /// Runs `transfer`, presses Cancel in its dialog as soon as `when` holds; the time from the press
  /// to the end of the transfer.
  qint64 CancelDuring(const char* dialogTitle, const std::function<void()>& transfer,
                      const std::function<bool(platform::Window*)>& when);

  /// The history says that the user has ended it.
  void ExpectCancelled(bool isDown) const;
  /// The commands since the last call, in order; with verbs, only those that begin with one of them.
  Texts NewCommands(std::initializer_list<const char*> verbs = {});

  /// All that is kept, but for how often something was done.
  static Texts StoreWithoutCounts();
  static std::string ContentOf(const std::string& path) { return ReadFile(path); }
  /// 0 for a file that is not there.
  static uintmax_t SizeOf(const std::string& path);
  /// A file of that size, which needs no room on the disk.
  static void MakeSparse(const std::string& path, uintmax_t size);
  /// More than a transfer could move while a test looks.
  static void MakeEndless(const std::string& path) { MakeSparse(path, 20ull << 30); }
  static bool Exists(const std::string& path) { return std::filesystem::exists(path); }

 private:
  size_t seenCommands = 0;
};
