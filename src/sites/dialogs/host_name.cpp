#include "sites/dialogs/host_name.h"

#include <cstdlib>

#include "support/strings.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// Cuts `text` at its first "/", whose rest goes to `path`.
void CutPath(char (&text)[kTextSize], char (&path)[kTextSize]) {
  char* slash = strchr(text, '/');
  if (!slash) return;
  TextCopy(path, slash);
  LStringTrimWhiteSpace(path);
  *slash = 0;
}

}  // namespace

bool IsUnreservedURLChar(char c) {
  if (IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z')) return true;
  return c != 0 && strchr("-.:_~", c) != nullptr;
}

bool ScrubIpV4Address(char (&text)[kTextSize]) {
  constexpr int kParts = 4;
  constexpr long kFirstTooLarge = 256;
  char parts[kParts][kTextSize] = {};
  const char* rest = text;
  for (auto& part : parts) {
    // A piece without a digit in front only fills the part until the next piece comes.
    for (bool isNumber = false; rest && !isNumber;) {
      const char* dot = strchr(rest, '.');
      TextCopyPart(part, rest, dot ? static_cast<size_t>(dot - rest) : strlen(rest));
      rest = dot ? dot + 1 : nullptr;
      isNumber = IsDigit(part[0]);
      if (isNumber && strtol(part, nullptr, 10) >= kFirstTooLarge) return false;
    }
  }
  TextFormat(text, "%s.%s.%s.%s", parts[0], parts[1], parts[2], parts[3]);
  return true;
}

bool ScrubIpOrHostName(char (&text)[kTextSize]) {
  LStringTrimWhiteSpace(text);
  const char* lastDot = strrchr(text, '.');
  if (!lastDot || lastDot == text) return false;
  if (IsDigit(text[0]) && ScrubIpV4Address(text)) return true;

  char lower[kTextSize];
  TextCopy(lower, text);
  TextLowerAscii(lower);
  const auto dot = static_cast<size_t>(lastDot - text);
  size_t end = dot;
  while (IsUnreservedURLChar(lower[end])) ++end;
  size_t start = dot;
  while (start > 0 && IsUnreservedURLChar(lower[start - 1])) --start;
  if (start == dot || end == dot + 1) return false;
  TextCopyPart(text, lower + start, end - start);
  return true;
}

void StripAddressOfProtocolAndPort(char (&text)[kTextSize]) {
  if (const char* scheme = strstr(text, "://")) TextCopy(text, scheme + strlen("://"));
  if (char* colon = strrchr(text, ':')) *colon = 0;
}

TypedServer ReadTypedServer(const char* address, const char* port) {
  TypedServer typed = {};
  TextCopy(typed.szAddress, address);
  LStringTrimWhiteSpace(typed.szAddress);
  // A path behind a port goes with the port below, and is not to be lost.
  char whole[kTextSize];
  const char* scheme = strstr(typed.szAddress, "://");
  TextCopy(whole, scheme ? scheme + strlen("://") : typed.szAddress);
  CutPath(whole, typed.szPath);

  StripAddressOfProtocolAndPort(typed.szAddress);
  if (port[0]) {
    TextFormat(typed.szServer, "%s:%s", typed.szAddress, port);
  } else {
    TextCopy(typed.szServer, typed.szAddress);
  }
  // The port stands behind the path by now, and goes with it.
  CutPath(typed.szServer, typed.szPath);
  return typed;
}
