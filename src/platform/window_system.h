// Windows, controls, menus and alerts of the machine, addressed by small integer ids. Main thread only.
//
// The contract that logic sees is support/window; this is what that contract needs of the window system. A window
// keeps the map from id to native control; nothing above ever holds a control. Coordinates are device-independent
// pixels inside the window's client area. A text that a function fills is cut at a whole character.
// An id that the window does not have is ignored, and reads as empty, false or -1.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "platform/text_service.h"

namespace platform {

struct Window;
/// A number in the table of loaded icons; 0 is no icon.
using Icon = int;

struct Rect {
  int x, y, width, height;
};

/// What a key press was, in the terms of the key tables.
struct KeyPress {
  int code;  ///< Unicode code point in upper case, or a value of Key.
  bool shift, control, alt;
};
enum Key : int {
  kKeyReturn = 13,
  kKeyDelete = 0x110007,
  kKeyBackspace = 8,
  kKeyLeft = 0x110012,
  kKeyUp,
  kKeyRight,
  kKeyDown,
  kKeyF1 = 0x110030,
  kKeyF2
};

/// What a native window tells its owner. The owner outlives the window.
class WindowEvents {
 public:
  virtual ~WindowEvents() = default;
  /// A control was used, a menu item chosen, or a bound event happened.
  virtual void OnCommand(int id, intptr_t data) = 0;
  virtual void OnResized() = 0;
  /// The close box, Escape or the window manager.
  virtual void OnCloseRequested() = 0;
  virtual void OnShownOrHidden(bool /*shown*/) {}
  virtual void OnActivated(bool /*active*/) {}
  /// A menu of the menu bar is about to open.
  virtual void OnMenuOpening() {}
  /// True when the key was a command and is swallowed.
  virtual bool OnKey(const KeyPress&) { return false; }
  /// The order of two rows of a list by its sort column: positive if `first` belongs behind `second`.
  virtual int OnCompareRows(int /*list*/, const char* /*first*/, const char* /*second*/, intptr_t /*firstData*/,
                            intptr_t /*secondData*/, int /*column*/, bool /*ascending*/) {
    return 0;
  }
  virtual void OnSortRequested(int /*list*/) {}
  virtual void OnLabelEditBegin(int /*list*/, int /*row*/) {}
  virtual void OnLabelEditFinish(int /*list*/, int /*row*/, const char* /*text*/) {}
  /// A divider was dragged so that its top would stand at `position`.
  virtual void OnDividerMoved(int /*id*/, int /*position*/) {}
  /// Whether files may be dropped now; asked at each step of a drag, and not while a call to the owner is on the stack.
  virtual bool OnDropOffered() { return false; }
  /// Files of this machine were dropped on the window. The paths are good for the call.
  virtual void OnDropFiles(const char* const* /*paths*/, size_t /*count*/) {}
  // Files are dragged over a list that takes drops; a point as for ListHitTest. `effect` is what a drop would do, 0
  // nothing and 1 a copy, and may be changed.
  virtual void OnListDragEnter(int /*list*/, unsigned int& /*effect*/) {}
  virtual void OnListDragOver(int /*list*/, int /*x*/, int /*y*/, unsigned int& /*effect*/) {}
  virtual void OnListDragLeave(int /*list*/) {}
  /// In place of OnListDragLeave.
  virtual void OnListDrop(int /*list*/, int /*x*/, int /*y*/, unsigned int& /*effect*/, const char* const* /*paths*/,
                          size_t /*count*/) {}
  /// The user begins to drag the selected rows of a list out. False if they are not to be dragged.
  virtual bool OnListDragBegin(int /*list*/) { return false; }
  /// Calls `add` with the path of each file that stands for a dragged row. With `fetch` the files are brought there
  /// first; false if they did not all come.
  virtual bool OnListDragNeedsFiles(int /*list*/, bool /*fetch*/, const std::function<void(const char*)>& /*add*/) {
    return false;
  }
  /// After OnListDragBegin in any case.
  virtual void OnListDragFinished(int /*list*/) {}
};

// Windows

enum class WindowKind {
  kMain,
  kDialog,     ///< Of a fixed size.
  kResizable,  ///< A dialog that the user may resize.
  kProgress,
  kPage,  ///< Stands behind the tabs of its parent; no window of its own on the screen.
};

/// A hidden window. `parent` may be null; a child window stays above it. The caller owns it.
Window* WindowCreate(WindowEvents& events, WindowKind kind, Window* parent);
void WindowDestroy(Window* window);
void WindowShow(Window* window, bool show);
bool WindowIsVisible(const Window* window);
void WindowRaise(Window* window);
void WindowSetTitle(Window* window, const char* title);
void WindowSetClientSize(Window* window, int width, int height);
void WindowSetMinimumClientSize(Window* window, int width, int height);
void WindowGetClientSize(const Window* window, int& width, int& height);
Rect WindowGetFrame(const Window* window);
/// Kept within the screen.
void WindowSetFrame(Window* window, const Rect& frame);
bool WindowIsMaximized(const Window* window);
void WindowMaximize(Window* window, bool maximize);
void WindowMinimize(Window* window);
bool WindowIsMinimized(const Window* window);
/// Centres on `other`, or on the screen when it is null.
void WindowCenter(Window* window, const Window* other);
/// The size of a dialog unit in pixels, from the window's font.
void WindowDialogUnits(const Window* window, double& horizontal, double& vertical);
/// The order in which the Tab key goes through these controls, a tool bar standing for its buttons.
void WindowSetTabOrder(Window* window, const int* ids, size_t count);
double WindowScaleFactor(const Window* window);
/// From now on files may be dropped on the window, wherever no control takes them: WindowEvents::OnDropFiles. Nothing
/// is taken while a modal window is up, nor what is dragged out of a list of our own.
void WindowTakeDrops(Window* window);

/// A modal run: shows the window and handles events until WindowEndModal; gives its code. Runs may nest.
int WindowRunModal(Window* window);
void WindowEndModal(Window* window, int code);
/// A modal session for code that works on the stack: all other windows are off until it ends; events are handled
/// by EventLoopPump. Sessions may nest.
void WindowBeginSession(Window* window);
void WindowEndSession(Window* window);
/// The window of the innermost modal run or session, or null.
WindowEvents* WindowTopModal();

// Controls

enum class ControlKind {
  kStatic,
  kInput,
  kPassword,
  kCheckBox,
  kRadioButton,
  kButton,
  kDefaultButton,
  kIconButton,
  kIconTextButton,
  kComboBox,
  kPullDownList,
  kList,
  kProgressBar,
  kIcon,
  kGroup,
  kLine,
  kLog,
  kTabs,
  kToolBar,
  kDivider,
};

/// Makes a control and shows it. Radio buttons exclude each other up to the next group that is made. `text` is its
/// label, or its accessible name where it shows none; it may be null.
void ControlCreate(Window* window, int id, ControlKind kind, const char* text, const Rect& place);
bool ControlExists(const Window* window, int id);
void ControlMove(Window* window, int id, const Rect& place);
Rect ControlGetPlace(const Window* window, int id);
void ControlEnable(Window* window, int id, bool enable);
bool ControlIsEnabled(const Window* window, int id);
void ControlShow(Window* window, int id, bool show);
bool ControlIsShown(const Window* window, int id);
void ControlFocus(Window* window, int id);
void ControlSetText(Window* window, int id, const char* text);
void ControlGetText(const Window* window, int id, char (&text)[kFixedText]);
void ControlSetTextLimit(Window* window, int id, int characters);
/// The grey text of an empty field or list.
void ControlSetPrompt(Window* window, int id, const char* text);
void ControlSetToolTip(Window* window, int id, const char* text);
/// What a screen reader calls it, where the text it shows stands on another control too.
void ControlSetName(Window* window, int id, const char* name);
void ControlSetIcon(Window* window, int id, Icon icon, int size);
void ControlSetCheck(Window* window, int id, bool check);
bool ControlGetCheck(const Window* window, int id);
/// 0.0 to 1.0; a negative value runs without a value.
void ControlSetProgress(Window* window, int id, double fraction);
/// A short message at the control, gone at the next input.
void ControlBubbleTip(Window* window, int id, const char* text);
/// Colours 0xRRGGBB of a log control; the whole text has one colour.
void ControlSetColors(Window* window, int id, unsigned text, unsigned background);
/// Replaces the text of a log control, which shows it and scrolls to its end in a later turn of the loop.
void LogSetText(Window* window, int id, const char* text);

enum class ControlEvent {
  kClick,
  kDoubleClick,
  kRightClick,
  kHeaderRightClick,
  kSelectionChange,
  kFocusLost,
  kTextEdited,
  kReturn
};
/// From now on the event reaches the owner as OnCommand(command). A button's click arrives as its own id unbound.
void ControlBindEvent(Window* window, int id, ControlEvent event, int command);

// Combo boxes and pull-down lists; rows from 0, -1 for none

void ComboInsert(Window* window, int id, int row, const char* text);
void ComboDelete(Window* window, int id, int row);
void ComboClear(Window* window, int id);
int ComboCount(const Window* window, int id);
int ComboFind(const Window* window, int id, const char* text);
void ComboGetRow(const Window* window, int id, int row, char (&text)[kFixedText]);
void ComboSelect(Window* window, int id, int row);
int ComboSelected(const Window* window, int id);

// Tabs; pages from 0, -1 for none

/// Puts `page`, a window of kind kPage made with `window` as its parent, behind the tabs as the last one. Its owner
/// keeps it, and gives it back before `window`.
void TabsAddPage(Window* window, int id, Window* page, const char* title);
int TabsSelected(const Window* window, int id);
/// The change arrives as kSelectionChange, like the user's.
void TabsSelect(Window* window, int id, int page);
/// What the tabs and their frame take beside the page.
void TabsFrameSize(const Window* window, int id, int& width, int& height);

// Lists; rows from 0, -1 for none

struct ListColumn {
  const char* heading;
  int width;      ///< Relative.
  int alignment;  ///< 0 left, 1 centre, 2 right.
};
void ListSetColumns(Window* window, int id, const ListColumn* columns, size_t count);
int ListAddRow(Window* window, int id, const char* text, Icon icon, intptr_t data);
void ListSetCell(Window* window, int id, int row, int column, const char* text);
void ListGetCell(const Window* window, int id, int row, int column, char (&text)[kFixedText]);
intptr_t ListGetData(const Window* window, int id, int row);
int ListCount(const Window* window, int id);
void ListClear(Window* window, int id);
/// Holds back drawing while many rows are added; calls nest.
void ListHoldDrawing(Window* window, int id, bool hold);
int ListCurrent(const Window* window, int id);
/// Makes `row` current and alone selected; -1 clears both.
void ListSetCurrent(Window* window, int id, int row);
bool ListIsSelected(const Window* window, int id, int row);
void ListSelect(Window* window, int id, int row, bool select);
void ListSelectAll(Window* window, int id, bool select);
int ListSelectedCount(const Window* window, int id);
/// Fills at most `room` selected rows in ascending order; returns how many are selected.
size_t ListSelectedRows(const Window* window, int id, int* rows, size_t room);
void ListEnsureVisible(Window* window, int id, int row);
/// The row at a point of the list's rows, in pixels from their upper left corner.
int ListHitTest(const Window* window, int id, int x, int y);
/// Marks the gap between two rows that is nearest to `y`, for as long as something is dragged there; -1 removes the
/// mark.
void ListSetInsertBar(Window* window, int id, int y);
/// From now on the list has the steps of a drag of files over its rows: WindowEvents::OnListDragEnter and so on.
void ListTakeDrops(Window* window, int id);
/// From now on the selected rows can be dragged out, as files that are fetched when they leave the list.
void ListDragOut(Window* window, int id);
/// Lets the user edit the name in a row: WindowEvents::OnLabelEditBegin, and OnLabelEditFinish unless it is given up.
void ListEditLabel(Window* window, int id, int row);
/// Takes a name that is being edited as it stands; the owner hears of it before this returns. What the user chooses by
/// the pointer does so by itself, a key that means a command does not.
void WindowFinishEditing(Window* window);
void ListSetColumnEditable(Window* window, int id, int column, bool editable);
void ListShowColumn(Window* window, int id, int column, bool show);
bool ListIsColumnShown(const Window* window, int id, int column);
void ListSetSort(Window* window, int id, int column, bool ascending);
int ListSortColumn(const Window* window, int id);
bool ListSortAscending(const Window* window, int id);
/// Sorts the rows with WindowEvents::OnCompareRows; rows that compare equal keep their order.
void ListSort(Window* window, int id);

// Menus

/// A row of a menu: id > 0 an item; id -1 with a text opens a submenu, id -1 without ends it; 0 is a separator.
struct MenuItem {
  int id;
  const char* text;
  const char* shortcut;  ///< As "Ctrl+R"; null for none. Only shown: keys arrive through OnKey.
};
void MenuBarSet(Window* window, const MenuItem* items, size_t count);
void MenuItemEnable(Window* window, int id, bool enable);
bool MenuItemIsEnabled(const Window* window, int id);
void MenuItemCheck(Window* window, int id, bool check);
void MenuItemSetText(Window* window, int id, const char* text);
/// All items of the bar off or back to their own state.
void MenuBarEnable(Window* window, bool enable);
struct PopupItem {
  int id;  ///< 0 is a separator.
  const char* text;
  const char* shortcut;  ///< As in MenuItem.
  bool enabled, checked, isDefault;
};
/// Replaces all that stands in the submenu of that title.
void MenuSubmenuFill(Window* window, const char* title, const PopupItem* items, size_t count);
/// Shows a context menu at the pointer, at the current row of a list whose menu key was pressed, or under the control,
/// or button of the main tool bar, whose id `atControl` is. The chosen item arrives as OnCommand after this has
/// returned.
void PopupMenuRun(Window* window, const PopupItem* items, size_t count, int atControl);

// Bars

struct ToolBarItem {
  int command;  ///< 0 is a separator.
  int icon;     ///< Resource number.
  const char* label;
  const char* toolTip;
  int dropDown;  ///< Command of the arrow beside it; 0 for none.
};
/// Control id of the main tool bar; those inside the window are controls of kind kToolBar.
constexpr int kMainToolBar = -2;
void ToolBarSet(Window* window, int id, const ToolBarItem* items, size_t count);
void ToolBarEnableItem(Window* window, int id, int command, bool enable);
void ToolBarShow(Window* window, int id, bool show);
int ToolBarHeight(const Window* window, int id);

void StatusBarSet(Window* window, int count, const int* widths);
void StatusBarSetText(Window* window, int part, const char* text);
void StatusBarSetIcon(Window* window, int part, Icon icon);
int StatusBarHeight(const Window* window);

// Alerts

struct Alert {
  const char* title;
  const char* message;
  const char* buttons[3];  ///< First to third; an empty or null text is no button.
  bool isError;
  const char* checkBox;  ///< Null for none.
  bool checked;          ///< In and out.
};
/// 1, 2 or 3 by the button's place; anything unknown is 2.
int AlertRun(Window* parent, Alert& alert);
bool AlertIsOpen();
/// Closes what stands above all windows, a context menu or the top alert, as its own cancel would. False if there is
/// neither.
bool AlertDismiss();
/// The machine's panel for choosing a folder, modal. `path` is where it starts, and the choice. False when cancelled.
bool FolderChoose(Window* parent, const char* title, char (&path)[kFixedText]);

// Icons and the pointer

Icon IconFromResource(int number);
/// The desktop's icon for a file of that name.
Icon IconForFileName(const char* name);
void CursorSetWaiting(bool waiting);

}  // namespace platform
