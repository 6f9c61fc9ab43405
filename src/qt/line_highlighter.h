#pragma once

#include <QSyntaxHighlighter>
#include <functional>
#include <string>

#include "host/controls.h"

namespace zento {

// Colours the lines of a text and underlines those with a fault, as the box's `look` says. Only
// lines that change are looked at again.
class LineHighlighter final : public QSyntaxHighlighter {
 public:
  LineHighlighter(QTextDocument& document, std::function<LineLook(std::string_view, int)> look);

  // What is wrong with the line, numbered from 0; empty = nothing.
  std::string FaultOf(int line) const;

 protected:
  void highlightBlock(const QString& text) override;

 private:
  std::function<LineLook(std::string_view, int)> look_;
};

}  // namespace zento
