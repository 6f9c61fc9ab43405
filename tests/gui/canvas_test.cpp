// Pictures: increments, decimation, pointer events, what is copied and saved.

#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <QPrinter>
#include <QRegularExpression>
#include <QScreen>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <cmath>
#include <random>

#include "graph/decimate.h"
#include "graph/svg_surface.h"
#include "gui_fixture.h"
#include "qt/canvas_menu.h"
#include "qt/canvas_widget.h"
#include "qt/raster_surface.h"
#include "text/status.h"

namespace zento {
namespace {

using CanvasTest = GuiTest;

// A noisy curve that leaves the picture on all sides.
std::vector<Point> Noise(int count, double width, double height) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> y(-0.2 * height, 1.2 * height);
  std::vector<Point> points;
  for (int i = 0; i < count; ++i) points.push_back({width * 1.1 * i / count - 10, y(random)});
  return points;
}

QImage Blank(int width, int height, double ratio) {
  QImage image(static_cast<int>(width * ratio), static_cast<int>(height * ratio),
               QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::white);
  return image;
}

TEST(HairlineTest, MergingColumnsDecimatingAndDrawingPieceByPieceChangeNoPixel) {
  for (const double ratio : {1.0, 1.5, 2.0}) {
    for (const int count : {50, 3000}) {
      std::vector<Point> points = Noise(count, 400, 300);
      for (Point& at : points) at = {std::floor(at.x), std::floor(at.y)};
      QImage whole = Blank(400, 300, ratio);
      RasterSurface(whole).Polyline(points, {0, 0, 0});
      EXPECT_FALSE(whole == Blank(400, 300, ratio));
      QImage decimated = Blank(400, 300, ratio);
      RasterSurface(decimated).Polyline(DecimatePolyline(points), {0, 0, 0});
      EXPECT_TRUE(whole == decimated) << ratio << " " << count;
      QImage pieces = Blank(400, 300, ratio);
      RasterSurface surface(pieces);
      for (std::size_t i = 1; i < points.size(); ++i) {
        // Every other one backwards: direction does not matter.
        const bool forwards = i % 2 == 0;
        surface.Line(points[forwards ? i - 1 : i], points[forwards ? i : i - 1], {0, 0, 0});
      }
      EXPECT_TRUE(whole == pieces) << ratio << " " << count;
    }
  }
}

TEST(HairlineTest, TheClipCutsWithoutMovingAnything) {
  const std::vector<Point> points = Noise(200, 400, 300);
  const std::vector<Point> far = {{-1e12, 40}, {1e12, 60}, {200, -1e300}, {210, 1e300}};
  const QRect inside(37, 21, 150, 120);
  QImage whole = Blank(400, 300, 1);
  QImage clipped = Blank(400, 300, 1);
  {
    RasterSurface all(whole);
    all.Polyline(points, {0, 0, 0});
    all.Polyline(far, {0, 0, 0});
    RasterSurface some(clipped);
    some.SetClip({37, 21, 150, 120});
    some.Polyline(points, {0, 0, 0});
    some.Polyline(far, {0, 0, 0});
  }
  EXPECT_TRUE(whole.copy(inside) == clipped.copy(inside));
  QImage expected = Blank(400, 300, 1);
  {
    QPainter painter(&expected);
    painter.drawImage(inside, clipped, inside);
  }
  EXPECT_TRUE(clipped == expected) << "nothing outside";
}

TEST(HairlineTest, ALineOfSlopeOneHalf) {
  QImage image = Blank(6, 4, 1);
  RasterSurface(image).Line({0.5, 0.5}, {4.9, 2.2}, {0, 0, 0});
  std::string picture;
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 6; ++x) picture += image.pixelColor(x, y) == Qt::black ? '#' : '.';
    picture += '\n';
  }
  EXPECT_EQ(picture,
            "#.....\n"
            ".##...\n"
            "...##.\n"
            "......\n");
}

TEST_F(CanvasTest, IncrementsEqualAFullRepaintPixelByPixel) {
  demo::DemoForm& form = Show();
  auto* widget = Widget<CanvasWidget>(form, "PrevGraph");
  widget->Picture();
  const int paints = form.curve.paints;
  for (const Point& point : Noise(500, form.curve.size().width, form.curve.size().height)) {
    form.curve.Append(point);
  }
  const QImage increments = widget->Picture().copy();
  EXPECT_EQ(form.curve.paints, paints) << "nothing was painted anew";
  Settle();
  const QPixmap shown = Window(form)->screen()->grabWindow(Window(form)->winId());
  const QRect place(widget->mapTo(Window(form), QPoint()), widget->size());
  EXPECT_TRUE(shown.toImage().copy(place).convertToFormat(QImage::Format_RGB32) == increments)
      << "what the screen shows is the picture";
  form.curve.Refresh();
  const QImage whole = widget->Picture().copy();
  EXPECT_EQ(form.curve.paints, paints + 1);
  EXPECT_TRUE(increments == whole);
}

