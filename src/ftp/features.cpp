// FEAT: which rungs a server has.
#include <cstring>

#include "ftp/queries.h"

namespace {

using Session = LFileTransferProtocol;

struct Feature {
  const char* word;
  const char* fact;  ///< Must stand in the same line; null for none.
  Session::Capability bit;
};

/// Independent of one another: each is looked for in each line, case-sensitive. A server whose MLST marks no
/// fact with a star has no use for it.
constexpr Feature kFeatures[] = {
    {"SIZE", nullptr, Session::bHasSize},  {"MDTM", nullptr, Session::bHasMdtm},
    {"MFMT", nullptr, Session::bHasMfmt},  {"MLST", "modify*", Session::bMlstModify},
    {"MLST", "size*", Session::bMlstSize}, {"MLST", "type*", Session::bMlstType},
    {"MLSD", nullptr, Session::bHasMlsd},  {"UTF8", nullptr, Session::bHasUtf8},
};

}  // namespace

LProcessResult ProcessFtpCheckFeatures(LProcessInterface& process, LFileTransferProtocol& session) {
  if (session.Has(Session::bFeaturesKnown)) return LProcessResultOk;
  LStringListTemplate<char> lines;
  if (ProcessFtpSendAndWaitForReply(process, session, "FEAT\r\n", lines) != LProcessResultOk) {
    session.Set(Session::bHasSize);
    return LProcessResultOk;
  }
  session.Set(Session::bFeaturesKnown);
  for (size_t i = 0; i < lines.count; ++i) {
    for (const Feature& feature : kFeatures) {
      const char* line = lines.strings[i];
      if (strstr(line, feature.word) && (!feature.fact || strstr(line, feature.fact))) session.Set(feature.bit);
    }
  }
  return LProcessResultOk;
}
