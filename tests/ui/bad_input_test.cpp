// What a person can type or paste into any field of any dialog: nothing of it breaks the program, is kept longer than a
// text may be or cut inside a character, or reaches the server as more than one command.
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QtTest/QTest>

#include "app/new_folder_dialog.h"
#include "ui/site_fixture.h"

namespace {

using testing::Each;
using testing::MatchesRegex;

constexpr const char* kVictim = "victim.txt";

std::string Repeated(const char* text, size_t bytes) {
  std::string all;
  while (all.size() < bytes) all += text;
  return all;
}

class BadInput : public SiteTest {
 protected:
  struct Place {
    int page;  ///< -1 for the window itself.
    int field;
  };
  struct Form {
    const char* title;
    std::function<void()> open;
    std::function<void(platform::Window*)> fill;  ///< Makes the other fields good.
  };

  BadInput() { alerts.AgreeToAll(true); }

  static Texts Inputs() {
    return {"",
            " ",
            Repeated("x", 10000),
            Repeated("あ", 10000),
            "x" + Repeated("😀", 10000),
            "a\r\nDELE victim.txt\r\n",
            "DELE\nDELE victim.txt",
            "\u202Egpj.exe\u202C\u200F",
            "👨‍👩‍👧🎉",
            "a/b\\c",
            "../..",
            "%s%n%260d",
            "0",
            "65536",
            "-1",
            "abc",
            "\"x\"",
            "\x01\x7f"};
  }
  static platform::Window* WindowOf(platform::Window* dialog, int page) {
    if (page < 0) return dialog;
    ui::PressTab(dialog, page);
    return ui::Page(dialog, page);
  }
  static std::vector<Place> Fields(platform::Window* dialog) {
    std::vector<Place> fields;
    for (int page = -1; page < 0 || ui::Page(dialog, page); ++page) {
      const platform::Window* window = page < 0 ? dialog : ui::Page(dialog, page);
      for (const int id : window->controls.keys()) {
        const auto* combo = window->ControlAs<QComboBox>(id);
        if (window->ControlAs<QLineEdit>(id) || (combo && combo->isEditable())) fields.push_back({page, id});
      }
    }
    return fields;
  }
  /// Puts the text into the field and presses OK. A dialog that refuses is cancelled.
  static void Answer(platform::Window* dialog, const Form& form, const Place& place, const std::string& text) {
    form.fill(dialog);
    platform::Window* window = WindowOf(dialog, place.page);
    for (const int id : window->controls.keys()) {
      if (window->ControlAs<QRadioButton>(id)) ui::Press(window, id);  // The last of each group turns its field on.
    }
    if (window->Control(place.field)->isEnabled()) Fill(window, place.field, text);
    ui::Press(dialog, kCommandOk);
    // One that closed is gone by then.
    QTimer::singleShot(10, dialog, [dialog] { ui::Press(dialog, kCommandCancel); });
  }
  void Try(const Form& form) {
    SCOPED_TRACE(form.title);
    std::vector<Place> fields;
    {
      Steps steps;
      steps.In(form.title, [&](platform::Window* dialog) {
        fields = Fields(dialog);
        Press(dialog, kCommandCancel);
      });
      form.open();
    }
    EXPECT_FALSE(fields.empty());
    for (const Place& place : fields) {
      for (const std::string& text : Inputs()) {
        LUserSettingDeleteSection(kAccountsSection);
        KeepRecord("会社", kNowhere, "ben");
        Steps steps;
        steps.In(form.title, [&](platform::Window* dialog) { Answer(dialog, form, place, text); });
        form.open();
        ExpectSound(std::to_string(place.field) + " " + text.substr(0, 20));
      }
    }
  }
  static void ExpectSound(const std::string& what) {
    for (const std::string& one : All()) {
      const size_t value = one.find('=') + 1;
      EXPECT_LT(value - 1, kTextSize) << what;
      EXPECT_LT(one.size() - value, kTextSize) << what;
      EXPECT_TRUE(QByteArray::fromStdString(one).isValidUtf8()) << what << ": " << one;
    }
    EXPECT_EQ(ui::ModalWindow(), nullptr) << what;
  }
  void ExpectSoundSession() {
    EXPECT_TRUE(std::filesystem::exists(Remote(kVictim)));
    EXPECT_THAT(history.Commands(), Each(MatchesRegex("\\*+|[A-Z]{3,4}( .*)?")));
    for (const std::string& line : history.Commands())
      EXPECT_TRUE(QByteArray::fromStdString(line).isValidUtf8()) << line;
  }
};

TEST_F(BadInput, IntoTheDialogsOfSites) {
  StartProgram();
  const auto fillSite = [this](platform::Window* sheet) {
    FillSite(sheet, kNowhere, "", "anna", "geheim");
    Fill(Advanced(sheet), LSPAdvancedPage::kLabel, "新しい");
    Press(ui::Page(sheet, 1), LSPAdvancedPage::kLocalFixed);
    Fill(ui::Page(sheet, 1), LSPAdvancedPage::kLocalStart, Local());
  };
  const auto fillQuick = [](platform::Window* dialog) {
    Press(dialog, LQuickConnectDlg::kSave);
    Press(dialog, LQuickConnectDlg::kSavePassword);
    Fill(dialog, LQuickConnectDlg::kServer, kNowhere);
    Fill(dialog, LQuickConnectDlg::kPassword, "geheim");
  };
  Try({kNewSheet, [&] { SitePropertiesDlg(&Main(), "", "", ""); }, fillSite});
  Try({kSheet, [&] { SitePropertiesDlg(&Main(), "会社", kNowhere, "ben"); }, fillSite});
  Try({kQuick, [&] { LQuickConnectDlg().Open(&Main()); }, fillQuick});
}

TEST_F(BadInput, IntoTheOtherDialogs) {
  StartConnected({kVictim});
  const auto nothing = [](platform::Window*) {};
  const auto logIn = [&] {
    char password[kTextSize] = "";
    OpenUserLoginDlg(&Main(), "ftp.example.jp", "anna", password);
    EXPECT_TRUE(QByteArray(password).isValidUtf8());
  };
  Try({"ユーザーログイン", logIn, nothing});
  for (const auto& [bar, command] :
       {std::pair(kLocalTools, kCommandLocalNewFolder), {kRemoteTools, kCommandRemoteNewFolder}}) {
    Try({"新規フォルダ", [&, bar = bar, command = command] { PressTool(bar, command); }, nothing});
  }
  ExpectSoundSession();
}

TEST_F(BadInput, IntoTheFieldsOfTheMainWindow) {
  Put("Settings/FiltersOn", "1");
  StartConnected({kVictim, "row.txt"}, {"row.txt"});
  const std::vector<Place> fields = Fields(Window());
  EXPECT_EQ(fields.size(), 4u);
  for (const std::string& text : Inputs()) {
    for (const Place& place : fields) {
      Fill(Window(), place.field, text);
      QTest::keyClick(Window()->ControlAs<QComboBox>(place.field)->lineEdit(), Qt::Key_Return);
      ExpectSound(std::to_string(place.field) + " " + text.substr(0, 20));
    }
    for (const auto& [list, apply] : {std::pair(kLocalList, kLocalFilterRemove), {kRemoteList, kRemoteFilterRemove}}) {
      WindowTest::Press(apply);
      ui::TypeAndReturn(Window(), list == kLocalList ? kLocalPath : kRemotePath,
                        list == kLocalList ? Local().c_str() : "/");
      ASSERT_GE(Main().LVFindString(list, "row.txt"), 0) << list << " " << text.substr(0, 20);
      Select(list, {"row.txt"});
      PressTool(list == kLocalList ? kLocalTools : kRemoteTools,
                list == kLocalList ? kCommandLocalRename : kCommandRemoteRename);
      FinishRename(list, text.c_str());
      ExpectSound("rename " + text.substr(0, 20));
      // Back under the name that the next one expects.
      const std::string folder = list == kLocalList ? Local() : Remote();
      for (const auto& one : std::filesystem::directory_iterator(folder)) {
        if (one.path().filename() != kVictim) std::filesystem::rename(one.path(), folder + "/row.txt");
      }
    }
  }
  ExpectSoundSession();
}

}  // namespace
