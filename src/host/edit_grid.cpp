#include "host/edit_grid.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "text/status.h"

namespace zento {
namespace {

std::optional<int> RowNumber(std::string_view text) {
  int row = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), row);
  if (error != std::errc() || end != text.data() + text.size() || row < 0) return std::nullopt;
  return row;
}

// "3-9,12"; nothing when it is something else or goes beyond `rows`.
std::optional<std::vector<int>> ParseRows(std::string_view text, int rows) {
  std::vector<int> numbers;
  while (!text.empty()) {
    const std::size_t comma = text.find(',');
    const std::string_view piece = text.substr(0, comma);
    const std::size_t dash = piece.find('-');
    const auto first = RowNumber(piece.substr(0, dash));
    const auto last = dash == piece.npos ? first : RowNumber(piece.substr(dash + 1));
    if (!first || !last || *last >= rows) return std::nullopt;
    for (int row = *first; row <= *last; ++row) numbers.push_back(row);
    if (comma == text.npos) break;
    text.remove_prefix(comma + 1);
  }
  return numbers;
}

}  // namespace

EditGrid::EditGrid(Form& form, std::string name, TextBox& editor)
    : Grid(form, std::move(name), 0, 0), editor_(editor) {
  editor_.SetVisible(false);
}

void EditGrid::MoveTo(int row, int column) {
  const bool inside = row >= 0 && row < rows() && column >= 0 && column < columns();
  row_ = inside ? row : -1;
  column_ = inside ? column : -1;
  selected_.clear();
  if (inside) selected_.push_back(row);
  SelectRow(row_);
  Changed();
}

void EditGrid::SelectRows(std::vector<int> wanted) {
  std::erase_if(wanted, [this](int row) { return row < 0 || row >= rows(); });
  std::sort(wanted.begin(), wanted.end());
  wanted.erase(std::unique(wanted.begin(), wanted.end()), wanted.end());
  selected_ = std::move(wanted);
  Changed();
}

void EditGrid::OpenEditor(const std::string& text) {
  if (row_ < 0) return;
  editor_.SetText(text);
  editor_.Select({text.size(), text.size()});
  editor_.SetVisible(true);
  Changed();
}

void EditGrid::CloseEditor() {
  editor_.SetVisible(false);
  Changed();
}

void EditGrid::LeaveEditor() {
  if (editor_.visible()) editor_.UserLeave();
}

void EditGrid::Moved() const {
  if (on_move) on_move();
}

Status EditGrid::UserClickCell(int row, int column) {
  LeaveEditor();
  if (row < 0 || row >= rows() || column < 0 || column >= columns()) {
    return Grid::UserClickCell(row, column);
  }
  MoveTo(row, column);
  Moved();
  return Grid::UserClickCell(row, column);
}

Status EditGrid::UserKey(Key key) {
  const auto move = [this](int down, int right) {
    LeaveEditor();
    if (rows() == 0) return Status::Ok();
    MoveTo(std::clamp(row_ + down, 0, rows() - 1), std::clamp(column_ + right, 0, columns() - 1));
    Moved();
    return Status::Ok();
  };
  switch (key.code) {
    case KeyCode::kUp:
      return move(-1, 0);
    case KeyCode::kDown:
      return move(+1, 0);
    case KeyCode::kLeft:
      return move(0, -1);
    case KeyCode::kRight:
      return move(0, +1);
    default:
      if (on_key) on_key(key);
      return Status::Ok();
  }
}

Status EditGrid::UserSet(const std::string& text) {
  LeaveEditor();
  auto wanted = ParseRows(text, rows());
  if (!wanted) {
    return Status::Failure(Address() + ": '" + text + "' are not rows such as 3-9,12 from 0 to " +
                           std::to_string(rows() - 1));
  }
  if (!wanted->empty()) MoveTo(wanted->front(), std::max(column_, 0));
  SelectRows(std::move(*wanted));
  Moved();
  return Status::Ok();
}

Status EditGrid::UserSelect(int row, int column, std::vector<int> rows) {
  LeaveEditor();
  MoveTo(row, column);
  SelectRows(std::move(rows));
  Moved();
  return Status::Ok();
}

}  // namespace zento
