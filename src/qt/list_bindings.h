#pragma once

#include <QAbstractTableModel>
#include <QListWidget>
#include <QTableView>
#include <string>
#include <vector>

#include "host/controls.h"
#include "qt/control_binding.h"

namespace zento {

// The cells of a grid, read from it as they are shown.
class GridModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  explicit GridModel(const Grid& grid) : grid_(&grid) { TakeSize(); }
  void Detach();
  void Refresh();

  int rowCount(const QModelIndex& parent) const override;
  int columnCount(const QModelIndex& parent) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  void TakeSize();
  const Grid* grid_;
  int rows_ = 0;
  int columns_ = 0;
};

// Asks for as much room as its cells need, within reason.
class GridView final : public QTableView {
  Q_OBJECT

 public:
  using QTableView::QTableView;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
};

class GridBinding final : public ControlBinding {
 public:
  GridBinding(Grid& grid, BindingContext& context);
  QWidget& widget() override { return *view_; }
  bool Tall() const override { return true; }
  void Detach() override;

 protected:
  void Show() override;

 private:
  void Choose(const QModelIndex& index);
  void FitColumns();
  Grid& grid_;
  GridModel* model_;
  GridView* view_;
};

class ListBinding final : public ControlBinding {
 public:
  ListBinding(ListBox& list, BindingContext& context);
  QWidget& widget() override { return *view_; }
  bool Tall() const override { return true; }

 protected:
  void Show() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  ListBox& list_;
  QListWidget* view_;
  std::vector<std::string> shown_;
};

}  // namespace zento
