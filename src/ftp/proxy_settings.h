// The FTP proxy of the user's settings: one for all sites. Reads and writes the store directly. Main thread.
#pragma once

#include "support/text.h"

/// Stored as decimal text; a number of no meaning comes through as it is.
enum LFtpProxyType : int {
  kFtpProxyNone = 0,
  kFtpProxySite = 1,             ///< Log on to the proxy, then SITE host.
  kFtpProxyOpen = 2,             ///< No proxy logon, OPEN host.
  kFtpProxyUserAtSite = 3,       ///< No proxy logon, USER user@host.
  kFtpProxyLoginUserAtSite = 4,  ///< Log on to the proxy, then USER user@host.
};

void LNetGetFtpProxySettings(char (&host)[kTextSize], char (&user)[kTextSize], char (&password)[kTextSize],
                             LFtpProxyType& type);
void LNetSetFtpProxySettings(const char* host, const char* user, const char* password, LFtpProxyType type);
