// Files dropped on a window.

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

#include "gui_fixture.h"
#include "host/file_target.h"

namespace zento {
namespace {

class TakingForm : public demo::DemoForm, public FileTarget {
 public:
  using DemoForm::DemoForm;
  void FilesDropped(const std::vector<std::filesystem::path>& files) override { dropped = files; }
  std::vector<std::filesystem::path> dropped;
};

class DropTest : public GuiTest {
 protected:
  // Drags `data` over `target` and lets go. False when the target would not have it.
  static bool Drop(QWidget& target, const QMimeData& data) {
    const QPoint at = target.rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent drop(at, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(&target, &drop);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction);  // the file manager keeps its file
    return drop.isAccepted();
  }
  TakingForm& ShowTaking() {
    host.host().desktop.Register("frmDemo",
                                 [this] { return std::make_unique<TakingForm>(host.host()); });
    return dynamic_cast<TakingForm&>(Show());
  }
};

TEST_F(DropTest, FilesReachTheFormWhereverTheyAreDropped) {
  TakingForm& form = ShowTaking();
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QStringLiteral("/data/銀 1.znt")),
                QUrl(QStringLiteral("https://example.org/a.znt")),
                QUrl::fromLocalFile(QStringLiteral("/data/b.znt"))});
  const std::vector<std::filesystem::path> expected = {"/data/銀 1.znt", "/data/b.znt"};
  EXPECT_TRUE(Drop(*Window(form), data));
  EXPECT_EQ(form.dropped, expected);
  form.dropped.clear();
  auto* title = Widget<QLineEdit>(form, "txtTitle");
  const QString before = title->text();
  EXPECT_TRUE(Drop(*title, data));
  EXPECT_EQ(form.dropped, expected);
  EXPECT_EQ(title->text(), before);
}

TEST_F(DropTest, OtherDragsStayWithTheWidgets) {
  TakingForm& form = ShowTaking();
  QMimeData text;
  text.setText(QStringLiteral("0.5"));
  EXPECT_FALSE(Drop(*Window(form), text));
  EXPECT_TRUE(Drop(*Widget<QLineEdit>(form, "txtTitle"), text));
  EXPECT_TRUE(Widget<QLineEdit>(form, "txtTitle")->text().contains(QStringLiteral("0.5")));
  QMimeData elsewhere;
  elsewhere.setUrls({QUrl(QStringLiteral("https://example.org/a.znt"))});
  EXPECT_FALSE(Drop(*Window(form), elsewhere));
  EXPECT_TRUE(form.dropped.empty());
  // A form that takes no files gets none.
  host.host().desktop.Unload("frmDemo");
  Settle();
  host.host().desktop.Register("frmDemo",
                               [this] { return std::make_unique<demo::DemoForm>(host.host()); });
  elsewhere.setUrls({QUrl::fromLocalFile(QStringLiteral("/data/a.znt"))});
  EXPECT_FALSE(Drop(*Window(Show()), elsewhere));
}

}  // namespace
}  // namespace zento
