#include "qt/edit_grid_binding.h"

#include <QEvent>
#include <QHeaderView>
#include <QItemSelection>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

namespace zento {
namespace {

constexpr int kRowPadding = 7;

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
    : ControlBinding(grid, context), grid_(grid), model_(new GridModel(grid)), view_(new GridView) {
  Name(*view_);
  model_->setParent(view_);
  view_->setModel(model_);
  view_->setItemDelegate(new CellDelegate(*view_));
  view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  view_->setSelectionBehavior(QAbstractItemView::SelectRows);
  view_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  view_->setTabKeyNavigation(false);
  view_->setWordWrap(false);
  const int height = view_->fontMetrics().height() + kRowPadding;
  // All rows are equally high: none of them is measured, however many there are.
  view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view_->verticalHeader()->setDefaultSectionSize(height);
  view_->verticalHeader()->setHighlightSections(false);
  view_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  view_->horizontalHeader()->setHighlightSections(false);
  view_->installEventFilter(this);
  const auto selected = [this] { Selected(); };
  connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, selected);
  connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this, selected);
  for (const QScrollBar* bar : {view_->verticalScrollBar(), view_->horizontalScrollBar()}) {
    connect(bar, &QScrollBar::valueChanged, this, [this] { PlaceEditor(); });
  }
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

}  // namespace zento
