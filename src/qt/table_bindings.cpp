#include "qt/table_bindings.h"

#include <QAbstractTableModel>
#include <QEvent>
#include <QHeaderView>
#include <QItemSelection>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPalette>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableView>
#include <algorithm>
#include <string>
#include <utility>

#include "qt/qt_text.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr int kMostRowsAskedFor = 14;
constexpr int kRowPadding = 7;
// Rows that are measured when a column is fitted to its cells.
constexpr int kMeasuredRows = 50;

}  // namespace

// The cells of a grid, read from it as they are shown.
class GridModel final : public QAbstractTableModel {
 public:
  explicit GridModel(const Grid& grid) : grid_(&grid) { TakeSize(); }

  void Detach() {
    beginResetModel();
    grid_ = nullptr;
    rows_ = columns_ = 0;
    endResetModel();
  }

  void Refresh() {
    if (grid_ == nullptr) return;
    if (rows_ != grid_->rows() || columns_ != grid_->columns()) {
      beginResetModel();
      TakeSize();
      endResetModel();
    } else if (rows_ > 0 && columns_ > 0) {
      Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
    }
  }

  int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : rows_; }
  int columnCount(const QModelIndex& parent) const override {
    return parent.isValid() ? 0 : columns_;
  }

  QVariant data(const QModelIndex& index, int role) const override {
    if (grid_ == nullptr || !index.isValid()) return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole) {
      return ToQt(grid_->Cell(index.row(), index.column()));
    }
    if (role == Qt::BackgroundRole && index.column() == 0 && grid_->first_column_is_label) {
      return QPalette().color(QPalette::Window);
    }
    return {};
  }

  QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (grid_ == nullptr || role != Qt::DisplayRole) return {};
    if (orientation == Qt::Vertical) {
      const auto* numbered = dynamic_cast<const EditGrid*>(grid_);
      return numbered == nullptr ? QVariant() : QVariant(numbered->first_number + section);
    }
    if (section >= static_cast<int>(grid_->headings.size())) return {};
    return ToQt(grid_->headings[static_cast<std::size_t>(section)]);
  }

 private:
  void TakeSize() {
    rows_ = grid_->rows();
    columns_ = grid_->columns();
  }

  const Grid* grid_;
  int rows_ = 0;
  int columns_ = 0;
};

// Whole rows, chosen by pointer and arrow keys. Asks for as much room as its cells need, within
// reason. Owns the model.
class GridView final : public QTableView {
 public:
  explicit GridView(GridModel* model) {
    model->setParent(this);
    setModel(model);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
    horizontalHeader()->setHighlightSections(false);
  }

  QSize sizeHint() const override {
    const int rows = std::clamp(model()->rowCount(), 3, kMostRowsAskedFor);
    int height = rows * verticalHeader()->defaultSectionSize() + 2 * frameWidth();
    if (!horizontalHeader()->isHidden()) height += horizontalHeader()->sizeHint().height();
    int width = 2 * frameWidth();
    for (int column = 0; column < model()->columnCount(); ++column) width += columnWidth(column);
    if (model()->rowCount() > rows) width += verticalScrollBar()->sizeHint().width();
    return {std::clamp(width, 200, 720), height};
  }

  QSize minimumSizeHint() const override {
    const QSize wanted = sizeHint();
    return {std::min(wanted.width(), 200), std::min(wanted.height(), 130)};
  }
};

