#include "qt/window_parts.h"

#include <QAction>
#include <QDropEvent>
#include <QFontMetrics>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QUrl>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "host/controls.h"
#include "host/file_target.h"
#include "host/form.h"
#include "qt/qt_text.h"
#include "text/status.h"

namespace zento {
namespace {

constexpr int kMargin = 12;
constexpr int kPadding = 4;
// Set explicitly: it stands out on light and dark desktops alike.
constexpr char kBannerLook[] = "background: #ffe08a; color: #3d2b00;";

// What a window's frame, menu bar and banner may take of the screen.
constexpr QSize kAround(40, 120);

// Marks the first letter that is not in `taken` as the mnemonic.
QString WithMnemonic(const QString& caption, QString& taken) {
  QString text = caption;
  for (qsizetype i = 0; i < text.size(); ++i) {
    const QChar letter = text.at(i).toUpper();
    if (!letter.isLetter() || letter.unicode() > 127 || taken.contains(letter)) continue;
    taken += letter;
    text.replace(QLatin1Char('&'), QLatin1String("&&"));
    // Ampersands before the letter have been doubled.
    return text.insert(i + caption.left(i).count(QLatin1Char('&')), QLatin1Char('&'));
  }
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

std::vector<std::filesystem::path> LocalFiles(const QMimeData* data) {
  std::vector<std::filesystem::path> files;
  if (data == nullptr || !data->hasUrls()) return files;
  for (const QUrl& url : data->urls()) {
    if (url.isLocalFile()) files.push_back(PathFromQt(url.toLocalFile()));
  }
  return files;
}

class FileDrop : public QObject {
 public:
  FileDrop(QWidget& window, std::function<FileTarget*()> target, std::function<void()> before)
      : QObject(&window), target_(std::move(target)), before_(std::move(before)) {
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    for (QWidget* widget : window.findChildren<QWidget*>()) widget->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    const QEvent::Type type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop) {
      return QObject::eventFilter(watched, event);
    }
    auto* drop = static_cast<QDropEvent*>(event);  // drags are drops too
    const std::vector<std::filesystem::path> files = LocalFiles(drop->mimeData());
    if (files.empty() || target_() == nullptr) return QObject::eventFilter(watched, event);
    // The files are read, whatever the file manager would rather have done with them.
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop) {
      before_();
      if (FileTarget* target = target_()) target->FilesDropped(files);
    }
    return true;
  }

 private:
  std::function<FileTarget*()> target_;
  std::function<void()> before_;
};

}  // namespace

void TakeDroppedFiles(QWidget& window, std::function<FileTarget*()> target,
                      std::function<void()> before) {
  new FileDrop(window, std::move(target), std::move(before));  // the window's
}

BannerStrip::BannerStrip() {
  setTextFormat(Qt::PlainText);
  setAlignment(Qt::AlignCenter);
  setStyleSheet(QLatin1String(kBannerLook));
  QFont bold = font();
  bold.setBold(true);
  setFont(bold);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void BannerStrip::SetBanner(const QString& banner) {
  banner_ = banner;
  setVisible(!banner.isEmpty());
  Fit();
  updateGeometry();
}

QString BannerStrip::Short() const {
  return banner_.section(QLatin1String(" - "), 0, 0);
}

int BannerStrip::WidthOf(const QString& text) const {
  return fontMetrics().horizontalAdvance(text) + 2 * kMargin;
}

QSize BannerStrip::minimumSizeHint() const {
  return {WidthOf(Short()), fontMetrics().height() + 2 * kPadding};
}

void BannerStrip::resizeEvent(QResizeEvent*) {
  Fit();
}

void BannerStrip::Fit() {
  const bool whole = WidthOf(banner_) <= width();
  setText(whole ? banner_ : Short());
  setToolTip(whole ? QString() : banner_);
}

PageArea::PageArea() {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setWidget(new QWidget);
  widget()->installEventFilter(this);
}

QSize PageArea::sizeHint() const {
  return widget()->sizeHint().expandedTo(minimumSizeHint());
}

QSize PageArea::minimumSizeHint() const {
  const QSize page = widget()->minimumSizeHint();
  const QScreen* shown_on = screen();
  if (shown_on == nullptr) return page;
  return page.boundedTo(shown_on->availableSize() - kAround);
}

bool PageArea::eventFilter(QObject* watched, QEvent* event) {
  // The page wants another size: so does the area, and the window around it.
  if (watched == widget() && event->type() == QEvent::LayoutRequest) updateGeometry();
  return QScrollArea::eventFilter(watched, event);
}

FormMenu::FormMenu(Form& form, QMenuBar& bar, std::function<void()> before_action)
    : before_action_(std::move(before_action)) {
  std::map<std::string, QMenu*> menus;
  QString taken;
  for (Control* control : form.controls()) {
    auto* entry = dynamic_cast<MenuItem*>(control);
    if (entry == nullptr) continue;
    QMenu*& menu = menus[entry->menu()];
    if (menu == nullptr) {
      menu = bar.addMenu(WithMnemonic(ToQt(entry->menu()), taken));
      menu->setObjectName(QLatin1String("menu.") + ToQt(entry->menu()));
      menu->setToolTipsVisible(true);
    }
    Add(*entry, *menu);
  }
  bar.setVisible(!menus.empty());
}

void FormMenu::Add(MenuItem& entry, QMenu& menu) {
  if (entry.separator_before) menu.addSeparator();
  QString taken = menu.property("mnemonics").toString();
  QAction* action = menu.addAction(WithMnemonic(ToQt(entry.caption()), taken));
  menu.setProperty("mnemonics", taken);
  action->setObjectName(ToQt(entry.Address()));
  if (!entry.shortcut().empty()) {
    action->setShortcut(QKeySequence(ToQt(entry.shortcut()), QKeySequence::PortableText));
  }
  actions_[&entry] = action;
  connect(action, &QAction::triggered, this, [this, &entry] {
    if (gone_) return;
    before_action_();
    if (!gone_ && entry.Usable()) static_cast<void>(entry.UserClick());
  });
  Refresh(entry);
}

void FormMenu::Refresh(const Control& control) {
  const auto found = actions_.find(&control);
  if (gone_ || found == actions_.end()) return;
  QAction& action = *found->second;
  // Captions that change keep no mnemonic: it could meet another one's.
  const QString caption = ToQt(control.Value());
  if (action.text().remove(QLatin1Char('&')) != QString(caption).remove(QLatin1Char('&'))) {
    action.setText(QString(caption).replace(QLatin1Char('&'), QLatin1String("&&")));
  }
  action.setEnabled(control.enabled());
  action.setVisible(control.visible());
  if (!control.tip().empty()) action.setToolTip(ToQt(control.tip()));
}

}  // namespace zento
