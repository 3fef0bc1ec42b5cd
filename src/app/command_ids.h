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

// Tool bar of the remote pane
constexpr int kCommandRemoteRefresh = 201;
constexpr int kCommandRemoteUp = 202;
constexpr int kCommandRemoteBack = 203;
constexpr int kCommandRemoteForward = 204;
constexpr int kCommandRemoteDelete = 205;
constexpr int kCommandRemoteRename = 206;
constexpr int kCommandRemoteBookmarks = 209;
constexpr int kCommandRemoteBookmarkFirst = 210;
constexpr int kCommandRemoteNewFolder = 280;

// Tool bar of the local pane
constexpr int kCommandLocalReload = 301;
constexpr int kCommandLocalUp = 302;
constexpr int kCommandLocalBack = 303;
constexpr int kCommandLocalForward = 304;
constexpr int kCommandLocalRename = 306;
constexpr int kCommandLocalDelete = 307;
constexpr int kCommandLocalRefresh = 308;
constexpr int kCommandLocalBookmarks = 311;
constexpr int kCommandLocalBookmarkLast = 361;
constexpr int kCommandLocalNewFolder = 380;

// Main tool bar, and the menus of files and tools
constexpr int kCommandReturnKey = 400;
constexpr int kCommandQuickConnect = 600;
constexpr int kCommandConnectMenu = 1000;
constexpr int kCommandConnectKey = 1001;
constexpr int kCommandDisconnect = 1002;
constexpr int kCommandShowHistory = 1004;
constexpr int kCommandSynchronise = 1008;
constexpr int kCommandSiteMenu = 3000;
constexpr int kCommandSites = 3001;
constexpr int kCommandOptions = 3002;
constexpr int kCommandSetupWizard = 3003;
constexpr int kCommandSiteImport = 3004;
constexpr int kCommandSiteExport = 3005;
constexpr int kCommandSettingsImport = 3006;
constexpr int kCommandSettingsExport = 3007;
constexpr int kCommandSiteTool = 3008;
constexpr int kCommandCompare = 3009;
constexpr int kCommandShowFilters = 3010;

// Menu of the local pane
constexpr int kCommandUpload = 1003;
constexpr int kCommandLocalOpen = 1005;
constexpr int kCommandMenuLocalDelete = 1006;
constexpr int kCommandMenuLocalRename = 1007;
constexpr int kCommandMenuLocalNewFolder = 1009;
constexpr int kCommandDeleteInFocus = 1010;
constexpr int kCommandMenuLocalRefresh = 2001;
constexpr int kCommandMenuLocalBack = 2002;
constexpr int kCommandMenuLocalForward = 2003;
constexpr int kCommandMenuLocalUp = 2004;

// Menu of the remote pane, and what its list sends
constexpr int kCommandDownload = 4001;
constexpr int kCommandRemoteOpen = 4002;
constexpr int kCommandMenuRemoteDelete = 4003;
constexpr int kCommandMenuRemoteRename = 4004;
constexpr int kCommandMenuRemoteNewFolder = 4005;
constexpr int kCommandMenuRemoteRefresh = 4006;
constexpr int kCommandPermissions = 4007;
constexpr int kCommandMenuRemoteBack = 4008;
constexpr int kCommandMenuRemoteForward = 4009;
constexpr int kCommandMenuRemoteUp = 4010;
constexpr int kCommandRemoteSelectionChanged = 4011;
constexpr int kCommandRemoteRightClick = 4012;
constexpr int kCommandRemoteHeaderRightClick = 4013;
constexpr int kCommandColumnFirst = 4014;  ///< The remote list's column 1; the others follow.
constexpr int kCommandColumnLast = 4019;
constexpr int kCommandRemoteCopy = 4021;
constexpr int kCommandRemotePaste = 4022;

// The machine and the menu bar
constexpr int kCommandSuspend = 2011;
constexpr int kCommandResume = 2012;
constexpr int kCommandMenuOpens = 7000;
constexpr int kCommandDeleteKey = 7001;  ///< These two do nothing: their keys are shown beside menu items.
constexpr int kCommandRenameKey = 7002;

// Sites: a base and the site's number, counted from 1 in the walk of all sites
constexpr int kCommandSitePropertiesBase = 5000;
constexpr int kCommandNewSiteProperties = 5998;
constexpr int kCommandSiteBase = 6000;
constexpr int kCommandSiteFirst = 6001;
constexpr int kCommandSiteLast = 6997;
constexpr int kCommandNewSite = 6998;

// What the local list sends arrives above this number, for its own 400 is not the Return key's.
constexpr int kCommandFromLocalList = 0x10000;

// The frame
constexpr int kCommandPostInit = 3332;
constexpr int kCommandHomePage = 3333;
constexpr int kCommandSupportPage = 3336;
constexpr int kCommandFeedback = 3337;
constexpr int kCommandBugReport = 3338;
constexpr int kCommandWebPageLast = 3341;
constexpr int kCommandCheckVersion = 9405;
constexpr int kCommandShowToolBar = 9500;

// The platform's own, four letters as a number
constexpr int FourLetters(const char (&letters)[5]) {
  return (letters[0] << 24) | (letters[1] << 16) | (letters[2] << 8) | letters[3];
}
constexpr int kCommandQuit = FourLetters("quit");
constexpr int kCommandHideWindow = FourLetters("clos");
constexpr int kCommandCloseAgain = FourLetters("QtNc");
constexpr int kCommandWindowReady = FourLetters("wrdy");
constexpr int kCommandAbout = FourLetters("abou");
constexpr int kCommandHelp = FourLetters("ahlp");
constexpr int kCommandSettings = FourLetters("pref");
constexpr int kCommandServices = FourLetters("serv");
constexpr int kCommandHide = FourLetters("hide");
constexpr int kCommandHideOthers = FourLetters("hido");
constexpr int kCommandShowAll = FourLetters("shal");
constexpr int kCommandMaximise = FourLetters("maxi");
constexpr int kCommandMinimise = FourLetters("mini");
constexpr int kCommandMinimiseAll = FourLetters("mina");
constexpr int kCommandBringToFront = FourLetters("bfrt");
constexpr int kCommandArrangeInFront = FourLetters("frnt");
