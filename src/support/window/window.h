// The contract of windows and controls: all application logic reaches the screen through it.
//
// A window holds controls addressed by small integer ids; commands arrive as integer ids through one virtual
// call. Logic never holds a control. Main thread only.
#pragma once

#include <cstdint>

#include "platform/window_system.h"
#include "support/text.h"
#include "support/window/icons.h"

struct LVColDynamicGlobal;

// The standard commands, four letters as a number.
constexpr int kCommandOk = 0x6F6B2020;        ///< "ok  "
constexpr int kCommandCancel = 0x6E6F7421;    ///< "not!"
constexpr int kCommandShowHelp = 0x61686C70;  ///< "ahlp"

/// What every window answers to. Each operation has an empty or default body.
class LWindow {
 public:
  virtual ~LWindow() = default;
  virtual void InitDialog() {}
  virtual void EvWindowReady() {}
  virtual void DestroyDialog() {}
  /// True closes with OK, false stays open.
  virtual bool CmOk() { return true; }
  virtual bool CmCancel() { return true; }
  virtual void EnableControls() {}
  virtual void Close(int code) = 0;
  virtual void Close() { Close(kCommandCancel); }
  virtual void OnWindowHandleSet() {}
  /// Maps an id to what it does; unknown ids go to the base.
  virtual void Command(int id, intptr_t data);
  virtual void CmHelp() {}
  virtual void EvShow() {}
  virtual void EvHide() {}
  virtual void EvActivate() {}
  virtual void EvDeactivate() {}
};

/// The concrete window. Owns its native window; without one every operation does nothing. A public base, for
/// a window that the platform names is cast back to its class, and such a cast finds nothing through a
/// protected one.
class LMacWindow : public LWindow, public platform::WindowEvents {
 public:
  LMacWindow() = default;
  LMacWindow(const LMacWindow&) = delete;
  LMacWindow& operator=(const LMacWindow&) = delete;
  ~LMacWindow() override;

  /// Makes the hidden native window. `parent` may be null.
  bool Create(platform::WindowKind kind, LMacWindow* parent, const char* title);
  /// Calls DestroyDialog and gives the native window back.
  void DestroyCommon();
  bool IsWindowValid() const { return pNative != nullptr; }
  /// The view that the window hands to alerts and dialogs.
  LMacWindow* View() { return this; }
  platform::Window* Native() const { return pNative; }

  /// Modal; true only for the OK code. A window that could not be made counts as cancelled. The main menu is
  /// off meanwhile.
  bool RunModal(LMacWindow* parent, int centerMode);
  using LWindow::Close;
  void Close(int code) override;
  void Command(int id, intptr_t data) override;

  // The window
  void SetCaption(const char* title);
  void ShowWindow(bool show);
  bool IsWindowVisible() const;
  bool IsMinimized() const { return pNative && platform::WindowIsMinimized(pNative); }
  void BringToFront();
  /// So long the windows draw themselves, and nothing else happens: the caller is between two steps of a command.
  void Wait(unsigned milliseconds);
  /// Centre mode 2: on the parent, or on the screen when there is none.
  void CenterDialog(LMacWindow* parent);
  void SetClientSize(int width, int height);
  void GetClientSize(int& width, int& height) const;
  double GetBackingScaleFactor() const;
  double HorizontalUnit() const;
  double VerticalUnit() const;
  /// Dialog units to pixels, rounded to nearest.
  int UnitsToPixelsX(double units) const;
  int UnitsToPixelsY(double units) const;
  /// Size, position and zoom state under the section `key`; the defaults are in dialog units.
  void WindowSizeSettingsStore(const char* key);
  void WindowSizeSettingsRestore(const char* key, int defaultWidth, int defaultHeight);

