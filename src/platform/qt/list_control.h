// A list view: rows of UTF-8 cells in a model, shown by a tree view without a tree.
#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QList>
#include <QStyledItemDelegate>
#include <QTreeView>
#include <optional>
#include <utility>
#include <vector>

#include "platform/window_system.h"

namespace platform {

struct ListRow {
  std::vector<QByteArray> cells;
  Icon icon;
  intptr_t data;
};

/// Holds the bytes as they came; they become text only for the rows that are shown.
class ListModel : public QAbstractTableModel {
  Q_OBJECT
 public:
  using QAbstractTableModel::QAbstractTableModel;
  static constexpr int kBytesRole = Qt::UserRole;  ///< The cell as it came.
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

  void SetColumns(const ListColumn* source, size_t count);
  int AddRow(const char* text, Icon icon, intptr_t data);
  void SetCell(int row, int column, const char* text);
  const ListRow* RowAt(int row) const;
  void Clear();
  /// While held, rows are added without telling the view, which is told once at the end.
  void Hold(bool hold);
  /// Orders the rows; `behind(a, b)` is true if row `a` belongs behind row `b`. Stable. The windows go on drawing.
  template <typename Behind>
  void Sort(Behind behind);
  void ShowCount(int visibleRows) { shownRows = visibleRows; }
  bool dragsOut = false;  ///< Rows may be dragged.

  struct Column {
    QString heading;
    int width;
    int alignment;
    bool editable;
  };
  std::vector<Column> columns;
  std::vector<ListRow> rows;

 private:
  unsigned changes = 0;  ///< Goes up with each change of the rows.
  int holds = 0;
  int shownRows = 0;  ///< Rows that the view knows of while drawing is held back.
};

class ListControl : public QTreeView {
  Q_OBJECT
 public:
  ListControl(struct Window* window, int id);

  ListModel& Rows() { return *rowModel; }
  const ListModel& Rows() const { return *rowModel; }
  void SetPrompt(const QString& text);
  /// Shares the width out by the table, and gives to the columns whose cells would be cut what others, and at last the
  /// first one, can spare, and more than the view has; until the user sets a width.
  void ApplyColumnWidths();
  void SortRows();
  /// Takes a name that is being edited as it stands, as leaving the field does, and tells the owner at once.
  void FinishEditing();
  /// The owner hears of the name in a turn of its own: the answer fills the list anew, and the view is still busy with
  /// the field.
  void NameWasEdited(int row, const QByteArray& name);
  /// The mark between the rows nearest to `y`; -1 for none.
  void SetInsertBar(int y);
  void AllowDragOut();

  int sortColumn = 0;
  bool sortAscending = true;

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void mousePressEvent(QMouseEvent*) override;
  void mouseMoveEvent(QMouseEvent*) override;
  void mouseReleaseEvent(QMouseEvent*) override;
  void mouseDoubleClickEvent(QMouseEvent*) override;
  void contextMenuEvent(QContextMenuEvent*) override;
  void focusInEvent(QFocusEvent*) override;
  void focusOutEvent(QFocusEvent*) override;
  void keyPressEvent(QKeyEvent*) override;
  void dragEnterEvent(QDragEnterEvent*) override;
  void dragMoveEvent(QDragMoveEvent*) override;
  void dragLeaveEvent(QDragLeaveEvent*) override;
  void dropEvent(QDropEvent*) override;
  void startDrag(Qt::DropActions) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

 private:
  void ConnectEvents();
  void LearnColumnNeeds();
  void PaintInsertBar();
  void EndDragWait();
  QList<QByteArray> FetchDragged();
  void DragOut();
  void TellEditedName();

  struct Window* owner;
  int controlId;
  ListModel* rowModel;  ///< Owned by the view.
  QString prompt;
  bool dragWaits = false;        ///< Rows hang on the pointer, which is still in the list.
  QList<QByteArray> readyFiles;  ///< What was fetched for a drag of the selected rows and not dragged; empty for none.
  bool isDraggedOver = false;    ///< The owner was told of a drag that has come in and not left.
  std::optional<std::pair<int, QByteArray>> editedName;  ///< Row and name that the owner has not heard of yet.
  int insertBarAt = -1;                                  ///< Where the mark for a drop was asked for; -1 for none.
  std::vector<int> columnNeeds;  ///< Width at which heading and cells are whole. It only grows: columns stand still.
  bool widthsAreUsers = false;   ///< The user has set a width: no more sharing out by the table.
  bool applyingWidths = false;
};

/// In-place editing of a name: the text goes to the owner, the row changes only when the owner changes it.
class LabelDelegate : public QStyledItemDelegate {
  Q_OBJECT
 public:
  LabelDelegate(struct Window* window, int listId, ListControl* view)
      : QStyledItemDelegate(view), owner(window), id(listId), list(view) {}
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;

 private:
  struct Window* owner;
  int id;
  ListControl* list;
};

}  // namespace platform