namespace {

class GridBinding final : public ControlBinding {
 public:
  GridBinding(Grid& grid, BindingContext& context)
      : ControlBinding(grid, context),
        grid_(grid),
        model_(new GridModel(grid)),
        view_(new GridView(model_)) {
    Name(*view_);
    view_->setSelectionMode(QAbstractItemView::SingleSelection);
    view_->verticalHeader()->hide();
    view_->horizontalHeader()->setVisible(!grid.headings.empty());
    view_->horizontalHeader()->setResizeContentsPrecision(kMeasuredRows);
    FitColumns();
    connect(model_, &QAbstractItemModel::modelReset, this, [this] { FitColumns(); });
    connect(view_, &QAbstractItemView::clicked, this, [this](const QModelIndex& i) { Choose(i); });
    // Enter on the row that the arrow keys went to.
    connect(view_, &QAbstractItemView::activated, this, [this](const QModelIndex& i) {
      if (!gone() && i.row() != grid_.selected_row()) Choose(i);
    });
  }
  QWidget& widget() override { return *view_; }
  bool Tall() const override { return true; }
  void Detach() override {
    ControlBinding::Detach();
    model_->Detach();
  }

 protected:
  void Show() override {
    model_->Refresh();
    const int chosen = grid_.selected_row();
    if (chosen < 0) {
      view_->clearSelection();
    } else if (!view_->selectionModel()->isRowSelected(chosen, QModelIndex())) {
      view_->selectRow(chosen);
    }
  }

 private:
  void Choose(const QModelIndex& index) {
    const int row = index.row();
    const int column = index.column();
    Act([this, row, column] { return grid_.UserClickCell(row, column); });
  }

  // A column's width: positive as given, 0 as its cells need, negative what the others leave.
  int WidthOf(int column) const {
    const auto& widths = grid_.column_widths;
    return column < static_cast<int>(widths.size()) ? widths[static_cast<std::size_t>(column)] : 0;
  }

  void FitColumns() {
    if (gone()) return;
    QHeaderView& header = *view_->horizontalHeader();
    bool filled = false;
    for (int column = 0; column < grid_.columns(); ++column) {
      const int width = WidthOf(column);
      filled = filled || width < 0;
      header.setSectionResizeMode(column,
                                  width < 0 ? QHeaderView::Stretch : QHeaderView::Interactive);
      if (width > 0) view_->setColumnWidth(column, width);
      if (width == 0) view_->resizeColumnToContents(column);
    }
    header.setStretchLastSection(!filled);
  }

  Grid& grid_;
  GridModel* model_;
  GridView* view_;
};

class ListBinding final : public ControlBinding {
 public:
  ListBinding(ListBox& list, BindingContext& context)
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
  QWidget& widget() override { return *view_; }
  bool Tall() const override { return true; }

 protected:
  void Show() override {
    const QSignalBlocker quiet(view_);
    if (shown_ != list_.items()) {
      shown_ = list_.items();
      view_->clear();
      for (const std::string& item : shown_) view_->addItem(ToQt(item));
    }
    if (view_->currentRow() != list_.selected()) view_->setCurrentRow(list_.selected());
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (gone() || event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!enter && key != Qt::Key_Delete) return QObject::eventFilter(watched, event);
    const KeyCode code = enter ? KeyCode::kEnter : KeyCode::kDelete;
    Act([this, code] { return list_.UserKey({code, 0}); });
    return true;
  }

 private:
  ListBox& list_;
  QListWidget* view_;
  std::vector<std::string> shown_;
};

// A frame round the current cell, which a selected row would hide.
class CellDelegate final : public QStyledItemDelegate {
 public:
  explicit CellDelegate(QTableView& view) : QStyledItemDelegate(&view), view_(view) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyledItemDelegate::paint(painter, option, index);
    if (index != view_.currentIndex()) return;
    painter->save();
    painter->setPen(QPen(option.palette.color(QPalette::Text), 2));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
  }

 private:
  QTableView& view_;
};

}  // namespace

EditGridBinding::EditGridBinding(EditGrid& grid, BindingContext& context)
    : ControlBinding(grid, context),
      grid_(grid),
      model_(new GridModel(grid)),
      view_(new GridView(model_)) {
  Name(*view_);
  view_->setItemDelegate(new CellDelegate(*view_));
  view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  // All rows are equally high: none of them is measured, however many there are.
  view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view_->verticalHeader()->setHighlightSections(false);
  view_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  view_->installEventFilter(this);
  const auto selected = [this] { Selected(); };
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, selected);
  connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this, selected);
  for (const QScrollBar* bar : {view_->verticalScrollBar(), view_->horizontalScrollBar()}) {
    connect(bar, &QScrollBar::valueChanged, this, [this] { PlaceEditor(); });
  }
}

