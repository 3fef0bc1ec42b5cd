#include "platform/qt/list_control.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollBar>
#include <algorithm>
#include <numeric>
#include <utility>

#include "platform/event_loop.h"
#include "platform/qt/icons.h"
#include "platform/qt/native_window.h"
#include "platform/qt/text.h"

namespace platform {

namespace {

QVariant AlignmentOf(int code) {
  static const Qt::Alignment sides[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
  return QVariant::fromValue(sides[std::clamp(code, 0, 2)] | Qt::AlignVCenter);
}

}  // namespace

// ListModel

int ListModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return holds > 0 ? shownRows : static_cast<int>(rows.size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(columns.size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
  const ListRow* row = RowAt(index.row());
  const auto column = static_cast<size_t>(index.column());
  if (!row || column >= row->cells.size()) return {};
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole: return ShownName(row->cells[column]);
    case Qt::ToolTipRole: return column == 0 ? QVariant(ToolTipText(ShownName(row->cells[0]))) : QVariant();
    case kBytesRole: return row->cells[column];
    case Qt::DecorationRole: return column == 0 ? QVariant(QIconOf(row->icon)) : QVariant();
    case Qt::TextAlignmentRole: return AlignmentOf(columns[column].alignment);
    default: return {};
  }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
  if (role == Qt::DisplayRole) return columns[static_cast<size_t>(section)].heading;
  if (role == Qt::TextAlignmentRole) return AlignmentOf(columns[static_cast<size_t>(section)].alignment);
  return {};
}

Qt::ItemFlags ListModel::flags(const QModelIndex& index) const {
  Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  if (dragsOut) flags |= Qt::ItemIsDragEnabled;
  const auto column = static_cast<size_t>(index.column());
  if (column < columns.size() && columns[column].editable) flags |= Qt::ItemIsEditable;
  return flags;
}

void ListModel::SetColumns(const ListColumn* source, size_t count) {
  beginResetModel();
  columns.clear();
  for (size_t i = 0; i < count; ++i) {
    columns.push_back({ShownText(source[i].heading), source[i].width, source[i].alignment, false});
  }
  endResetModel();
}

int ListModel::AddRow(const char* text, Icon icon, intptr_t data) {
  ListRow row{std::vector<QByteArray>(std::max<size_t>(columns.size(), 1)), icon, data};
  row.cells[0] = text;
  ++changes;
  const int at = static_cast<int>(rows.size());
  if (holds == 0) beginInsertRows({}, at, at);
  rows.push_back(std::move(row));
  if (holds == 0) endInsertRows();
  return at;
}

void ListModel::SetCell(int row, int column, const char* text) {
  if (!RowAt(row) || column < 0 || column >= columnCount()) return;
  ++changes;
  rows[static_cast<size_t>(row)].cells[static_cast<size_t>(column)] = text;
  if (holds == 0) emit dataChanged(index(row, column), index(row, column));
}

const ListRow* ListModel::RowAt(int row) const {
  return row >= 0 && static_cast<size_t>(row) < rows.size() ? &rows[static_cast<size_t>(row)] : nullptr;
}

void ListModel::Clear() {
  ++changes;
  if (holds == 0) beginResetModel();
  rows.clear();
  if (holds == 0) endResetModel();
}

void ListModel::Hold(bool hold) {
  if (hold) {
    if (++holds > 1) return;
    shownRows = 0;
    --holds;  // The view still asks while the reset begins.
    beginResetModel();
    ++holds;
  } else if (holds > 0 && --holds == 0) {
    endResetModel();
  }
}

namespace {

/// Stable. What stands in order already, or the other way round, costs one look at each: rows as a server lists them,
/// and a second click on a heading.
template <typename Before>
void SortOrder(std::vector<int>& order, Before before) {
  const auto isFalling = [&before](int a, int b) { return !before(b, a); };
  if (std::adjacent_find(order.begin(), order.end(), isFalling) == order.end()) {
    std::reverse(order.begin(), order.end());
    return;
  }
  const auto isBehind = [&before](int a, int b) { return before(b, a); };
  if (std::adjacent_find(order.begin(), order.end(), isBehind) == order.end()) return;
  std::stable_sort(order.begin(), order.end(), before);
}

}  // namespace

template <typename Behind>
void ListModel::Sort(Behind behind) {
  std::vector<int> order(rows.size());
  std::iota(order.begin(), order.end(), 0);
  const unsigned rowsAsTheyWere = changes;
  constexpr unsigned kDrawEvery = 512;
  unsigned compared = 0;
  const auto before = [&](int a, int b) {
    if (++compared % kDrawEvery == 0) EventLoopDraw();
    return changes == rowsAsTheyWere && behind(rows[static_cast<size_t>(b)], rows[static_cast<size_t>(a)]);
  };
  SortOrder(order, before);
  if (changes != rowsAsTheyWere) return;

  emit layoutAboutToBeChanged({}, VerticalSortHint);
  std::vector<ListRow> sorted;
  sorted.reserve(rows.size());
  std::vector<int> placeOf(rows.size());
  for (const int from : order) {
    placeOf[static_cast<size_t>(from)] = static_cast<int>(sorted.size());
    sorted.push_back(std::move(rows[static_cast<size_t>(from)]));
  }
  rows = std::move(sorted);
  const QModelIndexList old = persistentIndexList();
  QModelIndexList moved;
  moved.reserve(old.size());
  for (const QModelIndex& one : old) moved.append(index(placeOf[static_cast<size_t>(one.row())], one.column()));
  changePersistentIndexList(old, moved);
  emit layoutChanged({}, VerticalSortHint);
}

// ListControl

ListControl::ListControl(Window* window, int id)
    : QTreeView(window->client), owner(window), controlId(id), rowModel(new ListModel(this)) {
  setModel(rowModel);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setTextElideMode(Qt::ElideMiddle);
  setIconSize(QSize(18, 18));
  setItemDelegate(new LabelDelegate(window, id, this));
  header()->setSectionsClickable(true);
  header()->setSortIndicatorShown(false);  // Until the list has an order of its own.
  header()->setSectionsMovable(false);
  header()->setMinimumSectionSize(24);
  header()->setStretchLastSection(true);
  header()->setContextMenuPolicy(Qt::CustomContextMenu);
  ConnectEvents();
}

void ListControl::ConnectEvents() {
  connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    readyFiles.clear();
    owner->SendBound(controlId, ControlEvent::kSelectionChange);
  });
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this](const QModelIndex& current) {
    // Keys select a row before they make it the current one.
    if (selectionModel()->isSelected(current)) owner->SendBound(controlId, ControlEvent::kSelectionChange);
  });
  connect(header(), &QHeaderView::customContextMenuRequested, this,
          [this] { owner->SendBound(controlId, ControlEvent::kHeaderRightClick); });
  connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
    sortAscending = column == sortColumn ? !sortAscending : true;
    sortColumn = column;
    owner->WithOwner([this](WindowEvents& events) { events.OnSortRequested(controlId); });
  });
  connect(header(), &QHeaderView::sectionResized, this, [this] {
    // The header also resizes its sections by itself, whenever the view does.
    if (!applyingWidths && (QApplication::mouseButtons() & Qt::LeftButton) && header()->underMouse()) {
      widthsAreUsers = true;
    }
  });
}

