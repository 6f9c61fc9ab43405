#include "host/controls.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "host/control.h"
#include "host/form.h"
#include "host/host.h"
#include "text/lines.h"
#include "text/status.h"

namespace zento {
Control::Control(Form& form, std::string name, int index)
    : form_(form), name_(std::move(name)), index_(index) {
  form_.Register(*this);
}

Control::~Control() = default;

std::string Control::Address() const {
  return index_ < 0 ? name_ : name_ + "(" + std::to_string(index_) + ")";
}

void Control::SetEnabled(bool enabled) {
  if (enabled == enabled_) return;
  enabled_ = enabled;
  Changed();
}

void Control::SetVisible(bool visible) {
  if (visible == visible_) return;
  visible_ = visible;
  Changed();
}

void Control::SetTip(std::string tip) {
  tip_ = std::move(tip);
  Changed();
}

Status Control::UserSet(const std::string&) {
  return Status::Failure(Address() + " cannot be set");
}
Status Control::UserType(const std::string&) {
  return Status::Failure(Address() + " takes no text");
}
Status Control::UserKey(Key) {
  return Status::Failure(Address() + " takes no keys");
}
Status Control::UserClick() {
  return Status::Failure(Address() + " cannot be clicked");
}
Status Control::UserClickCell(int, int) {
  return Status::Failure(Address() + " has no cells");
}
Status Control::UserStep(int) {
  return Status::Failure(Address() + " has no steps");
}

void Control::Changed() {
  form_.ControlChanged(*this);
}

namespace {

std::optional<int> Index(const std::string& text) {
  int value = 0;
  const char* last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, value);
  if (error != std::errc{} || end != last) return std::nullopt;
  return value;
}

std::string OnlyLineFeeds(std::string text) {
  if (std::find(text.begin(), text.end(), '\r') == text.end()) return text;
  std::string joined;
  std::string_view line;
  LineReader reader(text);
  while (reader.Next(line)) joined.append(line) += '\n';
  // The last line has no end of its own, unless the text ends with one.
  if (text.back() != '\n' && text.back() != '\r') joined.pop_back();
  return joined;
}

Status BadIndex(const Control& control, const std::string& text) {
  return Status::Failure(control.Address() + " has no entry " + text);
}

}  // namespace

void Label::SetText(std::string text) {
  if (text == text_) return;
  text_ = std::move(text);
  Changed();
}

void TextBox::Replace(std::string text) {
  text_ = multiline ? OnlyLineFeeds(std::move(text)) : OneLine(std::move(text));
  selection_ = Inside(selection_);
}

TextBox::Range TextBox::Inside(Range range) const {
  range.end = std::min(range.end, text_.size());
  range.begin = std::min(range.begin, range.end);
  return range;
}

void TextBox::SetText(std::string text) {
  if (text == text_) return;
  Replace(std::move(text));
  Changed();
}

void TextBox::Select(Range range) {
  range = Inside(range);
  if (range == selection_) return;
  selection_ = range;
  Changed();
}

void TextBox::ReplaceSelection(std::string_view text) {
  const std::size_t behind = text_.size() - selection_.end;
  Replace(text_.substr(0, selection_.begin) + std::string(text) + text_.substr(selection_.end));
  selection_.begin = selection_.end = text_.size() - std::min(behind, text_.size());
  Changed();
}

int TextBox::CaretLine() const {
  const auto caret = text_.begin() + static_cast<std::ptrdiff_t>(selection_.end);
  return static_cast<int>(std::count(text_.begin(), caret, '\n'));
}

std::string_view TextBox::CaretLineText() const {
  const std::string_view text = text_;
  const std::string_view before = text.substr(0, selection_.end);
  const std::size_t begin = before.rfind('\n') + 1;  // npos + 1 = 0
  return text.substr(begin, text.find('\n', selection_.end) - begin);
}

void TextBox::MarkLine(int line) {
  if (line == marked_line_) return;
  marked_line_ = line;
  Changed();
}

Status TextBox::UserSet(const std::string& value) {
  if (Status typed = UserType(value); !typed.ok()) return typed;
  UserLeave();
  return Status::Ok();
}

Status TextBox::UserType(const std::string& text) {
  if (read_only) return Status::Failure(Address() + " can only be read");
  Replace(text);
  selection_ = {text_.size(), text_.size()};
  Changed();
  if (on_change) on_change();
  return Status::Ok();
}

Status TextBox::UserInsert(std::string_view text) {
  if (read_only) return Status::Failure(Address() + " can only be read");
  ReplaceSelection(text);
  if (on_change) on_change();
  return Status::Ok();
}

Status TextBox::UserErase() {
  if (selection_.begin == selection_.end) {
    const auto continues = [this](std::size_t i) {
      return (static_cast<unsigned char>(text_[i]) & 0xC0) == 0x80;
    };
    while (selection_.begin > 0 && continues(--selection_.begin)) continue;
  }
  return UserInsert({});
}

void TextBox::UserSelect(Range range) {
  selection_ = Inside(range);
  Changed();
  if (on_select) on_select();
}

Status TextBox::UserKey(Key key) {
  if (on_key) on_key(key);
  if (key.code == KeyCode::kEnter && on_commit) on_commit();
  return Status::Ok();
}