QWidget& EditGridBinding::widget() {
  return *view_;
}

void EditGridBinding::Detach() {
  ControlBinding::Detach();
  model_->Detach();
}

void EditGridBinding::Embed(ControlBinding& editor) {
  editor_ = &editor.widget();
  editor_->setParent(view_->viewport());
  editor_->setVisible(grid_.editor().visible());
}

std::vector<int> EditGridBinding::RowsOfView() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : view_->selectionModel()->selection()) {
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  }
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

void EditGridBinding::Selected() {
  if (showing_ || gone()) return;
  const QModelIndex current = view_->currentIndex();
  std::vector<int> rows = RowsOfView();
  const int row = current.row();
  const int column = current.column();
  if (row == grid_.row() && column == grid_.column() && rows == grid_.selected_rows()) return;
  Act([this, row, column, rows = std::move(rows)] { return grid_.UserSelect(row, column, rows); });
}

void EditGridBinding::ShowSelection() {
  QItemSelectionModel& selection = *view_->selectionModel();
  if (const std::vector<int>& rows = grid_.selected_rows(); rows != RowsOfView()) {
    QItemSelection chosen;
    for (std::size_t i = 0; i < rows.size();) {
      std::size_t end = i + 1;
      while (end < rows.size() && rows[end] == rows[end - 1] + 1) ++end;
      chosen.select(model_->index(rows[i], 0), model_->index(rows[end - 1], grid_.columns() - 1));
      i = end;
    }
    selection.select(chosen, QItemSelectionModel::ClearAndSelect);
  }
  const QModelIndex current =
      grid_.row() < 0 ? QModelIndex() : model_->index(grid_.row(), grid_.column());
  if (view_->currentIndex() == current) return;
  selection.setCurrentIndex(current, QItemSelectionModel::NoUpdate);
  if (current.isValid()) view_->scrollTo(current);
}

void EditGridBinding::Show() {
  const bool before = std::exchange(showing_, true);
  model_->Refresh();
  ShowSelection();
  showing_ = before;
  PlaceEditor();
}

void EditGridBinding::PlaceEditor() {
  auto* const edit = qobject_cast<QLineEdit*>(editor_.data());
  if (gone() || edit == nullptr || !grid_.editor().visible()) return;
  edit->setGeometry(view_->visualRect(view_->currentIndex()));
  edit->raise();
  if (edit->hasFocus()) return;
  edit->setFocus(Qt::OtherFocusReason);
  edit->deselect();
  edit->setCursorPosition(static_cast<int>(edit->text().size()));
}

bool EditGridBinding::eventFilter(QObject* watched, QEvent* event) {
  if (gone() || event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
  const auto& press = *static_cast<QKeyEvent*>(event);
  if (press.key() == Qt::Key_Delete) {
    Act([this] { return grid_.UserKey({KeyCode::kDelete, 0}); });
    return true;
  }
  const QString text = press.text();
  const bool typed = !text.isEmpty() && text.at(0).isPrint() &&
                     (press.modifiers() & (Qt::ControlModifier | Qt::AltModifier)) == 0;
  if (!typed) return QObject::eventFilter(watched, event);
  const char32_t character = text.at(0).unicode();
  Act([this, character] { return grid_.UserKey({KeyCode::kCharacter, character}); });
  return true;
}

std::unique_ptr<ControlBinding> Bind(Grid& grid, BindingContext& context) {
  return std::make_unique<GridBinding>(grid, context);
}
std::unique_ptr<ControlBinding> Bind(ListBox& list, BindingContext& context) {
  return std::make_unique<ListBinding>(list, context);
}

}  // namespace zento
