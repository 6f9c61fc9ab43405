#include <QFontDatabase>
#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSyntaxHighlighter>
#include <QTextBlock>
#include <QToolTip>
#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "qt/qt_text.h"
#include "qt/text_bindings.h"

// Boxes of several lines: notes, reports, the macro editor.

namespace zento {
namespace {

// Places in a text: the program counts UTF-8 bytes, the toolkit UTF-16 units.

// How many units a character takes whose first byte is `lead`; 0 for the bytes that follow it.
int UnitsOf(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if ((byte & 0xC0) == 0x80) return 0;
  return byte >= 0xF0 ? 2 : 1;
}

int UnitsBefore(std::string_view text, std::size_t bytes) {
  int units = 0;
  for (const char byte : text.substr(0, std::min(bytes, text.size()))) units += UnitsOf(byte);
  return units;
}

std::size_t BytesBefore(std::string_view text, int units) {
  std::size_t i = 0;
  for (; i < text.size(); ++i) {
    const int next = UnitsOf(text[i]);
    if (next > 0 && units <= 0) break;
    units -= next;
  }
  return i;
}

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

QTextCharFormat FormatOf(TextRole role) {
  QTextCharFormat format;
  switch (role) {
    case TextRole::kKeyword:
      format.setForeground(QColor(18, 60, 140));
      format.setFontWeight(QFont::Bold);
      break;
    case TextRole::kNumber:
      format.setForeground(QColor(150, 60, 0));
      break;
    case TextRole::kComment:
      format.setForeground(QColor(70, 110, 60));
      format.setFontItalic(true);
      break;
    case TextRole::kPlain:
      break;
  }
  return format;
}

// Colours the lines of a text and underlines those with a fault, as the box's `look` says. Only
// lines that change are looked at again.
class LineHighlighter final : public QSyntaxHighlighter {
 public:
  LineHighlighter(QTextDocument& document, std::function<LineLook(std::string_view, int)> look)
      : QSyntaxHighlighter(&document), look_(std::move(look)) {}

  // What is wrong with the line, numbered from 0; empty = nothing.
  std::string FaultOf(int line) const {
    const QTextBlock block = document()->findBlockByNumber(line);
    return block.isValid() ? look_(FromQt(block.text()), line + 1).fault : std::string();
  }

 protected:
  void highlightBlock(const QString& text) override {
    const std::string line = FromQt(text);
    const LineLook look = look_(line, currentBlock().blockNumber() + 1);
    QTextCharFormat base;
    if (!look.fault.empty()) {
      base.setUnderlineStyle(QTextCharFormat::WaveUnderline);
      base.setUnderlineColor(Qt::red);
      const std::size_t first = std::min(line.find_first_not_of(' '), line.size());
      const int begin = UnitsBefore(line, first);
      setFormat(begin, static_cast<int>(text.size()) - begin, base);
    }
    for (const TextSpan& span : look.spans) {
      QTextCharFormat format = base;
      format.merge(FormatOf(span.role));
      const int begin = UnitsBefore(line, span.begin);
      setFormat(begin, UnitsBefore(line, span.end) - begin, format);
    }
  }

 private:
  std::function<LineLook(std::string_view, int)> look_;
};

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
  TextBox::Range RangeOf(const QTextCursor& cursor) const;
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

TextBox::Range MemoBinding::RangeOf(const QTextCursor& cursor) const {
  return {BytesBefore(shown_, cursor.selectionStart()), BytesBefore(shown_, cursor.selectionEnd())};
}

void MemoBinding::TakeSelection() {
  if (gone() || taking_) return;
  const TextBox::Range range = RangeOf(edit_->textCursor());
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
  shown_selection_ = RangeOf(edit_->textCursor());
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

}  // namespace

std::unique_ptr<ControlBinding> BindMemo(TextBox& box, BindingContext& context) {
  return std::make_unique<MemoBinding>(box, context);
}

}  // namespace zento
