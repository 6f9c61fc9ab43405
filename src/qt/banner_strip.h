#pragma once

#include <QLabel>
#include <QString>

namespace zento {

// The line that every window shows all the time. Where the window is too narrow for all of
// "WHAT - explanation", the explanation moves into the tool tip; the first part is never cut.
class BannerStrip : public QLabel {
  Q_OBJECT

 public:
  explicit BannerStrip(QWidget* parent = nullptr);
  void SetBanner(const QString& banner);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QString Short() const;
  int WidthOf(const QString& text) const;
  void Fit();
  QString banner_;
};

}  // namespace zento
