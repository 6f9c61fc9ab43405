#pragma once

#include <QScrollArea>

namespace zento {

// The room in which a form's page stands. As large as the page asks for, with scroll bars only
// where the screen is too small to show all of it.
class PageArea : public QScrollArea {
  Q_OBJECT

 public:
  explicit PageArea(QWidget* parent = nullptr);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace zento
