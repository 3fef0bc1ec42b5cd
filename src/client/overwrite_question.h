// The question whether a file that is there already may be replaced, with a check box for one answer to all.
#pragma once

class LFtpList;

/// Puts the question; the answer is in the pane's bOverwriteYes and bOverwriteForAll. `format` holds one %s for `name`.
void AskToOverwrite(LFtpList& pane, const char* format, const char* name) __attribute__((format(printf, 2, 0)));
