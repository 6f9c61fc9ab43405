#pragma once

#include <QPlainTextEdit>
#include <string>

#include "qt/line_highlighter.h"
#include "qt/text_bindings.h"

namespace zento {

// A box of several lines. What the program changes is edited into the shown text where it differs,
// so that a person's undo, scroll position and colours stay.
class MemoBinding final : public TextBinding {
 public:
  MemoBinding(TextBox& box, BindingContext& context);
  QWidget& widget() override { return *edit_; }
  bool Tall() const override { return true; }
  void Detach() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void Show() override;

 private:
  void TakeText();
  void TakeSelection();
  void ShowText();
  void ShowSelection();
  void ShowMark();
  void ShowFault(const QPoint& place, const QPoint& on_screen);

  QPlainTextEdit* edit_;
  LineHighlighter* highlighter_ = nullptr;  // belongs to the document
  // What the widget shows of the box.
  std::string shown_;
  TextBox::Range shown_selection_;
  int shown_mark_ = -1;
  bool taking_ = false;  // a person's edit is being passed on
};

}  // namespace zento
