#include "ui/transfer_fixture.h"

#include <QProgressBar>

#include "platform/qt/native_window.h"

double TransferTest::Progress(platform::Window* dialog) {
  const auto* bar = dialog->ControlAs<QProgressBar>(kBar);
  return bar->maximum() == 0 ? 0 : static_cast<double>(bar->value()) / bar->maximum();
}

qint64 TransferTest::CancelDuring(const char* dialogTitle, const std::function<void()>& transfer,
                                  const std::function<bool(platform::Window*)>& when) {
  QElapsedTimer sinceCancel;
  const Meanwhile cancel(
      [&] {
        platform::Window* dialog = Dialog(dialogTitle);
        return dialog && when(dialog);
      },
      [&] {
        sinceCancel.start();
        EXPECT_TRUE(ui::Press(Dialog(dialogTitle), kCommandCancel));
      });
  // The end of the dialog, not of what is refreshed behind it.
  qint64 took = -1;
  const Meanwhile gone([&] { return sinceCancel.isValid() && !Dialog(dialogTitle); },
                       [&] { took = sinceCancel.elapsed(); });
  transfer();
  EXPECT_TRUE(cancel.Acted()) << "the transfer was over before Cancel";
  return took >= 0 || !sinceCancel.isValid() ? took : sinceCancel.elapsed();
}

void TransferTest::ExpectCancelled(bool isDown) const {
  EXPECT_EQ(history.Count(isDown ? "ユーザーがダウンロードを中止しました" : "ユーザーがアップロードを中止しました"),
            1u);
}

Texts TransferTest::NewCommands(std::initializer_list<const char*> verbs) {
  Texts commands = history.Commands();
  commands.erase(commands.begin(), commands.begin() + static_cast<std::ptrdiff_t>(seenCommands));
  seenCommands += commands.size();
  const auto isWanted = [verbs](const std::string& command) {
    return std::any_of(verbs.begin(), verbs.end(), [&](const char* verb) { return command.starts_with(verb); });
  };
  if (verbs.size() != 0) std::erase_if(commands, [&](const std::string& command) { return !isWanted(command); });
  return commands;
}

uintmax_t TransferTest::SizeOf(const std::string& path) {
  std::error_code none;
  const uintmax_t size = std::filesystem::file_size(path, none);
  return none ? 0 : size;
}

void TransferTest::MakeSparse(const std::string& path, uintmax_t size) {
  WriteFile(path, "");
  std::filesystem::resize_file(path, size);
}

Texts TransferTest::StoreWithoutCounts() {
  Texts all = All();
  std::erase_if(all, [](const std::string& one) { return one.find("Count") != std::string::npos; });
  return all;
}
