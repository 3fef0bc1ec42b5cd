#include "ftp/proxy_settings.h"

#include "sites/store/settings.h"

namespace {

constexpr char kSection[] = "Settings";

}  // namespace

void LNetGetFtpProxySettings(char (&host)[kTextSize], char (&user)[kTextSize], char (&password)[kTextSize],
                             LFtpProxyType& type) {
  (void)_LUserSettingGetString(kSection, "ProxyHost", "", host);
  (void)_LUserSettingGetString(kSection, "ProxyUsername", "", user);
  (void)LUserSettingGetPassword(kSection, "ProxyPassword", "", password);
  type = static_cast<LFtpProxyType>(LUserSettingGet<int>(kSection, "FtpProxyType", kFtpProxyNone));
}

void LNetSetFtpProxySettings(const char* host, const char* user, const char* password, LFtpProxyType type) {
  const LSettingsBatch together;
  char number[kTextSize];
  TextFormat(number, "%d", static_cast<int>(type));
  // A store that cannot be written keeps the old values; the settings dialogs look at what it has then.
  (void)LUserSettingSetString(kSection, "ProxyHost", host);
  (void)LUserSettingSetString(kSection, "ProxyUsername", user);
  (void)LUserSettingSetPassword(kSection, "ProxyPassword", password);
  (void)LUserSettingSetString(kSection, "FtpProxyType", number);
}
