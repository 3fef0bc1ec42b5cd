// Texts that must not stand readable in the preference file: Blowfish and Base64 under a key that is the same
// on all installations. It hides, and does not protect against anyone who has this program. Any thread.
//
// The passwords of sites do not go this way: they are plain text in the user's private file.
#pragma once

#include "support/strings.h"
#include "support/text.h"

/// Plain text to stored text. A null or empty text gives an empty one. The same text always gives the same.
void LSettingEncrypt(LStringLongTemplate<char>& out, const char* text);
/// Stored text to plain text, in place. There is no check: what was not stored by LSettingEncrypt gives
/// garbage.
void LSettingDecrypt(char (&buffer)[kTextSize]);