void TextBox::UserLeave() {
  if (on_lost_focus) on_lost_focus();
  if (on_commit) on_commit();
}

void Button::SetCaption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Changed();
}

Status Button::UserClick() {
  if (on_click) on_click();
  return Status::Ok();
}

bool Choice::Holds(int index) const {
  return index >= 0 && index < static_cast<int>(items_.size());
}

void Choice::SetItems(std::vector<std::string> items) {
  items_ = std::move(items);
  if (!Holds(selected_)) selected_ = -1;
  Changed();
}

void Choice::Select(int index) {
  if (!Holds(index)) index = -1;
  if (index == selected_) return;
  selected_ = index;
  Changed();
}

Status Choice::UserSet(const std::string& index) {
  const auto chosen = Index(index);
  return chosen ? UserChoose(*chosen) : BadIndex(*this, index);
}

Status Choice::UserChoose(int index) {
  if (!Holds(index)) return BadIndex(*this, std::to_string(index));
  Select(index);
  if (on_select) on_select(index);
  return Status::Ok();
}

void CheckBox::SetCaption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Changed();
}

void CheckBox::SetValue(int value) {
  value = std::clamp(value, 0, 2);
  if (value == value_) return;
  value_ = value;
  Changed();
}

Status CheckBox::UserSet(const std::string& value) {
  const auto chosen = Index(value);
  if (!chosen || *chosen < 0 || *chosen > 2) {
    return Status::Failure(Address() + " takes 0, 1 or 2, not " + value);
  }
  SetValue(*chosen);
  if (on_click) on_click(value_);
  return Status::Ok();
}

Status CheckBox::UserClick() {
  return UserSet(value_ == 0 ? "1" : "0");
}

Status UpDown::UserStep(int direction) {
  const auto& handler = direction > 0 ? on_up : on_down;
  if (handler) handler();
  return Status::Ok();
}

Grid::Grid(Form& form, std::string name, int rows, int columns)
    : Control(form, std::move(name)),
      rows_(rows),
      columns_(columns),
      cells_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)) {}

std::size_t Grid::At(int row, int column) const {
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
         static_cast<std::size_t>(column);
}

bool Grid::Holds(int row, int column) const {
  return row >= 0 && row < rows_ && column >= 0 && column < columns_;
}

void Grid::Resize(int rows, int columns) {
  std::vector<std::string> cells(static_cast<std::size_t>(rows) *
                                 static_cast<std::size_t>(columns));
  for (int row = 0; row < std::min(rows, rows_); ++row) {
    for (int column = 0; column < std::min(columns, columns_); ++column) {
      cells[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
            static_cast<std::size_t>(column)] = std::move(cells_[At(row, column)]);
    }
  }
  rows_ = rows;
  columns_ = columns;
  cells_ = std::move(cells);
  if (selected_row_ >= rows_) selected_row_ = -1;
  Changed();
}

const std::string& Grid::Cell(int row, int column) const {
  static const std::string kNone;
  return Holds(row, column) ? cells_[At(row, column)] : kNone;
}

void Grid::SetCell(int row, int column, std::string text) {
  if (!Holds(row, column)) return;
  std::string& cell = cells_[At(row, column)];
  if (cell == text) return;
  cell = std::move(text);
  if (redraw_) Changed();
}

void Grid::SelectRow(int row) {
  if (row < 0 || row >= rows_) row = -1;
  if (row == selected_row_) return;
  selected_row_ = row;
  if (redraw_) Changed();
}

void Grid::SetRedraw(bool on) {
  if (on == redraw_) return;
  redraw_ = on;
  if (on) Changed();
}

std::string Grid::Value() const {
  std::string text;
  for (int row = 0; row < rows_; ++row) {
    if (row > 0) text += '\n';
    for (int column = 0; column < columns_; ++column) {
      if (column > 0) text += '\t';
      text += Cell(row, column);
    }
  }
  return text;
}

Status Grid::UserClickCell(int row, int column) {
  if (!Holds(row, column)) {
    return Status::Failure(Address() + " has no cell " + std::to_string(row) + " " +
                           std::to_string(column));
  }
  SelectRow(row);
  if (on_click) on_click(row, column);
  return Status::Ok();
}

void MenuItem::SetCaption(std::string caption) {
  if (caption == caption_) return;
  caption_ = std::move(caption);
  Changed();
}

Status MenuItem::UserClick() {
  if (on_click) on_click();
  return Status::Ok();
}

std::string ListBox::Value() const {
  return selected() < 0 ? std::string() : items()[static_cast<std::size_t>(selected())];
}

Status ListBox::UserKey(Key key) {
  if (key.code == KeyCode::kEnter && selected() >= 0) return UserOpen(selected());
  return Status::Ok();
}

Status ListBox::UserOpen(int index) {
  if (Status chosen = UserChoose(index); !chosen.ok()) return chosen;
  if (on_open) on_open(index);
  return Status::Ok();
}

void ProgressBar::SetRange(int maximum) {
  maximum_ = std::max(maximum, 0);
  Changed();
}

void ProgressBar::SetPosition(int position) {
  position_ = std::clamp(position, 0, maximum_);
  Changed();
}

Timer::Timer(Form& form, std::string name)
    : Control(form, std::move(name)), entry_(form.host().timers, [this] { Tick(); }) {}

}  // namespace zento
