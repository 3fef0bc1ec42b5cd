#include "client/overwrite_question.h"

#include "client/remote_pane.h"
#include "support/window/alert.h"

void AskToOverwrite(LFtpList& pane, const char* format, const char* name) {
  LAlert alert(pane.Window());
  alert.strMessage.sprintf(format, name);
  TextCopy(alert.szTitle, "上書きする");
  TextCopy(alert.szButton1, "上書きする");
  TextCopy(alert.szButton2, "スキップ");
  TextCopy(alert.szCheckBox, "全てに適用する");
  alert.bShowCheckBox = true;
  alert.bChecked = pane.bOverwriteForAll;
  pane.bOverwriteYes = alert._Run() == 1;
  pane.bOverwriteForAll = alert.bChecked;
}
