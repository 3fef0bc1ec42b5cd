// Every command and control id of the main window, in one list.
#pragma once

// Controls of the main window
constexpr int kLocalList = 101;
constexpr int kLocalIcon = 102;
constexpr int kLocalPath = 103;
constexpr int kLocalTools = 104;
constexpr int kLocalGo = 105;
constexpr int kLocalFilter = 107;
constexpr int kLocalFilterApply = 108;
constexpr int kLocalFilterRemove = 109;
constexpr int kRemoteList = 150;
constexpr int kRemoteIcon = 151;
constexpr int kRemotePath = 152;
constexpr int kRemoteTools = 153;
constexpr int kRemoteGo = 154;
constexpr int kHistory = 156;
constexpr int kDivider = 157;
constexpr int kRemoteFilter = 158;
constexpr int kRemoteFilterApply = 159;
constexpr int kRemoteFilterRemove = 160;
constexpr int kUploadButton = 191;
constexpr int kDownloadButton = 192;
constexpr int kSynchroniseButton = 193;
constexpr int kTransferIcon = 194;

// Commands: a control's own id, or one of these
constexpr int kCommandGo = 1;
constexpr int kCommandConnect = 100;
constexpr int kCommandLocalPathChosen = 106;
constexpr int kCommandLocalFocusLost = 110;
constexpr int kCommandRemoteClicked = 111;
constexpr int kCommandRemotePathChosen = 155;
constexpr int kCommandRemoteRefresh = 201;
constexpr int kCommandRemoteUp = 202;
constexpr int kCommandRemoteBack = 203;
constexpr int kCommandRemoteForward = 204;
constexpr int kCommandRemoteDelete = 205;
constexpr int kCommandRemoteRename = 206;
constexpr int kCommandRemoteBookmarks = 209;
constexpr int kCommandRemoteNewFolder = 280;
constexpr int kCommandLocalReload = 301;
constexpr int kCommandLocalUp = 302;
constexpr int kCommandLocalBack = 303;
constexpr int kCommandLocalForward = 304;
constexpr int kCommandLocalRename = 306;
constexpr int kCommandLocalDelete = 307;
constexpr int kCommandLocalRefresh = 308;
constexpr int kCommandLocalBookmarks = 311;
constexpr int kCommandLocalNewFolder = 380;
constexpr int kCommandQuickConnect = 600;
constexpr int kCommandConnectMenu = 1000;
constexpr int kCommandDisconnect = 1002;
constexpr int kCommandShowHistory = 1004;
constexpr int kCommandLocalOpen = 1005;
constexpr int kCommandSuspend = 2011;
constexpr int kCommandResume = 2012;
constexpr int kCommandSiteMenu = 3000;
constexpr int kCommandSites = 3001;
constexpr int kCommandOptions = 3002;
constexpr int kCommandPostInit = 3332;
constexpr int kCommandRemoteOpen = 4002;
constexpr int kCommandRemoteSelectionChanged = 4011;
constexpr int kCommandRemoteRightClick = 4012;
constexpr int kCommandRemoteHeaderRightClick = 4013;
constexpr int kCommandSiteFirst = 6001;  ///< The site of flat index 0, counted in the walk of all sites.
constexpr int kCommandSiteLast = 6997;
constexpr int kCommandNewSite = 6998;

// The platform's own, four letters as a number
constexpr int kCommandQuit = 0x71756974;         ///< "quit"
constexpr int kCommandHideWindow = 0x636C6F73;   ///< "clos"
constexpr int kCommandCloseAgain = 0x51744E63;   ///< "QtNc"
constexpr int kCommandWindowReady = 0x77726479;  ///< "wrdy"
