// What a thousand sites cost: saving them, walking over them as the sites menu does, and one save among them.
//
// Usage: settings_bench [sites]. Folders of its own. The walk is done by the names of three levels, and one
// field of each site is read. Exit status 0 only if the walk met every site.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "platform/preferences.h"
#include "sites/store/accounts.h"
#include "sites/store/settings.h"

namespace {

constexpr int kDefaultSites = 1000;
constexpr int kRounds = 5;

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

void Save(int number) {
  char label[kTextSize];
  TextFormat(label, "サイト %05d", number);
  LFTPAccountSettings site(label, "hana");
  TextCopy(site.szLabel, label);
  TextFormat(site.szServer, "ftp%05d.example.jp", number);
  TextCopy(site.szDirectory, "/public_html");
  site.Save();
}

int Walk() {
  int count = 0;
  const LUserSettingsListTemplate<LSharedSettingsRecord> labels(kAccountsSection);
  for (AccountIterator label(labels); !label.IsAtEnd(); label.Advance()) {
    const AccountList servers(label.record);
    for (AccountIterator server(servers); !server.IsAtEnd(); server.Advance()) {
      const AccountList keys(server.record);
      for (AccountIterator key(keys); !key.IsAtEnd(); key.Advance()) {
        char user[kTextSize];
        key.record.GetString("UserName", user);
        if (strcmp(user, "hana") == 0) ++count;
      }
    }
  }
  return count;
}

void Print(const char* name, std::vector<double> times) {
  std::sort(times.begin(), times.end());
  printf("%-34s %9.2f ms (%.2f to %.2f in %zu rounds)\n", name, times[times.size() / 2], times.front(), times.back(),
         times.size());
}

}  // namespace

int main(int argc, char** argv) {
  const int sites = argc > 1 ? atoi(argv[1]) : kDefaultSites;
  if (sites <= 0) {
    fprintf(stderr, "usage: settings_bench [sites]\n");
    return 2;
  }
  const double made = Milliseconds([sites] {
    const LSettingsBatch batch;
    for (int i = 0; i < sites; ++i) Save(i);
  });
  printf("%d sites, %zu keys, made in one batch in %.0f ms\n", sites, platform::PreferencesKeyCount(kSettingsDomain),
         made);
  std::vector<double> first, again, save;
  int met = 0;
  for (int round = 0; round < kRounds; ++round) {
    platform::PreferencesClose();
    first.push_back(Milliseconds([&met] { met = Walk(); }));
    again.push_back(Milliseconds([] { Walk(); }));
    save.push_back(Milliseconds([] { LUserSettingSetString("Settings", "Current", "サイト 00001"); }));
    LUserSettingSetString("Settings", "Current", "");
  }
  Print("walk, the file just opened", first);
  Print("walk again", again);
  Print("one durable save", save);
  printf("the walk met %d sites\n", met);
  return met == sites ? 0 : 1;
}
