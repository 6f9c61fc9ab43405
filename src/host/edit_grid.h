#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/controls.h"

namespace zento {

// A grid with a cell cursor, rows of which many can be selected, and a text box that stands over
// the current cell while something is typed into it. What keys and the box do, the form decides;
// arrow keys move the cursor.
class EditGrid : public Grid {
 public:
  // The editor belongs to the same form, outlives this, and has no place of its own in the layout.
  EditGrid(Form& form, std::string name, TextBox& editor);

  // The current cell; -1 while there is none.
  int row() const { return row_; }
  int column() const { return column_; }
  // In rising order.
  const std::vector<int>& selected_rows() const { return selected_; }
  TextBox& editor() const { return editor_; }

  // Both run no handler. A cell outside the grid is none.
  void MoveTo(int row, int column);
  void SelectRows(std::vector<int> rows);

  // Shows the editor over the current cell with this text, the caret behind it.
  void OpenEditor(const std::string& text);
  void CloseEditor();

  int first_number = 0;  // what stands before row 0; the others count on

  std::function<void(Key)> on_key;  // anything but an arrow key
  // A person went to another cell or selected rows. What stood in the editor has been left before.
  std::function<void()> on_move;

  Status UserClickCell(int row, int column) override;
  Status UserKey(Key key) override;
  // "3-9,12": these rows are selected.
  Status UserSet(const std::string& rows) override;
  // The person moved the cursor and selected rows, as with Shift or Control held.
  Status UserSelect(int row, int column, std::vector<int> rows);

 private:
  // The editor belongs to the cell it was opened over.
  void LeaveEditor();
  void Moved() const;
  int row_ = -1;
  int column_ = -1;
  std::vector<int> selected_;
  TextBox& editor_;
};

}  // namespace zento