void ListControl::SetPrompt(const QString& text) {
  prompt = text;
  viewport()->update();
}

namespace {

/// Gives columns that lack width what others have beyond their needs, in proportion. The first column has the names,
/// which are elided in the middle and have tool tips: it gives last, at most two fifths and never below `leastNames`,
/// and gets what is left. Where all that is not enough, the columns become wider than the view. A width of 0 is a
/// hidden column.
void ShareOut(std::vector<int>& widths, const std::vector<int>& needs, int leastNames) {
  int wanted = 0, offered = 0;
  const auto lack = [&](size_t i) { return widths[i] == 0 ? 0 : std::max(needs[i] - widths[i], 0); };
  const auto surplus = [&](size_t i) { return widths[i] == 0 ? 0 : std::max(widths[i] - needs[i], 0); };
  for (size_t i = 1; i < widths.size(); ++i) {
    wanted += lack(i);
    offered += surplus(i);
  }
  const int fromNames = std::clamp(wanted - offered, 0, std::clamp(widths[0] - leastNames, 0, widths[0] * 2 / 5));
  const int fromOthers = std::min(wanted, offered);
  const int toNames = std::clamp(needs[0] - widths[0], 0, offered - fromOthers);
  widths[0] = std::max(widths[0] + toNames - fromNames, leastNames);
  for (size_t i = 1; i < widths.size(); ++i) {
    const int taken = offered == 0 ? 0 : surplus(i) * (fromOthers + toNames) / offered;
    widths[i] += lack(i) - taken;
  }
}

}  // namespace

