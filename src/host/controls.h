#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/control.h"
#include "host/timer_queue.h"

namespace zento {

// A text that only the program changes.
class Label : public Control {
 public:
  Label(Form& form, std::string name, std::string text = {}, int index = -1)
      : Control(form, std::move(name), index), text_(std::move(text)) {}
  ControlKind Kind() const override { return ControlKind::kLabel; }
  const std::string& text() const { return text_; }
  void SetText(std::string text);
  std::string Value() const override { return text_; }

 private:
  std::string text_;
};

// How pieces of a line look in a box of several lines.
enum class TextRole { kPlain, kKeyword, kNumber, kComment };

// A piece of a line, in bytes from the line's beginning.
struct TextSpan {
  std::size_t begin = 0;
  std::size_t end = 0;
  TextRole role = TextRole::kPlain;
  friend bool operator==(const TextSpan&, const TextSpan&) = default;
};

struct LineLook {
  std::vector<TextSpan> spans;  // in order, none over another
  std::string fault;            // what is wrong with the line, for a person; empty = nothing
};

// A line of text, or several when `multiline` is set before the form is shown. Line breaks cannot
// enter a single-line box: they are replaced by blanks. In a box of several lines they are all
// "\n", whatever they came as.
class TextBox : public Control {
 public:
  TextBox(Form& form, std::string name, std::string text = {}, int index = -1)
      : Control(form, std::move(name), index), text_(std::move(text)) {}
  ControlKind Kind() const override { return ControlKind::kTextBox; }

  const std::string& text() const { return text_; }
  void SetText(std::string text);
  std::string Value() const override { return text_; }

  bool multiline = false;
  bool read_only = false;

  // For several lines: colours a line, of which `number` counts from 1, and says what is wrong with
  // it. Depends on nothing but the line; only the words of the fault may depend on the number. Set
  // before the form is shown.
  std::function<LineLook(std::string_view line, int number)> look;

  // What is selected, in bytes, begin <= end; the caret stands at the end. Kept inside the text.
  struct Range {
    std::size_t begin = 0;
    std::size_t end = 0;
    friend bool operator==(const Range&, const Range&) = default;
  };
  Range selection() const { return selection_; }
  void Select(Range range);
  // Puts `text` where the selection is; the caret then stands behind it. Runs no handler.
  void ReplaceSelection(std::string_view text);
  // The line the caret stands in, from 0, and its text.
  int CaretLine() const;
  std::string_view CaretLineText() const;

  // A line that is pointed out, from 0; -1 = none.
  int marked_line() const { return marked_line_; }
  void MarkLine(int line);

  std::function<void()> on_change;      // after every change by a person
  std::function<void()> on_select;      // after a person moved the caret or selected
  std::function<void()> on_commit;      // a person leaves the box or presses Enter in it
  std::function<void()> on_lost_focus;  // a person leaves the box
  std::function<void(Key)> on_key;      // a key other than the typing of text

  Status UserSet(const std::string& value) override;
  Status UserType(const std::string& text) override;
  Status UserKey(Key key) override;
  // The person types or pastes where the selection is.
  Status UserInsert(std::string_view text);
  // The person deletes what is selected, or the character before the caret.
  Status UserErase();
  void UserSelect(Range range);
  // The person leaves the box.
  void UserLeave();

 private:
  void Replace(std::string text);
  Range Inside(Range range) const;
  std::string text_;
  Range selection_;
  int marked_line_ = -1;
};

class Button : public Control {
 public:
  Button(Form& form, std::string name, std::string caption, int index = -1)
      : Control(form, std::move(name), index), caption_(std::move(caption)) {}
  ControlKind Kind() const override { return ControlKind::kButton; }
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string caption);
  std::string Value() const override { return caption_; }

  bool is_default = false;  // Enter presses it
  bool is_cancel = false;   // Escape presses it

  std::function<void()> on_click;
  Status UserClick() override;

