// From process start to the event loop: what every run sets up, and what the command line decides.
#pragma once

/// The command line as it was given; the texts belong to the system.
extern int gargc;
extern char** gargv;

/// umask, the command line, the locale, the limit of open files.
void LUnixAppInitCommon(int argc, char** argv);

extern bool bInstallerShouldRun;  ///< The command line asks for an installation; set by StartupRunWorker.
struct LApplication {
  static bool bIsLaunchedFromScheduler;  ///< Set by StartupTakeSwitches.
};

/// Runs one job and gives its exit status if the command line asks for a worker run; -1 for the interactive run.
int StartupRunWorker();

/// The switches that the interactive run looks at.
void StartupTakeSwitches();