void ListControl::ApplyColumnWidths() {
  if (widthsAreUsers || rowModel->columns.empty()) return;
  int total = 0;
  for (int i = 0; i < rowModel->columnCount(); ++i) {
    if (!isColumnHidden(i)) total += rowModel->columns[static_cast<size_t>(i)].width;
  }
  if (total == 0) return;
  LearnColumnNeeds();
  std::vector<int> widths(columnNeeds.size(), 0);
  for (int i = 0; i < rowModel->columnCount(); ++i) {
    if (isColumnHidden(i)) continue;
    const auto at = static_cast<size_t>(i);
    widths[at] = viewport()->width() * rowModel->columns[at].width / total;
  }
  // The arrow of the order stands beside their heading first.
  ShareOut(widths, columnNeeds, header()->sectionSizeHint(0) + style()->pixelMetric(QStyle::PM_HeaderMarkSize));
  applyingWidths = true;
  for (size_t i = 0; i < widths.size(); ++i) {
    if (!isColumnHidden(static_cast<int>(i))) setColumnWidth(static_cast<int>(i), widths[i]);
  }
  applyingWidths = false;
}

void ListControl::LearnColumnNeeds() {
  constexpr int kRowsToLookAt = 50;
  columnNeeds.resize(rowModel->columns.size(), 0);
  QStyleOptionViewItem option;
  initViewItemOption(&option);
  for (int column = 0; column < rowModel->columnCount(); ++column) {
    if (isColumnHidden(column)) continue;
    int& need = columnNeeds[static_cast<size_t>(column)];
    need = std::max(need, header()->sectionSizeHint(column));
    for (int row = 0; row < std::min(rowModel->rowCount(), kRowsToLookAt); ++row) {
      need = std::max(need, itemDelegate()->sizeHint(option, rowModel->index(row, column)).width());
    }
  }
}

void ListControl::SortRows() {
  header()->setSortIndicator(sortColumn, sortAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
  const auto column = static_cast<size_t>(sortColumn);
  if (column >= rowModel->columns.size()) return;
  rowModel->Sort([&](const ListRow& a, const ListRow& b) {
    int order = 0;
    if (owner->events) {
      order = owner->events->OnCompareRows(controlId, a.cells[column].constData(), b.cells[column].constData(), a.data,
                                           b.data, sortColumn, sortAscending);
    }
    return order > 0;
  });
}

void ListControl::SetInsertBar(int y) {
  if (insertBarAt == y) return;
  insertBarAt = y;
  viewport()->update();
}

void ListControl::PaintInsertBar() {
  const int last = rowModel->rowCount() - 1;
  const QModelIndex under = indexAt(QPoint(0, insertBarAt));
  const QRect row = visualRect(under.isValid() ? under : rowModel->index(last, 0));
  const int edge = under.isValid() && insertBarAt < row.center().y() ? row.top() : row.bottom() + 1;
  constexpr int kThickness = 2;
  QPainter painter(viewport());
  const int top = last < 0 ? 0 : std::max(edge - kThickness / 2, 0);
  painter.fillRect(0, top, viewport()->width(), kThickness, palette().color(QPalette::Highlight));
}

void ListControl::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (insertBarAt >= 0) PaintInsertBar();
  if (!rowModel->rows.empty() || prompt.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  constexpr int kSide = 16, kTop = 24;
  constexpr int kFlags = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
  QRect room = viewport()->rect().adjusted(kSide, 0, -kSide, 0);
  const int spare = room.height() - painter.boundingRect(room, kFlags, prompt).height();
  room.adjust(0, std::clamp(spare / 2, 0, kTop), 0, 0);
  painter.drawText(room, kFlags, prompt);
}

void ListControl::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  ApplyColumnWidths();
}

void ListControl::mousePressEvent(QMouseEvent* event) {
  QTreeView::mousePressEvent(event);
  if (event->button() == Qt::LeftButton) owner->SendBound(controlId, ControlEvent::kClick);
}

