#include "qt/line_highlighter.h"

#include <QColor>
#include <QFont>
#include <QTextBlock>
#include <QTextCharFormat>
#include <QTextDocument>
#include <algorithm>
#include <utility>

#include "qt/qt_text.h"
#include "qt/text_offset.h"

namespace zento {
namespace {

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

}  // namespace

LineHighlighter::LineHighlighter(QTextDocument& document,
                                 std::function<LineLook(std::string_view, int)> look)
    : QSyntaxHighlighter(&document), look_(std::move(look)) {}

std::string LineHighlighter::FaultOf(int line) const {
  const QTextBlock block = document()->findBlockByNumber(line);
  return block.isValid() ? look_(FromQt(block.text()), line + 1).fault : std::string();
}

void LineHighlighter::highlightBlock(const QString& text) {
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

}  // namespace zento