 private:
  std::string caption_;
};

// Texts of which one is chosen; the index is the stored value, -1 while none is.
class Choice : public Control {
 public:
  const std::vector<std::string>& items() const { return items_; }
  int selected() const { return selected_; }
  // An index outside the items selects none. Runs no handler.
  void Select(int index);
  std::string Value() const override { return std::to_string(selected_); }

  std::function<void(int)> on_select;
  // Choosing what is already chosen runs the handler too, as a click does.
  Status UserSet(const std::string& index) override;
  Status UserChoose(int index);

 protected:
  // Keeps the choice where the new items have its index.
  void SetItems(std::vector<std::string> items);

  Choice(Form& form, std::string name, int index, std::vector<std::string> items = {},
         int selected = -1)
      : Control(form, std::move(name), index), items_(std::move(items)), selected_(selected) {}

 private:
  bool Holds(int index) const;
  std::vector<std::string> items_;
  int selected_;
};

// Option buttons; the items are their captions.
class OptionGroup : public Choice {
 public:
  OptionGroup(Form& form, std::string name, std::vector<std::string> captions, int selected = -1)
      : Choice(form, std::move(name), -1, std::move(captions), selected) {}
  ControlKind Kind() const override { return ControlKind::kOptionGroup; }
};

// 0 = clear, 1 = checked, 2 = greyed.
class CheckBox : public Control {
 public:
  CheckBox(Form& form, std::string name, std::string caption, int index = -1)
      : Control(form, std::move(name), index), caption_(std::move(caption)) {}
  ControlKind Kind() const override { return ControlKind::kCheckBox; }
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string caption);
  int value() const { return value_; }
  // Runs no handler.
  void SetValue(int value);
  std::string Value() const override { return std::to_string(value_); }

  std::function<void(int)> on_click;
  Status UserSet(const std::string& value) override;
  // Toggles.
  Status UserClick() override;

 private:
  std::string caption_;
  int value_ = 0;
};

class ComboBox : public Choice {
 public:
  explicit ComboBox(Form& form, std::string name, int index = -1)
      : Choice(form, std::move(name), index) {}
  ControlKind Kind() const override { return ControlKind::kComboBox; }
  using Choice::SetItems;
};

// A pair of arrows; the form decides what a step means and shows it in another control.
class UpDown : public Control {
 public:
  UpDown(Form& form, std::string name) : Control(form, std::move(name)) {}
  ControlKind Kind() const override { return ControlKind::kUpDown; }
  std::string Value() const override { return {}; }

  std::function<void()> on_up;
  std::function<void()> on_down;
  Status UserStep(int direction) override;
};

// Rows and columns of text. Column headings and a first column of row labels are optional.
class Grid : public Control {
 public:
  Grid(Form& form, std::string name, int rows, int columns);
  ControlKind Kind() const override { return ControlKind::kGrid; }
  int rows() const { return rows_; }
  int columns() const { return columns_; }
  // Keeps the cells that both sizes have.
  void Resize(int rows, int columns);
  const std::string& Cell(int row, int column) const;
  // Cells outside the grid are ignored.
  void SetCell(int row, int column, std::string text);
  int selected_row() const { return selected_row_; }
  void SelectRow(int row);

  // While off, cell changes are not passed on one by one; switching it on passes on the whole.
  void SetRedraw(bool on);

  std::vector<std::string> headings;   // empty = none
  std::vector<int> column_widths;      // pixels; missing or 0 = fit, -1 = take what is left
  bool first_column_is_label = false;  // drawn as headings of the rows

  std::string Value() const override;
  std::function<void(int row, int column)> on_click;
  Status UserClickCell(int row, int column) override;

 private:
  std::size_t At(int row, int column) const;
  bool Holds(int row, int column) const;
  int rows_;
  int columns_;
  std::vector<std::string> cells_;
  int selected_row_ = -1;
  bool redraw_ = true;
};

