// Property sheets: a dialog whose pages stand behind tabs, above one row of buttons. Main thread only.
#pragma once

#include "support/window/dialog.h"

class LPropertySheet;

/// A page. Its controls are its own, by ids as in any dialog; boxes and dialogs that it opens belong on its sheet.
class LPropertyPage : public LDialog {
 public:
  /// The page has come to the front; another has taken its place.
  virtual void Activate() {}
  virtual void Deactivate() {}
  /// After CmOk has refused: the page whose control is to blame.
  virtual LPropertyPage* PageAtFault() { return this; }

  /// Makes the page from its generator, without buttons. False if the sheet has no window.
  bool CreatePage(LPropertySheet& sheet, const LDialogGenData& data);
  /// Nothing happens while the page is not in a sheet.
  void BringPageToFront();
  /// Null before the page is made.
  LPropertySheet* Sheet() const { return pSheet; }

 private:
  LPropertySheet* pSheet = nullptr;
};

class LPropertySheet : public LDialog {
 public:
  static constexpr int kTabs = 1;  ///< The control of the tabs.
  static constexpr size_t kMaxPages = 8;

  /// A page of the description's size; a null title stands for the description's. The page outlives the run.
  void AddPage(LPropertyPage& page, const LDialogGenData& data, const char* title);
  /// Runs the sheet modally with that page in front. True for OK, when every page has agreed.
  bool Open(LMacWindow* parent, const char* title, int startPage, const char* okText);

  void InitDialog() override;
  void EvWindowReady() override;
  void DestroyDialog() override;
  void EnableControls() override;
  void Command(int id, intptr_t data) override;
  /// Asks each page; the first that refuses brings the page at fault to the front, and the sheet stays open.
  bool CmOk() override;
  /// The help of the page in front.
  void CmHelp() override;

  void Select(const LPropertyPage& page);
  /// Gives the sheet the room that the page needs; it keeps what it has for a larger one.
  void ResizeAndRelayout(const LPropertyPage& page);

 private:
  static constexpr int kPageChosen = 2;
  struct Entry {
    LPropertyPage* page;
    LDialogGenData data;
    const char* title;
  };
  bool CreatePages(const char* okText);
  void EvPageChosen();
  LPropertyPage* Front() const;

  Entry entries[kMaxPages] = {};
  size_t uCount = 0;
  int iPageWidth = 0;  ///< Of the largest page, in pixels.
  int iPageHeight = 0;
  LPropertyPage* pFront = nullptr;  ///< The page that was told to be in front.
};
