#include "ftp/line_pieces.h"

namespace {

bool EndsPiece(char byte) { return byte == '\n' || byte == '\r' || byte == 0; }

}  // namespace

bool FtpLinePieces::Next(char (&piece)[kTextSize]) {
  piece[0] = 0;
  if (pNext == pEnd) return false;
  const char* start = pNext;
  while (pNext != pEnd && !EndsPiece(*pNext)) ++pNext;
  TextCopyPart(piece, start, static_cast<size_t>(pNext - start));
  if (pNext == pEnd) return true;
  const char first = *pNext++;
  const bool paired = pNext != pEnd && ((first == '\r' && *pNext == '\n') || (first == '\n' && *pNext == '\r'));
  if (paired) ++pNext;
  return true;
}
