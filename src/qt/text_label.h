#pragma once

#include <QFrame>
#include <QString>

namespace zento {

// One or more lines of text that change often. Unlike QLabel it does not ask for a new layout at
// every change: it only ever asks for more room, so a counting value does not make the window
// tremble. What is wider than the room is cut with an ellipsis and shown whole as the tool tip.
class TextLabel : public QFrame {
  Q_OBJECT
  Q_PROPERTY(QString text READ text WRITE setText)

 public:
  explicit TextLabel(QWidget* parent = nullptr);
  const QString& text() const { return text_; }
  void setText(const QString& text);  // NOLINT(readability-identifier-naming): a Qt property
  // The hint that stands before the text when that is cut.
  void SetTip(const QString& tip);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Grow();
  void ShowTip();
  QString text_;
  QString tip_;
  QSize wanted_;
};

}  // namespace zento
