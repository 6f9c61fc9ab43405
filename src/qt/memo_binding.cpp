#include "qt/memo_binding.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QToolTip>
#include <algorithm>

#include "qt/qt_text.h"
#include "qt/text_offset.h"

namespace zento {
namespace {

// Width of a report's column, in average characters.
constexpr int kReportColumn = 16;

// Light enough for dark letters on it.
const QColor kMarkColour(255, 236, 150);

// The part in which two texts differ, in UTF-16 units, not cutting a character in two.
struct Difference {
  int begin = 0;
  int old_end = 0;
  int new_end = 0;
};

Difference Compare(const QString& before, const QString& after) {
  const qsizetype shorter = std::min(before.size(), after.size());
  qsizetype head = 0;
  while (head < shorter && before[head] == after[head]) ++head;
  if (head > 0 && before[head - 1].isHighSurrogate()) --head;
  qsizetype tail = 0;
  while (tail < shorter - head &&
         before[before.size() - 1 - tail] == after[after.size() - 1 - tail]) {
    ++tail;
  }
  if (tail > 0 && before[before.size() - tail].isLowSurrogate()) --tail;
  return {static_cast<int>(head), static_cast<int>(before.size() - tail),
          static_cast<int>(after.size() - tail)};
}

}  // namespace

MemoBinding::MemoBinding(TextBox& box, BindingContext& context)
    : TextBinding(box, context), edit_(new QPlainTextEdit) {
  Name(*edit_);
  edit_->setTabChangesFocus(true);
  edit_->installEventFilter(this);
  edit_->viewport()->installEventFilter(this);
  if (box.look) {
    // Lines that mean something each: as they stand, one below the other.
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    highlighter_ = new LineHighlighter(*edit_->document(), box.look);
  }
  if (box.read_only) {
    // A report: its columns one below the other, whatever the labels before them.
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit_->setTabStopDistance(kReportColumn * edit_->fontMetrics().averageCharWidth());
  }
  connect(edit_, &QPlainTextEdit::textChanged, this, [this] { TakeText(); });
  connect(edit_, &QPlainTextEdit::cursorPositionChanged, this, [this] { TakeSelection(); });
  connect(edit_, &QPlainTextEdit::selectionChanged, this, [this] { TakeSelection(); });
}

void MemoBinding::Detach() {
  TextBinding::Detach();
  // It looks through the form's eyes.
  delete highlighter_;
  highlighter_ = nullptr;
}

void MemoBinding::TakeText() {
  if (gone()) return;
  const QString text = edit_->toPlainText();
  shown_ = FromQt(text);
  taking_ = true;
  Typed(text);
  taking_ = false;
  if (gone()) return;
  TakeSelection();
}

void MemoBinding::TakeSelection() {
  if (gone() || taking_) return;
  const QTextCursor cursor = edit_->textCursor();
  const TextBox::Range range = {BytesBefore(shown_, cursor.selectionStart()),
                                BytesBefore(shown_, cursor.selectionEnd())};
  if (range == shown_selection_ && range == box().selection()) return;
  shown_selection_ = range;
  taking_ = true;
  box().UserSelect(range);
  taking_ = false;
  if (!gone()) Refresh();
}

void MemoBinding::Show() {
  ShowReadOnly(*edit_);
  ShowText();
  ShowSelection();
  ShowMark();
}

void MemoBinding::ShowText() {
  if (box().text() == shown_) return;
  const QSignalBlocker quiet(edit_);
  const QString before = ToQt(shown_);
  const QString after = ToQt(box().text());
  shown_ = box().text();
  if (before.isEmpty()) {
    edit_->setPlainText(after);
  } else {
    const Difference part = Compare(before, after);
    QTextCursor cursor(edit_->document());
    cursor.beginEditBlock();
    cursor.setPosition(part.begin);
    cursor.setPosition(part.old_end, QTextCursor::KeepAnchor);
    cursor.insertText(after.mid(part.begin, part.new_end - part.begin));
    cursor.endEditBlock();
  }
  const QTextCursor cursor = edit_->textCursor();
  shown_selection_ = {BytesBefore(shown_, cursor.selectionStart()),
                      BytesBefore(shown_, cursor.selectionEnd())};
}

void MemoBinding::ShowSelection() {
  const TextBox::Range range = box().selection();
  if (taking_ || range == shown_selection_) return;
  shown_selection_ = range;
  const QSignalBlocker quiet(edit_);
  QTextCursor cursor = edit_->textCursor();
  cursor.setPosition(UnitsBefore(shown_, range.begin));
  cursor.setPosition(UnitsBefore(shown_, range.end), QTextCursor::KeepAnchor);
  edit_->setTextCursor(cursor);
}

void MemoBinding::ShowMark() {
  const int line = box().marked_line();
  if (line == shown_mark_) return;
  shown_mark_ = line;
  const QTextBlock block = edit_->document()->findBlockByNumber(line);
  if (line < 0 || !block.isValid()) {
    edit_->setExtraSelections({});
    return;
  }
  QTextEdit::ExtraSelection mark;
  mark.cursor = QTextCursor(block);
  mark.format.setBackground(kMarkColour);
  mark.format.setProperty(QTextFormat::FullWidthSelection, true);
  edit_->setExtraSelections({mark});
  QScrollBar& bar = *edit_->verticalScrollBar();
  if (line < bar.value() || line >= bar.value() + bar.pageStep()) {
    bar.setValue(line - bar.pageStep() / 2);
  }
}

void MemoBinding::ShowFault(const QPoint& place, const QPoint& on_screen) {
  const int line = edit_->cursorForPosition(place).blockNumber();
  const std::string fault = highlighter_->FaultOf(line);
  if (fault.empty()) {
    QToolTip::hideText();
  } else {
    QToolTip::showText(on_screen, ToQt(fault), edit_);
  }
}

bool MemoBinding::eventFilter(QObject* watched, QEvent* event) {
  if (watched != edit_->viewport()) return TextBinding::eventFilter(watched, event);
  if (gone() || highlighter_ == nullptr || event->type() != QEvent::ToolTip) return false;
  const auto& help = *static_cast<QHelpEvent*>(event);
  ShowFault(help.pos(), help.globalPos());
  return true;
}

}  // namespace zento
