// What a transfer does when the machine has gone to sleep under it.
#pragma once

#include "core/process.h"
#include "ftp/protocol.h"

/// Tells whether the machine has gone to sleep since this was made, also when it is awake again by the time somebody
/// looks: the transfer under way was cut all the same. Main thread.
class StandByWatch {
 public:
  StandByWatch();
  bool HasBeen() const;

 private:
  const unsigned uBefore;
};

/// Closes the session, lets events run until the machine is awake, logs on again from the saved logon (up to eleven
/// times) and enters the saved directory. A result other than 0 is that of the last logon, or of the change of
/// directory.
[[nodiscard]] LProcessResult ProcessStandBy(LProcessInterface&, LFileTransferProtocol&);

/// Whether the machine is going to sleep; if so, an alert says that the collecting ends. "アップロード" or
/// "ダウンロード" stand in the texts.
bool StandByEndsCollecting(const char* text, const char* title);