void ListControl::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !indexAt(event->pos()).isValid()) return;
  owner->SendBound(controlId, ControlEvent::kDoubleClick);
}

void ListControl::contextMenuEvent(QContextMenuEvent* event) {
  const QModelIndex under = indexAt(event->pos());
  if (event->reason() == QContextMenuEvent::Mouse && under.isValid() && !selectionModel()->isSelected(under)) {
    selectionModel()->setCurrentIndex(under, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
  if (event->reason() == QContextMenuEvent::Keyboard) {
    const QRect row = visualRect(currentIndex());
    owner->keyboardMenuPlace = viewport()->mapToGlobal(row.isValid() ? QPoint(24, row.bottom()) : QPoint(24, 8));
  }
  owner->SendBound(controlId, ControlEvent::kRightClick);
  owner->keyboardMenuPlace = QPoint();
}

void ListControl::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  // Whoever comes by the keyboard has chosen the list as well as one who clicks.
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
    owner->SendBound(controlId, ControlEvent::kClick);
  }
}

void ListControl::focusOutEvent(QFocusEvent* event) {
  QTreeView::focusOutEvent(event);
  // A menu, another window, and the field for a new name only borrow the focus.
  const Qt::FocusReason reason = event->reason();
  if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason || state() == EditingState) return;
  owner->SendBound(controlId, ControlEvent::kFocusLost);
}

void ListControl::keyPressEvent(QKeyEvent* event) {
  const bool opens = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool isBound = owner->Bound(controlId, ControlEvent::kDoubleClick) != 0;
  if (opens && isBound && state() != EditingState && currentIndex().isValid()) {
    owner->SendBound(controlId, ControlEvent::kDoubleClick);
    return;
  }
  // The view puts its mark on a row before anything is selected: the first arrow selects that one.
  const bool isArrow = event->key() == Qt::Key_Down || event->key() == Qt::Key_Up;
  if (isArrow && event->modifiers() == Qt::NoModifier && currentIndex().isValid() && state() != EditingState &&
      !selectionModel()->hasSelection()) {
    selectionModel()->setCurrentIndex(currentIndex(), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    return;
  }
  QTreeView::keyPressEvent(event);
}

// Names that are edited in a row

/// Tab ends the editing and opens no other field: the name would go to the row of that one.
void ListControl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const bool wantsNext = hint == QAbstractItemDelegate::EditNextItem || hint == QAbstractItemDelegate::EditPreviousItem;
  QTreeView::closeEditor(editor, wantsNext ? QAbstractItemDelegate::NoHint : hint);
}

void ListControl::NameWasEdited(int row, const QByteArray& name) {
  editedName.emplace(row, name);
  EventLoopPost([list = QPointer<ListControl>(this)] {
    if (list) list->TellEditedName();
  });
}

void ListControl::TellEditedName() {
  if (!editedName) return;
  const auto edited = *std::exchange(editedName, std::nullopt);
  owner->WithOwner(
      [&](WindowEvents& events) { events.OnLabelEditFinish(controlId, edited.first, edited.second.constData()); });
}

void ListControl::FinishEditing() {
  for (auto* field : viewport()->findChildren<QLineEdit*>()) {
    if (!field->isVisible()) continue;  // It was closed already, and is on its way out.
    commitData(field);
    closeEditor(field, QAbstractItemDelegate::NoHint);
  }
  TellEditedName();
}

// LabelDelegate

QWidget* LabelDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&, const QModelIndex& index) const {
  owner->WithOwner([&](WindowEvents& events) { events.OnLabelEditBegin(id, index.row()); });
  return new QLineEdit(parent);
}

void LabelDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  static_cast<QLineEdit*>(editor)->setText(index.data(Qt::EditRole).toString());
}

void LabelDelegate::setModelData(QWidget* editor, QAbstractItemModel*, const QModelIndex& index) const {
  const QString typed = static_cast<QLineEdit*>(editor)->text();
  // A name that was left as it is stays the bytes it came as.
  const bool isChanged = typed != index.data(Qt::EditRole).toString();
  list->NameWasEdited(index.row(), isChanged ? typed.toUtf8() : index.data(ListModel::kBytesRole).toByteArray());
}

}  // namespace platform
