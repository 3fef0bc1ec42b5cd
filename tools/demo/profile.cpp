// Writes the demo's site into the preferences of the environment it runs in, and makes it the current one, so that
// the program connects to it at its start; not so with --unconnected. Everything comes from the environment that
// tools/demo/run sets.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "sites/store/accounts.h"
#include "sites/store/settings.h"

namespace {

const char* Wanted(const char* variable) {
  const char* value = getenv(variable);
  if (value && *value) return value;
  fprintf(stderr, "orvaneftp-demo-profile: %s is not set\n", variable);
  exit(2);
}

}  // namespace

int main(int count, char** arguments) {
  LFTPAccountSettings site(Wanted("ORVANE_DEMO_SITE"), Wanted("ORVANE_DEMO_USER"));
  TextCopy(site.szLabel, site.szKey);
  TextCopy(site.szServer, Wanted("ORVANE_DEMO_SERVER"));
  TextCopy(site.szPassword, Wanted("ORVANE_DEMO_PASSWORD"));
  TextCopy(site.szDirectory, "/");
  TextCopy(site.szLocalDirectory, Wanted("ORVANE_DEMO_LOCAL"));
  site.bRemember = true;
  site.Save();
  // A profile of the present layout: nothing in it is to be brought over from an older one.
  LUserSettingSetString("Settings", "MigratedAccounts3", "1");
  if (count > 1 && strcmp(arguments[1], "--unconnected") == 0) return 0;
  const bool kept = LUserSettingSetString("Settings", "Current", site.szLabel) &&
                    LUserSettingSetString("Settings", "CurrentServer", site.szServer) &&
                    LUserSettingSetString("Settings", "CurrentUser", site.szUserName);
  if (!kept) fprintf(stderr, "orvaneftp-demo-profile: the preferences cannot be written\n");
  return kept ? 0 : 1;
}
