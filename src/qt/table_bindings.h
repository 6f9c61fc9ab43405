#pragma once

#include <memory>
#include <vector>

#include "host/controls.h"
#include "host/edit_grid.h"
#include "qt/control_binding.h"

namespace zento {

class GridModel;
class GridView;

// Tables and lists.

// A table with the editor of its current cell inside.
class EditGridBinding final : public ControlBinding {
 public:
  EditGridBinding(EditGrid& grid, BindingContext& context);
  QWidget& widget() override;
  bool Tall() const override { return true; }
  void Detach() override;
  // The binding of the grid's editor, whose widget moves into the table.
  void Embed(ControlBinding& editor);

 protected:
  void Show() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Selected();
  std::vector<int> RowsOfView() const;
  void ShowSelection();
  void PlaceEditor();

  EditGrid& grid_;
  GridModel* model_;
  GridView* view_;
  QPointer<QWidget> editor_;
  bool showing_ = false;  // the program moves the cursor, not a person
};

std::unique_ptr<ControlBinding> Bind(Grid& grid, BindingContext& context);
std::unique_ptr<ControlBinding> Bind(ListBox& list, BindingContext& context);

}  // namespace zento
