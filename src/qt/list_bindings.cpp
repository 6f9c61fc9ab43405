#include "qt/list_bindings.h"

#include <QEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPalette>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

#include "host/edit_grid.h"
#include "qt/qt_text.h"

namespace zento {
namespace {

constexpr int kMostRowsAskedFor = 14;
constexpr int kRowPadding = 7;
// Rows that are measured when a column is fitted to its cells.
constexpr int kMeasuredRows = 50;

int WidthOf(const Grid& grid, int column) {
  const auto& widths = grid.column_widths;
  return column < static_cast<int>(widths.size()) ? widths[static_cast<std::size_t>(column)] : 0;
}

}  // namespace

void GridModel::TakeSize() {
  rows_ = grid_->rows();
  columns_ = grid_->columns();
}

void GridModel::Detach() {
  beginResetModel();
  grid_ = nullptr;
  rows_ = columns_ = 0;
  endResetModel();
}

void GridModel::Refresh() {
  if (grid_ == nullptr) return;
  if (rows_ != grid_->rows() || columns_ != grid_->columns()) {
    beginResetModel();
    TakeSize();
    endResetModel();
  } else if (rows_ > 0 && columns_ > 0) {
    Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
  }
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (grid_ == nullptr || !index.isValid()) return {};
  if (role == Qt::DisplayRole) return ToQt(grid_->Cell(index.row(), index.column()));
  if (role == Qt::ToolTipRole) return ToQt(grid_->Cell(index.row(), index.column()));
  if (role == Qt::BackgroundRole && index.column() == 0 && grid_->first_column_is_label) {
    return QPalette().color(QPalette::Window);
  }
  return {};
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (grid_ == nullptr || role != Qt::DisplayRole) return {};
  if (orientation == Qt::Vertical) {
    const auto* numbered = dynamic_cast<const EditGrid*>(grid_);
    return numbered == nullptr ? QVariant() : QVariant(numbered->first_number + section);
  }
  if (section >= static_cast<int>(grid_->headings.size())) return {};
  return ToQt(grid_->headings[static_cast<std::size_t>(section)]);
}

QSize GridView::sizeHint() const {
  if (model() == nullptr) return QTableView::sizeHint();
  const int rows = std::clamp(model()->rowCount(), 3, kMostRowsAskedFor);
  int height = rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
  if (!horizontalHeader()->isHidden()) height += horizontalHeader()->sizeHint().height();
  int width = 2 * frameWidth();
  for (int column = 0; column < model()->columnCount(); ++column) width += columnWidth(column);
  if (model()->rowCount() > rows) width += verticalScrollBar()->sizeHint().width();
  return {std::clamp(width, 200, 720), height};
}

QSize GridView::minimumSizeHint() const {
  const QSize wanted = sizeHint();
  return {std::min(wanted.width(), 200), std::min(wanted.height(), 130)};
}

GridBinding::GridBinding(Grid& grid, BindingContext& context)
    : ControlBinding(grid, context), grid_(grid), model_(new GridModel(grid)), view_(new GridView) {
  Name(*view_);
  model_->setParent(view_);
  view_->setModel(model_);
  view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view_->setSelectionBehavior(QAbstractItemView::SelectRows);
  view_->setSelectionMode(QAbstractItemView::SingleSelection);
  view_->setTabKeyNavigation(false);
  view_->setWordWrap(false);
  view_->verticalHeader()->hide();
  view_->verticalHeader()->setDefaultSectionSize(view_->fontMetrics().height() + kRowPadding);
  view_->horizontalHeader()->setVisible(!grid.headings.empty());
  view_->horizontalHeader()->setHighlightSections(false);
  view_->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
  FitColumns();
  connect(model_, &QAbstractItemModel::modelReset, this, [this] { FitColumns(); });
  connect(view_, &QAbstractItemView::clicked, this, [this](const QModelIndex& i) { Choose(i); });
  // Enter on the row that the arrow keys went to.
  connect(view_, &QAbstractItemView::activated, this, [this](const QModelIndex& i) {
    if (!gone() && i.row() != grid_.selected_row()) Choose(i);
  });
}

void GridBinding::Detach() {
  ControlBinding::Detach();
  model_->Detach();
}

void GridBinding::Choose(const QModelIndex& index) {
  const int row = index.row();
  const int column = index.column();
  Act([this, row, column] { return grid_.UserClickCell(row, column); });
}

void GridBinding::FitColumns() {
  if (gone()) return;
  QHeaderView& header = *view_->horizontalHeader();
  bool filled = false;
  for (int column = 0; column < grid_.columns(); ++column) {
    const int width = WidthOf(grid_, column);
    filled = filled || width < 0;
    header.setSectionResizeMode(column,
                                width < 0 ? QHeaderView::Stretch : QHeaderView::Interactive);
    if (width > 0) view_->setColumnWidth(column, width);
    if (width == 0) view_->resizeColumnToContents(column);
  }
  header.setStretchLastSection(!filled);
}

void GridBinding::Show() {
  model_->Refresh();
  const int chosen = grid_.selected_row();
  if (chosen < 0) {
    view_->clearSelection();
  } else if (!view_->selectionModel()->isRowSelected(chosen, QModelIndex())) {
    view_->selectRow(chosen);
  }
}

ListBinding::ListBinding(ListBox& list, BindingContext& context)
    : ControlBinding(list, context), list_(list), view_(new QListWidget) {
  Name(*view_);
  view_->setUniformItemSizes(true);
  view_->installEventFilter(this);
  connect(view_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0) Act([this, row] { return list_.UserChoose(row); });
  });
  connect(view_, &QListWidget::doubleClicked, this, [this](const QModelIndex& index) {
    const int row = index.row();
    Act([this, row] { return list_.UserOpen(row); });
  });
}

void ListBinding::Show() {
  const QSignalBlocker quiet(view_);
  if (shown_ != list_.items()) {
    shown_ = list_.items();
    view_->clear();
    for (const std::string& item : shown_) view_->addItem(ToQt(item));
  }
  if (view_->currentRow() != list_.selected()) view_->setCurrentRow(list_.selected());
}

bool ListBinding::eventFilter(QObject* watched, QEvent* event) {
  if (!gone() && event->type() == QEvent::KeyPress) {
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Delete) {
      const KeyCode code = key == Qt::Key_Delete ? KeyCode::kDelete : KeyCode::kEnter;
      Act([this, code] { return list_.UserKey({code, 0}); });
      return true;
    }
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace zento
