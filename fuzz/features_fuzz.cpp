// Feature lists: the lines that a server sends decide over the capabilities, and over nothing else.
#include "ftp/queries.h"
#include "fuzz_target.h"
#include "input.h"
#include "wire_input.h"

ORVANE_FUZZ_TARGET(features) {
  constexpr size_t kMostBytes = 16384;
  using Session = LFileTransferProtocol;
  FuzzInput input(data, size);
  const std::string lines = input.Rest().substr(0, kMostBytes);
  FuzzSession session("211-Features\r\n" + lines + "\r\n211 End\r\n");
  LProcessInterfaceVoid process;
  FUZZ_CHECK(ProcessFtpCheckFeatures(process, session) == LProcessResultOk);
  FUZZ_CHECK(session.Has(Session::bFeaturesKnown));
  const struct {
    Session::Capability bit;
    const char* word;
  } words[] = {{Session::bHasSize, "SIZE"},   {Session::bHasMdtm, "MDTM"},  {Session::bHasMfmt, "MFMT"},
               {Session::bHasMlsd, "MLSD"},   {Session::bHasUtf8, "UTF8"},  {Session::bMlstModify, "modify*"},
               {Session::bMlstSize, "size*"}, {Session::bMlstType, "type*"}};
  for (const auto& [bit, word] : words) {
    FUZZ_CHECK(!session.Has(bit) || lines.find(word) != std::string::npos);
  }
  const uint32_t asked = Session::bMlstTypeFailed | Session::bMlsdFailed | Session::bSystKnown |
                         Session::bSystWindowsNT | Session::bSystUnixL8;
  FUZZ_CHECK((session.uCapabilities & asked) == 0);
}