TEST_F(CanvasTest, RepaintsAreCoalesced) {
  demo::DemoForm& form = Show();
  Settle();
  const int paints = form.curve.paints;
  for (int i = 0; i < 50; ++i) form.curve.Refresh();
  form.curve.Append({5, 5});
  Settle();
  EXPECT_EQ(form.curve.paints, paints + 1);
  Window(form)->resize(Window(form)->size() + QSize(60, 40));
  Settle();
  EXPECT_EQ(form.curve.paints, paints + 2);
  EXPECT_EQ(form.curve.size().width, Widget(form, "PrevGraph")->width());
}

TEST_F(CanvasTest, PointerWheelAndReadout) {
  demo::DemoForm& form = Show();
  auto* widget = Widget<CanvasWidget>(form, "PrevGraph");
  QTest::mouseMove(widget, QPoint(30, 40));
  QTest::mouseMove(widget, QPoint(31, 42));
  QTest::mousePress(widget, Qt::LeftButton, Qt::ShiftModifier, QPoint(31, 42));
  ASSERT_EQ(form.curve.pressed.size(), 1U);
  EXPECT_EQ(form.curve.pressed[0].at, (Point{31, 42}));
  EXPECT_TRUE(form.curve.pressed[0].shift);
  auto* readout = Widget<QLabel>(form, "PrevGraph.readout");
  EXPECT_TRUE(readout->isVisible());
  EXPECT_EQ(readout->text(), "x = 31");
  QTest::mouseDClick(widget, Qt::LeftButton, {}, QPoint(31, 42));
  EXPECT_EQ(form.curve.double_clicks, 1);
  QWheelEvent wheel(QPointF(5, 5), widget->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, 240),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(widget, &wheel);
  EXPECT_EQ(form.curve.wheel, 2);
}

TEST_F(CanvasTest, TheContextMenuCopiesAndSavesThePicture) {
  demo::DemoForm& form = Show();
  auto* widget = Widget<CanvasWidget>(form, "PrevGraph");
  const auto right_click = [widget] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                            widget->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(widget, &event);
  };
  right_click();
  auto* menu = Widget<QMenu>(form, "PrevGraph.menu");
  QStringList captions;
  for (const QAction* action : menu->actions()) captions << action->text();
  EXPECT_EQ(captions, QStringList({"&Copy picture", "", "Save as P&NG...", "Save as &SVG...",
                                   "Save as P&DF...", "", "&Print..."}));
  menu->actions()[0]->trigger();
  const QImage copied = QApplication::clipboard()->image();
  EXPECT_TRUE(copied.convertToFormat(QImage::Format_RGB32) == widget->Picture());
  menu->close();
  Settle();
  const QTemporaryDir folder;
  const auto save = [&](int action, const char* name) {
    right_click();
    Widget<QMenu>(form, "PrevGraph.menu")->actions()[action]->trigger();
    Settle();
    auto* edit = OpenDialog<QFileDialog>()->findChild<QLineEdit*>("fileNameEdit");
    edit->setText(folder.filePath(name));
    QTest::keyClick(edit, Qt::Key_Return);
    Settle();
    return files.Read(PathFromQt(folder.filePath(name))).value();
  };
  EXPECT_EQ(QImage::fromData(QByteArray::fromStdString(save(2, "a.png"))).size(),
            widget->size() * 2);
  EXPECT_EQ(save(3, "a.svg"), CanvasAsSvg(form.curve));
  EXPECT_EQ(save(4, "a.pdf").substr(0, 4), "%PDF");
  // The form may go while its menu is open.
  right_click();
  host.host().desktop.Unload("frmDemo");
  Settle();
}

TEST_F(CanvasTest, PicturesHaveTheSizeAskedFor) {
  demo::DemoForm& form = Show();
  const Size size{420, 240};
  EXPECT_EQ(QImage::fromData(CanvasAsPng(form.curve, size, 2)).size(), QSize(840, 480));
  const QByteArray pdf = CanvasAsPdf(form.curve, size);
  const QRegularExpression page("/MediaBox \\[0 0 315(\\.0+)? 180(\\.0+)?\\]");
  EXPECT_TRUE(QString::fromLatin1(pdf).contains(page)) << "420 x 240 pixels in points";
  const QTemporaryDir folder;
  QPrinter printer;
  printer.setOutputFormat(QPrinter::PdfFormat);
  printer.setOutputFileName(folder.filePath("page.pdf"));
  PrintCanvas(form.curve, size, printer);
  EXPECT_GT(QFileInfo(folder.filePath("page.pdf")).size(), 1000);
}

}  // namespace
}  // namespace zento
