// What a user may type for a server: the address with or without a scheme, a port and a path, and what of it is kept.
// Texts in and out are fixed texts, cut like all of them. Any thread.
#pragma once

#include "support/text.h"

/// An example for prompts and messages.
constexpr const char* kExampleHost = "ftp.example.com";
/// What is said of a text that is no server.
constexpr const char* kServerIsWrong =
    "FTPサーバーを入力してください。ドメイン形式（例：ftp.example.com）またはIP形式（例：192.168.0.32.）で入力して"
    "ください。";

/// Digits, ASCII letters, "-", ".", ":", "_" and "~"; the colon so that a host with its port passes.
bool IsUnreservedURLChar(char c);

/// Fills four parts from what stands between the dots and writes them back with three dots between them. False, with
/// the text unchanged, if a part that begins with a digit is no number below 256. Texts with fewer parts, and host
/// names that begin with a digit, pass and get further dots.
bool ScrubIpV4Address(char (&text)[kTextSize]);

/// Cuts the text to the host around its last dot, in lower case, or to an address. False if there is none; the text is
/// then trimmed at most.
bool ScrubIpOrHostName(char (&text)[kTextSize]);

/// Removes all up to the first "://", and all from the last ":".
void StripAddressOfProtocolAndPort(char (&text)[kTextSize]);

/// What the user typed as a server, and in the box beside it as a port.
struct TypedServer {
  char szAddress[kTextSize];  ///< Without scheme and port, as it goes back into its field.
  char szServer[kTextSize];   ///< Host, or host, colon, port; not yet scrubbed.
  char szPath[kTextSize];     ///< What stood behind the host, with its "/"; empty for none.
};
/// Takes an address apart. A port in the address is lost: the one in the box counts alone.
TypedServer ReadTypedServer(const char* address, const char* port);
