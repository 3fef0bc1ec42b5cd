#include "app/menu_tables.h"

#include "app/command_ids.h"

namespace {

constexpr LMenuItem kEnd = {-1, nullptr, 0};
constexpr LMenuItem kSeparator = {0, nullptr, 0};
constexpr LMenuItem Open(const char* title) { return {-1, title, 0}; }
/// An item that shows the key of its own command.
constexpr LMenuItem Item(int id, const char* text) { return {id, text, id}; }

constexpr LMenuItem kApplication[] = {
    Open("Orvane FTP"),
    Item(kCommandAbout, "Orvane FTP 情報"),
    kSeparator,
    Item(kCommandSettings, "環境設定..."),
    kSeparator,
    Item(kCommandServices, "サービス"),
    kSeparator,
    Item(kCommandHide, "Orvane FTP を非表示"),
    Item(kCommandHideOthers, "他を非表示"),
    Item(kCommandShowAll, "全て表示"),
    kSeparator,
    Item(kCommandQuit, "Orvane FTP を終了"),
    kEnd,
};

constexpr LMenuItem kMain[] = {
    Open("ファイル"),
    Open(kConnectMenuTitle),
    Item(kCommandNewSiteProperties, "新規サイト ..."),
    kEnd,
    Item(kCommandDisconnect, "サイトを切断"),
    kSeparator,
    Item(kCommandSetupWizard, "セットアップウィザードを実行する..."),
    Item(kCommandSites, "サイト..."),
    kSeparator,
    Item(kCommandShowHistory, "履歴 (&L)"),
    kEnd,

    Open("ローカル"),
    Item(kCommandUpload, "アップロード"),
    kSeparator,
    Item(kCommandLocalOpen, "開く"),
    {kCommandMenuLocalDelete, "削除", kCommandDeleteKey},
    {kCommandMenuLocalRename, "名前を変更", kCommandRenameKey},
    Item(kCommandMenuLocalNewFolder, "新規フォルダ"),
    Item(kCommandMenuLocalRefresh, "更新"),
    Open("移動"),
    Item(kCommandMenuLocalBack, "1つ前に戻る"),
    Item(kCommandMenuLocalForward, "1つ先に進む"),
    Item(kCommandMenuLocalUp, "1つ上のレベルへ移動"),
    kEnd,
    kEnd,

    Open("リモート"),
    Item(kCommandDownload, "ダウンロード"),
    kSeparator,
    Item(kCommandRemoteOpen, "開く"),
    Item(kCommandMenuRemoteDelete, "削除"),
    Item(kCommandMenuRemoteRename, "名前を変更"),
    Item(kCommandMenuRemoteNewFolder, "新規フォルダ"),
    Item(kCommandMenuRemoteRefresh, "更新"),
    Item(kCommandPermissions, "ファイルのパーミッションを変更する"),
    Open("移動"),
    Item(kCommandMenuRemoteBack, "1つ前に戻る"),
    Item(kCommandMenuRemoteForward, "1つ先に進む"),
    Item(kCommandMenuRemoteUp, "1つ上のレベルへ移動"),
    kEnd,
    kEnd,

    Open("ツール"),
    Item(kCommandSites, "サイト..."),
    Item(kCommandShowFilters, kHideFilters),
    Item(kCommandCompare, "ディレクトリを比較する"),
    Item(kCommandSynchronise, "同期する"),
    kSeparator,
    Item(kCommandOptions, "環境設定"),
    kSeparator,
    Open("インポート/エクスポート"),
    Open("設定"),
    Item(kCommandSettingsExport, "エクスポート…"),
    Item(kCommandSettingsImport, "インポート…"),
    kEnd,
    Open("サイト"),
    Item(kCommandSiteExport, "エクスポート…"),
    Item(kCommandSiteImport, "インポート…"),
    kEnd,
    kEnd,
    kEnd,
};

constexpr LMenuItem kWindowAndHelp[] = {
    Open("ウインドウ"),
    Item(kCommandMaximise, "最大化"),
    Item(kCommandMinimise, "最小化"),
    kSeparator,
    Item(kCommandBringToFront, "全てを前面にもってくる"),
    Item(kCommandArrangeInFront, "正面にアレンジ"),
    kEnd,

    Open("ヘルプ"),
    Item(kCommandHomePage, "Orvane FTP ホームページ"),
    Item(kCommandSupportPage, "テクニカルサポートのページ"),
    Item(kCommandFeedback, "改善の提案またはフィードバックを送信"),
    Item(kCommandBugReport, "バグレポートを送信"),
    kSeparator,
    Item(kCommandCheckVersion, "新バージョンを確認"),
    Item(kCommandShowToolBar, kHideToolBar),
    kEnd,
};

constexpr int Cmd(int key) { return LKey::kCommand | key; }
constexpr int Shift(int key) { return LKey::kShift | key; }
constexpr int Option(int key) { return LKey::kOption | key; }

constexpr LKeyToCommandMap kKeys[] = {
    {Cmd('T'), 0, kCommandConnectKey},
    {Cmd('S'), 0, kCommandSites},
    {Cmd('W'), 0, kCommandHideWindow},
    {Cmd('U'), 0, kCommandUpload},
    {Cmd(LKey::kDelete), 0, kCommandDeleteInFocus},
    {LKey::kF2, 0, kCommandMenuLocalRename},
    {Cmd('D'), 0, kCommandDownload},
    {Shift(LKey::kForwardDelete), 0, kCommandMenuRemoteDelete},
    {Shift(LKey::kF2), 0, kCommandMenuRemoteRename},
    {Cmd(','), 0, kCommandOptions},
    {Option(LKey::kLeft), 0, kCommandMenuLocalBack},
    {Option(LKey::kRight), 0, kCommandMenuLocalForward},
    {Option(LKey::kUp), 0, kCommandMenuLocalUp},
    {Option(LKey::kReturn), 0, kCommandLocalOpen},
    {LKey::kReturn, 0, kCommandReturnKey},
    {Shift(LKey::kLeft), 0, kCommandMenuRemoteBack},
    {Shift(LKey::kRight), 0, kCommandMenuRemoteForward},
    {Shift(LKey::kUp), 0, kCommandMenuRemoteUp},
    {Shift(LKey::kReturn), 0, kCommandRemoteOpen},
    {LKey::kF2, 0, kCommandRenameKey},
    {Cmd('R'), 0, kCommandMenuLocalRefresh},
    {Cmd(Shift('R')), 0, kCommandMenuRemoteRefresh},
    {Cmd(LKey::kDelete), 0, kCommandDeleteKey},
};

constexpr LKeyToCommandMap kToolBarKeys[] = {
    {Cmd('T'), 0, kCommandConnect},
    {Cmd('S'), 0, kCommandSites},
    {Cmd('W'), 0, kCommandHideWindow},
    {Cmd(','), 0, kCommandOptions},
    {Cmd(LKey::kDelete), 0, kCommandLocalDelete},
    {LKey::kF2, 0, kCommandLocalRename},
    {Option(LKey::kLeft), 0, kCommandLocalBack},
    {Option(LKey::kRight), 0, kCommandLocalForward},
    {Option(LKey::kUp), 0, kCommandLocalUp},
    {Cmd('R'), 0, kCommandLocalRefresh},
    {Shift(LKey::kForwardDelete), 0, kCommandRemoteDelete},
    {Shift(LKey::kF2), 0, kCommandRemoteRename},
    {Cmd(Shift('R')), 0, kCommandRemoteRefresh},
    {Shift(LKey::kLeft), 0, kCommandRemoteBack},
    {Shift(LKey::kRight), 0, kCommandRemoteForward},
    {Shift(LKey::kUp), 0, kCommandRemoteUp},
    {Cmd('U'), 0, kUploadButton},
    {Cmd('D'), 0, kDownloadButton},
};

template <typename Row, size_t N>
const Row* Table(const Row (&rows)[N], size_t& count) {
  count = N;
  return rows;
}

}  // namespace

const LMenuItem* MainMenuItems(size_t& count) { return Table(kMain, count); }
const LKeyToCommandMap* MainKeyMap(size_t& count) { return Table(kKeys, count); }
const LKeyToCommandMap* ToolBarKeyMap(size_t& count) { return Table(kToolBarKeys, count); }
const LMenuItem* ApplicationMenuItems(size_t& count) { return Table(kApplication, count); }
const LMenuItem* WindowAndHelpMenuItems(size_t& count) { return Table(kWindowAndHelp, count); }