  // Adding controls: position and size in pixels of the client area
  void AddStatic(int id, const char* text, int x, int y, int width, int height);
  void AddInput(int id, const char* name, int x, int y, int width, int height);
  void AddPasswordInput(int id, const char* name, int x, int y, int width, int height);
  void AddButton(int id, const char* text, int x, int y, int width, int height);
  void AddOk(const char* text, int x, int y, int width, int height);
  void AddCancel(const char* text, int x, int y, int width, int height);
  void AddHelp(const char* text, int x, int y, int width, int height);
  void AddCheckBox(int id, const char* text, int x, int y, int width, int height);
  /// A frame with a title, to be added before what stands in it. Radio buttons exclude each other up to the next one.
  void AddGroup(int id, const char* text, int x, int y, int width, int height);
  /// Its id arrives as a command when the user chooses it.
  void AddRadioButton(int id, const char* text, int x, int y, int width, int height);
  /// A list of which one row shows; nothing can be typed.
  void AddPullDownList(int id, const char* name, int x, int y, int width, int height);
  void AddHLine(int id, int x, int y, int width);
  /// The name is for a screen reader.
  void AddIcon(int id, int resource, int size, const char* name = nullptr);
  void AddComboBoxExtend(int id, const char* name);
  void AddCoolButtonIconOnly(int id, const char* name, int image, int iconSize);
  void AddCoolButtonIconText(int id, const char* text, int image);
  void AddCoolButtonTextOnly(int id, const char* text);
  void AddList(int id, const char* name);
  void AddTools(int id, const char* name);
  void AddStatusWindow(int id, const char* name);
  void AddPaintControl(int id, const char* name);
  void AddProgressBar(int id, const char* name, int x, int y, int width, int height);

  // Any control
  void EnableControl(int id, bool enable);
  void ShowControl(int id, bool show);
  void SetFocus(int id);
  void MoveControlPixels(int id, int x, int y, int width, int height);
  void SetToolTip(int id, const char* text);
  /// What a screen reader calls the control, where its text stands on another one of the window too.
  void SetAccessibleName(int id, const char* name);
  /// The order in which the Tab key goes through these controls; a tool bar stands for its buttons.
  void SetTabOrder(const int* ids, size_t count);
  void SetIconIcon(int id, const LGuiIcon& icon, int size);
  void BubbleTipShow(int id, const char* text);

  // Texts
  void GetText(int id, char (&text)[kTextSize]) const;
  /// Without white space at both ends.
  void GetTextAndTrim(int id, char (&text)[kTextSize]) const;
  void SetText(int id, const char* text);
  void SetStaticText(int id, const char* text) { SetText(id, text); }
  void SetButtonText(int id, const char* text) { SetText(id, text); }
  void SetTextLimit(int id, int characters);
  void EditPromptSet(int id, const char* text);
  void GetEditText(int id, char (&text)[kTextSize]) const { GetText(id, text); }
  void GetPasswordText(int id, char (&text)[kTextSize]) const { GetText(id, text); }
  void GetPasswordTextAndTrim(int id, char (&text)[kTextSize]) const { GetTextAndTrim(id, text); }
  void SetPasswordText(int id, const char* text) { SetText(id, text); }
  bool GetCheck(int id) const;
  void SetCheck(int id, bool check);
  bool GetRadioCheck(int id) const { return GetCheck(id); }
  /// The others of its group go off.
  void SetRadioCheck(int id) { SetCheck(id, true); }

  // Combo boxes; rows from 0, -1 when absent
  void CBAddString(int id, const char* text);
  void CBInsertString(int id, int row, const char* text);
  void CBDeleteItem(int id, int row);
  void CBClear(int id);
  int CBFindString(int id, const char* text) const;
  int CBGetCount(int id) const;
  void CBGetText(int id, char (&text)[kTextSize]) const { GetText(id, text); }
  void CBSetText(int id, const char* text) { SetText(id, text); }
  void CBSetCurSel(int id, int row);
  void CBPromptSet(int id, const char* text);

  // Pull-down lists; rows from 0, -1 while none is chosen
  void PDLAddString(int id, const char* text);
  int PDLGetCurSel(int id) const;
  void PDLSetCurSel(int id, int row);

  // Progress bars
  void PBSetProgress(int id, double fraction);
  void PBSetProgressIndeterminateOn(int id);
  void PBSetProgressIndeterminateOff(int id);

  // Events into commands
  void HandleCBSelChange(int id, int command);
  void HandleCBReturn(int id, int command);
  void HandleCBEdited(int id, int command);
  void HandlePDLSelChange(int id, int command);
  /// The user went on to another control; a box or menu that opens above the window does not count.
  void HandleEditTextFocusLost(int id, int command);
  void HandleLVClick(int id, int command);
  void HandleLVDoubleClick(int id, int command);
  void HandleLVRightClick(int id, int command);
  void HandleLVSelChange(int id, int command);
  void HandleLVFocusLost(int id, int command);
  void HandleLVHeaderRightClick(int id, int command);
  /// The machine's sleep, and its return. One window at a time, until it is destroyed.
  void HandlePowerSuspendStandBy(int command);
  void HandlePowerResume(int command);
  /// Keep the machine from idle sleep during a transfer, and release that. Calls nest.
  void SetPowerDownDeny();
  void SetPowerDownAllow();