// An entry of the menu bar, under the menu named `menu`; entries appear in the order in which they
// were made.
class MenuItem : public Control {
 public:
  MenuItem(Form& form, std::string name, std::string menu, std::string caption,
           std::string shortcut = {})
      : Control(form, std::move(name)),
        menu_(std::move(menu)),
        caption_(std::move(caption)),
        shortcut_(std::move(shortcut)) {}
  ControlKind Kind() const override { return ControlKind::kMenuItem; }
  const std::string& menu() const { return menu_; }
  const std::string& caption() const { return caption_; }
  void SetCaption(std::string caption);
  // "Ctrl+O"; empty = none.
  const std::string& shortcut() const { return shortcut_; }
  std::string Value() const override { return caption_; }

  bool separator_before = false;

  std::function<void()> on_click;
  Status UserClick() override;

 private:
  std::string menu_;
  std::string caption_;
  std::string shortcut_;
};

// One choice out of a list, by row.
class ListBox : public Choice {
 public:
  ListBox(Form& form, std::string name) : Choice(form, std::move(name), -1) {}
  ControlKind Kind() const override { return ControlKind::kListBox; }
  using Choice::SetItems;
  // The chosen text; empty while none is.
  std::string Value() const override;

  std::function<void(int)> on_open;  // double click, or Enter on the chosen row
  Status UserKey(Key key) override;
  Status UserOpen(int index);
};

class ProgressBar : public Control {
 public:
  ProgressBar(Form& form, std::string name) : Control(form, std::move(name)) {}
  ControlKind Kind() const override { return ControlKind::kProgressBar; }
  int maximum() const { return maximum_; }
  int position() const { return position_; }
  void SetRange(int maximum);
  void SetPosition(int position);
  std::string Value() const override { return std::to_string(position_); }

 private:
  int maximum_ = 100;
  int position_ = 0;
};

// Controls of one kind under one name, told apart by their index from 0.
template <typename C, std::size_t N>
class ControlArray {
 public:
  // Each element's text or caption is `captions[i]`; elements that have none take none.
  ControlArray(Form& form, const std::string& name, const std::array<std::string, N>& captions)
      : ControlArray(form, name, captions, std::make_index_sequence<N>{}) {}
  ControlArray(Form& form, const std::string& name)
      : ControlArray(form, name, std::array<std::string, N>{}) {}

  C& operator[](std::size_t i) { return elements_[i]; }
  const C& operator[](std::size_t i) const { return elements_[i]; }
  static constexpr std::size_t size() { return N; }

 private:
  template <std::size_t... I>
  ControlArray(Form& form, const std::string& name, const std::array<std::string, N>& captions,
               std::index_sequence<I...>)
      : elements_{Make(form, name, captions[I], static_cast<int>(I))...} {}

  static C Make(Form& form, const std::string& name, const std::string& caption, int index) {
    if constexpr (std::is_constructible_v<C, Form&, std::string, std::string, int>) {
      return C(form, name, caption, index);
    } else {
      return C(form, name, index);
    }
  }

  std::array<C, N> elements_;
};

// A form's periodic timer. See TimerQueue for its cadence.
class Timer : public Control {
 public:
  Timer(Form& form, std::string name);
  ControlKind Kind() const override { return ControlKind::kTimer; }
  // Milliseconds, at least 1.
  void SetInterval(std::int64_t millis) { entry_.SetInterval(millis); }
  std::int64_t Interval() const { return entry_.Interval(); }
  void SetEnabled(bool enabled) { entry_.SetEnabled(enabled); }
  bool Enabled() const { return entry_.Enabled(); }
  std::string Value() const override { return std::to_string(entry_.Interval()); }

  std::function<void()> on_tick;

 private:
  void Tick() {
    if (on_tick) on_tick();
  }
  TimerQueue::PeriodicTimer entry_;
};

}  // namespace zento
