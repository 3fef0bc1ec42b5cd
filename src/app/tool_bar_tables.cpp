#include "app/tool_bar_tables.h"

#include <iterator>

#include "app/command_ids.h"

namespace {

using Item = LToolBar::ToolBarItem;
constexpr Item kSeparator = {0, 0, nullptr, nullptr, 0};

// Command, icon, label, tool tip, command of the arrow
constexpr Item kMain[] = {
    {kCommandSites, 16, "サイト...", "サイト管理画面を表示する", kCommandSiteMenu},
    kSeparator,
    {kCommandConnect, 15, "接続", "サイトに接続", kCommandConnectMenu},
    {kCommandQuickConnect, 1000, "クイック", "素早く接続", 0},
    kSeparator,
    {kCommandDisconnect, 14, "切断", "サイトを切断", 0},
    {kCommandShowHistory, 18, "履歴", "履歴ファイルを表示", 0},
    {kCommandOptions, 337, "環境設定", "設定と環境設定の調整", 0},
};
constexpr Item kLocal[] = {
    kSeparator,
    {kCommandLocalRename, 208, "名前の変更", nullptr, 0},
    {kCommandLocalNewFolder, 346, "新規フォルダ", nullptr, 0},
    {kCommandLocalDelete, 207, "削除", nullptr, 0},
    {kCommandLocalRefresh, 202, "更新", nullptr, 0},
    kSeparator,
    {kCommandLocalUp, 201, "上へ", nullptr, 0},
    {kCommandLocalBack, 204, "戻る", nullptr, 0},
    {kCommandLocalForward, 205, "進む", nullptr, 0},
    {kCommandLocalBookmarks, 209, "ローカルブックマーク", nullptr, 0},
};
constexpr Item kRemote[] = {
    kSeparator,
    {kCommandRemoteRename, 208, "名前を変更 ", nullptr, 0},
    {kCommandRemoteNewFolder, 346, "新規フォルダ", nullptr, 0},
    {kCommandRemoteDelete, 207, "削除 ", nullptr, 0},
    {kCommandRemoteRefresh, 202, "更新 ", nullptr, 0},
    kSeparator,
    {kCommandRemoteUp, 201, "上へ", nullptr, 0},
    {kCommandRemoteBack, 204, "戻る", nullptr, 0},
    {kCommandRemoteForward, 205, "進む", nullptr, 0},
    {kCommandRemoteBookmarks, 209, "リモートブックマーク", nullptr, 0},
};

}  // namespace

const LToolBar::ToolBarItem* MainToolBarItems(size_t& count) {
  count = std::size(kMain);
  return kMain;
}

const LToolBar::ToolBarItem* LocalToolBarItems(size_t& count) {
  count = std::size(kLocal);
  return kLocal;
}

const LToolBar::ToolBarItem* RemoteToolBarItems(size_t& count) {
  count = std::size(kRemote);
  return kRemote;
}
