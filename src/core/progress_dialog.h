// The visible progress dialog: a long operation runs on the main thread inside its modal session.
//
// The dialog is the operation's LProcessInterface. The cancel button only sets a flag; the operation sees it at its
// next IsToStop or wait. Everything here belongs to the main thread; a dialog and its data live in one stack frame.
#pragma once

#include "core/process.h"
#include "support/window/dialog.h"

/// Pumps a modal session. `IsToStop` pumps once; the waits run the event loop.
class LMacProcessInterfaceModal : public LProcessInterface {
 public:
  explicit LMacProcessInterfaceModal(LMacWindow* window) : pSessionWindow(window) {}
  LMacProcessInterfaceModal(const LMacProcessInterfaceModal&) = delete;
  LMacProcessInterfaceModal& operator=(const LMacProcessInterfaceModal&) = delete;
  ~LMacProcessInterfaceModal() override;

  bool IsToStop() override;
  LProcessResult ProcessWait(unsigned int ms) override;
  LProcessResult ProcessWaitSignal(LSignalObjectRef signal, unsigned int ms) override;
  /// An empty group waits until the time has passed and gives 2.
  LProcessResult ProcessWaitSignalObjectGroup(LSignalObjectGroup& group, unsigned int ms) override;

  /// Begins the session and turns the main menu off. On a window that never came up the stop flag is set instead,
  /// so that the process stops at its first check.
  void ModalSessionBegin();
  void ModalSessionStop();

 protected:
  void SetStopFlag() { bStop = true; }

 private:
  LMacWindow* pSessionWindow;
  bool bHasSession = false;
  bool bStop = false;
};

class LProgressDialog : public LDialog, public LMacProcessInterfaceModal {
 public:
  explicit LProgressDialog(const char* caption) : LMacProcessInterfaceModal(this), szCaption(caption) {}
  ~LProgressDialog() override { CloseModalWindow(); }

  /// Runs MainFunction inside the session. False, with nothing run, if the parent window is not open.
  bool Open(LMacWindow* parent);
  /// Finds the parent and makes the window. A null `parent` stands for the innermost modal window, if any.
  bool _Open(LMacWindow* parent, bool extended);
  void OpenModalWindow();
  void CloseModalWindow();

  /// The cancel button and every other path that closes the dialog end here.
  void Close() override;
  void Close(int code) override;
  virtual bool MainFunction() { return false; }

  // LProcessInterface
  void SetError(const char* text) override;
  void SetStatus(const char* text, int level) override;
  void SetProgress(double fraction) override;
  void SetProgressIndeterminateOn() override;
  void SetProgressIndeterminateOff() override;

  void Command(int id, intptr_t data) override;

 private:
  bool CreateProgressDialog();

  const char* szCaption;  ///< Not owned; outlives the dialog.
  LMacWindow* pParent = nullptr;
  bool bExtended = false;
};

/// Runs `Process(LProcessInterface&, T&)` as its main function. The result starts as failed, so that a process that
/// never ran counts so. Specialise RunProcess for a T whose operation has another name.
template <typename T>
LProcessResult RunProcess(LProcessInterface& process, T& data) {
  return Process(process, data);
}

template <typename T>
class LProcessDialog : public LProgressDialog {
 public:
  LProcessDialog(const char* caption, T& data) : LProgressDialog(caption), pData(&data) {}
  bool MainFunction() override {
    result = RunProcess(static_cast<LProcessInterface&>(*this), *pData);
    return true;
  }
  LProcessResult result = LProcessResultFailed;

 private:
  T* pData;
};

/// A dialog without a main function: the caller opens it, uses it as its interface while working inline, and closes it.
class LProcessDialogRunInterface : public LProgressDialog {
 public:
  using LProgressDialog::LProgressDialog;
};

/// Runs the process of `data` in a dialog of that caption on `parent`.
template <typename T>
LProcessResult ProcessRunAsDialog(LMacWindow* parent, const char* caption, T& data) {
  LProcessDialog<T> dialog(caption, data);
  dialog.Open(parent);
  return dialog.result;
}