  // List views; rows from 0, -1 for none
  void LVInit(int id, const LVColDynamicGlobal* columns);
  /// Adds a row with the text in column 0, an image of the list's image list (-1: none) and a data word.
  int LVAddString(int id, const char* text, int image, intptr_t data);
  void LVSetColumnString(int id, int row, int column, const char* text);
  void LVGetColumnString(int id, int row, int column, char (&text)[kTextSize]) const;
  void LVGetString(int id, int row, char (&text)[kTextSize]) const { LVGetColumnString(id, row, 0, text); }
  intptr_t LVGetItemData(int id, int row) const;
  int LVGetCount(int id) const;
  void LVClear(int id);
  void LVHoldDrawing(int id, bool hold);
  int LVGetCurSel(int id) const;
  /// Clears all others.
  void LVSetCurSel(int id, int row);
  bool LVGetSel(int id, int row) const;
  void LVSetSel(int id, int row, bool select);
  int LVGetSelCount(int id) const;
  void LVSelectAll(int id);
  void LVSelectNone(int id);
  int LVFindString(int id, const char* text) const { return LVFindColumnString(id, 0, text); }
  int LVFindColumnString(int id, int column, const char* text) const;
  /// The row at a point of the list, in pixels from the upper left corner of its rows; -1 if there is none.
  int LVHitTest(int id, int x, int y) const;
  /// Shows where a drop would go: the gap between rows that is nearest to `y`, in the same pixels.
  void LVDrawInsertBar(int id, int y);
  void LVClearInsertBar(int id);
  void LVEnsureVisible(int id, int row);
  void LVEditCurLabel(int id);
  void LVSetImages(int id, const LLVImageList* images);
  void LVSetStyleDefaultText(int id, const char* text);
  void LVShowColumn(int id, int column, bool show);
  bool LVIsColumnHidden(int id, int column) const;
  void LVSetColumnEditable(int id, int column, bool editable);

 protected:
  // platform::WindowEvents
  void OnCommand(int id, intptr_t data) override;
  void OnResized() override {}
  void OnCloseRequested() override;
  void OnShownOrHidden(bool shown) override;
  void OnActivated(bool active) override;
  int OnCompareRows(int list, const char* first, const char* second, intptr_t firstData, intptr_t secondData,
                    int column, bool ascending) override;
  void OnSortRequested(int list) override;
  void OnLabelEditBegin(int list, int row) override;
  void OnLabelEditFinish(int list, int row, const char* text) override;
  void OnDropFiles(const char* const* paths, size_t count) override;
  void OnListDragEnter(int list, unsigned int& effect) override;
  void OnListDragOver(int list, int x, int y, unsigned int& effect) override;
  void OnListDragLeave(int list) override;
  void OnListDrop(int list, int x, int y, unsigned int& effect, const char* const* paths, size_t count) override;
  bool OnListDragBegin(int list) override;
  bool OnListDragNeedsFiles(int list, bool fetch, const std::function<void(const char*)>& add) override;
  void OnListDragFinished(int list) override;

 private:
  friend class LDragDropHandler;
  friend class LListViewDragHandler;
  friend class LListViewDropTarget;
  friend class LListViewSorter;
  friend class LListViewLabelEditHandler;
  static constexpr int kMaxLists = 4;
  /// What the logic has attached to a list of this window.
  struct ListHooks {
    int id = 0;
    class LListViewSorter* sorter = nullptr;
    class LListViewLabelEditHandler* labels = nullptr;
    class LListViewDropTarget* drops = nullptr;
    class LListViewDragHandler* drags = nullptr;
    const LLVImageList* images = nullptr;
  };
  ListHooks& HooksOf(int list);
  ListHooks* FindHooks(int list);
  void HearPower();
  void Add(int id, platform::ControlKind kind, const char* text, int x, int y, int width, int height);

  platform::Window* pNative = nullptr;  ///< Owned; null before Create and after DestroyCommon.
  bool bRunningModal = false;
  int iSuspendCommand = 0;  ///< 0 for none; likewise the next.
  int iResumeCommand = 0;
  ListHooks hooks[kMaxLists];
  class LDragDropHandler* pDropHandler = nullptr;  ///< Not owned; null while drops are not taken.
};
