#include "graph/preview_plot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "core/tables.h"
#include "graph/test_surface.h"
#include "host/virtual/virtual_host.h"

namespace zento {
namespace {

constexpr Colour kInk{255, 0, 0};
constexpr Colour kOther{0, 0, 255};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

class PlotForm : public Form {
 public:
  explicit PlotForm(Host& host) : Form(host, "frmPlot", "Plot"), PrevGraph(*this, "PrevGraph") {}
  LayoutNode Layout() override { return layout::Item(PrevGraph); }
  PreviewPlot PrevGraph;
};

PointerEvent At(Point at, PointerButton button = PointerButton::kNone, bool shift = false) {
  return {at, button, shift, false};
}

class PreviewPlotTest : public testing::Test {
 protected:
  PreviewPlotTest() {
    plot.Resize({600, 400});
    plot.SetFormats("0.0", "0.0e+0");
    plot.SetRange(-0.2, -1e-5, 0.8, 1e-5);
    plot.SetSteps(0.2, 5e-6);
    plot.SetAxisTitles("Potential /V", "Current /A");
    Painted();
  }

  TestSurface Painted(Size size = {600, 400}) {
    TestSurface surface(size);
    plot.Paint(surface);
    return surface;
  }
  // The surface place of a part of the plot area.
  Point Place(double across, double down) const {
    const Rect area = plot.PlotArea();
    return {area.x + across * area.width, area.y + down * area.height};
  }
  void Drag(Point from, Point to, PointerButton button, bool shift = false) {
    plot.PointerPressed(At(from, button, shift));
    plot.PointerMoved(At(to, button, shift));
    plot.PointerReleased(At(to, button, shift));
  }
  void ExpectShown(const WorldWindow& wanted) const {
    EXPECT_NEAR(plot.shown().x1, wanted.x1, 1e-9);
    EXPECT_NEAR(plot.shown().x2, wanted.x2, 1e-9);
    EXPECT_NEAR(plot.shown().y1, wanted.y1, 1e-14);
    EXPECT_NEAR(plot.shown().y2, wanted.y2, 1e-14);
  }

  VirtualHost machine;
  PlotForm form{machine.host};
  PreviewPlot& plot = form.PrevGraph;
};

TEST_F(PreviewPlotTest, AxesStandOutsideThePlotAreaAndAreLabelled) {
  const TestSurface picture = Painted();
  const Rect area = plot.PlotArea();
  for (const char* label : {"-0.2", "0.8", "5.0e-6", "-1.0e-5", "Potential /V", "Current /A"}) {
    ASSERT_NE(picture.Find(label), nullptr) << label;
    const Rect& rect = picture.Find(label)->rect;
    EXPECT_TRUE(rect.x + rect.width <= area.x || rect.y >= area.y + area.height) << label;
    EXPECT_TRUE(rect.x >= 0 && rect.y >= 0 && rect.x + rect.width <= 600 &&
                rect.y + rect.height <= 400)
        << label;
  }
}

TEST_F(PreviewPlotTest, CurvesStayInsideThePlotArea) {
  plot.Line(-10, -1, 10, 1, kInk);
  plot.Line(0.3, -1e300, 0.3, 1e300, kInk);
  plot.Line(-1, 2e-6, 2, 2e-6, kInk);
  plot.Dot(0, 0, kOther);
  plot.Dot(5, 0, kOther);
  plot.Dot(kNan, kInf, kOther);
  const TestSurface picture = Painted();
  const Rect area = plot.PlotArea();
  int outside = 0;
  for (int y = 0; y < 400; ++y) {
    for (int x = 0; x < 600; ++x) {
      const bool in =
          x >= area.x && x < area.x + area.width && y >= area.y && y < area.y + area.height;
      if (!in && (picture.At(x, y) == kInk || picture.At(x, y) == kOther)) ++outside;
    }
  }
  EXPECT_EQ(outside, 0);
  // The lines cross the whole area although their ends lie far away.
  EXPECT_GE(picture.Count(kInk), 2 * area.height + area.width - 8);
  EXPECT_EQ(picture.Count(kOther), 1);
}

TEST_F(PreviewPlotTest, AValueStandsInItsPlaceAndOneWithoutInterruptsTheLine) {
  const double x[] = {0, 0.1, kNan, 0.5, 0.6};
  const double y[] = {0, 0, 0, 0, 0};
  plot.Polyline(x, y, kInk);
  plot.Dot(0.55, 0.75e-5, kOther);
  const TestSurface picture = Painted();
  EXPECT_NEAR(picture.Count(kInk), 0.2 * plot.PlotArea().width, 4);
  const Point at = Place(0.75, 0.125);  // upwards
  EXPECT_EQ(picture.At(static_cast<int>(at.x), static_cast<int>(at.y)), kOther);
}

TEST_F(PreviewPlotTest, TheWheelZoomsAboutThePointer) {
  const Point pointer = Place(0.25, 0.75);
  plot.PointerMoved(At(pointer));
  const std::string before = plot.Readout();
  EXPECT_THAT(before, testing::StartsWith("0.05"));
  plot.WheelTurned(At(pointer), 3);
  EXPECT_TRUE(plot.Zoomed());
  const double factor = std::pow(0.8, 3);
  ExpectShown({0.05 - 0.25 * factor, -5e-6 + 1.5e-5 * factor, 0.05 + 0.75 * factor,
               -5e-6 - 0.5e-5 * factor});
  plot.WheelTurned(At(pointer), -3);
  ExpectShown({-0.2, 1e-5, 0.8, -1e-5});
}

TEST_F(PreviewPlotTest, TheWheelOverAnAxisZoomsThatAxis) {
  const Rect area = plot.PlotArea();
  plot.WheelTurned(At({area.x + area.width / 2, area.y + area.height + 8}), 1);
  ExpectShown({-0.1, 1e-5, 0.7, -1e-5});
  plot.ResetZoom();
  plot.WheelTurned(At({area.x - 8, area.y + area.height / 2}), 1);
  ExpectShown({-0.2, 0.8e-5, 0.8, -0.8e-5});
}

TEST_F(PreviewPlotTest, ZoomedTicksAreFinerAndTellApart) {
  plot.WheelTurned(At(Place(0.5, 0.5)), 15);
  const TestSurface picture = Painted();
  std::size_t on_x = 0;
  for (std::size_t i = 0; i < picture.texts.size(); ++i) {
    if (picture.texts[i].rect.y > plot.PlotArea().y + plot.PlotArea().height) ++on_x;
    for (std::size_t k = 0; k < i; ++k) EXPECT_NE(picture.texts[i].text, picture.texts[k].text);
  }
  EXPECT_GE(on_x, 4U);
}

TEST_F(PreviewPlotTest, ARubberBandShowsWhatItEncloses) {
  Drag(Place(0.75, 0.75), Place(0.25, 0.25), PointerButton::kLeft);
  ExpectShown({0.05, 5e-6, 0.55, -5e-6});
  // Dragged out of the area it ends at the edge.
  plot.ResetZoom();
  Drag(Place(0.5, 0.5), {5000, -5000}, PointerButton::kLeft);
  ExpectShown({0.3, 1e-5, 0.8, 0});
  // A click is no band, and neither is a drag that began outside.
  plot.ResetZoom();
  Drag(Place(0.5, 0.5), Place(0.5, 0.505), PointerButton::kLeft);
  Drag({1, 1}, Place(0.5, 0.5), PointerButton::kLeft);
  EXPECT_FALSE(plot.Zoomed());
  // Flat along one axis: the other one alone.
  Drag(Place(0.25, 0.5), Place(0.75, 0.505), PointerButton::kLeft);
  ExpectShown({0.05, 1e-5, 0.55, -1e-5});
}

TEST_F(PreviewPlotTest, PanningTakesTheWorldAlongAndADoubleClickGoesBack) {
  Drag(Place(0.5, 0.5), Place(0.75, 0.5), PointerButton::kMiddle);
  ExpectShown({-0.45, 1e-5, 0.55, -1e-5});
  Drag(Place(0.5, 0.5), Place(0.5, 0.75), PointerButton::kLeft, true);
  ExpectShown({-0.45, 1.5e-5, 0.55, -0.5e-5});
  plot.PointerPressed(At(Place(0.5, 0.5), PointerButton::kLeft));
  plot.DoubleClicked(At(Place(0.5, 0.5), PointerButton::kLeft));
  plot.PointerReleased(At(Place(0.9, 0.9), PointerButton::kLeft));
  EXPECT_FALSE(plot.Zoomed());
}

TEST_F(PreviewPlotTest, ZoomEndsWhereArithmeticWould) {
  for (int i = 0; i < 2000; ++i) plot.WheelTurned(At(Place(0.9, 0.3)), 1);
  EXPECT_LT(plot.shown().x1, plot.shown().x2);
  EXPECT_GT(plot.shown().y1, plot.shown().y2);
  EXPECT_FALSE(Painted().texts.empty());
  for (int i = 0; i < 4000; ++i) plot.WheelTurned(At(Place(0.9, 0.3)), -1);
  plot.WheelTurned(At(Place(0.9, 0.3)), kNan);
  EXPECT_TRUE(std::isfinite(plot.shown().x2 - plot.shown().x1));
  EXPECT_FALSE(Painted().texts.empty());
}

TEST_F(PreviewPlotTest, TheSameRangeAgainKeepsTheZoomAndAnotherOneEndsIt) {
  plot.WheelTurned(At(Place(0.5, 0.5)), 1);
  plot.Clear();
  plot.SetRange(-0.2, -1e-5, 0.8, 1e-5);
  EXPECT_TRUE(plot.Zoomed());
  plot.SetRange(0, 0, 1, 1);
  EXPECT_FALSE(plot.Zoomed());
}

TEST_F(PreviewPlotTest, AnyRangeAndSizeCanBeDrawn) {
  const double values[] = {0, 1, -1, 1e-300, 1e300, kNan, kInf, 0.25};
  for (const double a : values) {
    for (const double b : values) {
      plot.SetRange(a, b, b, a);
      plot.SetSteps(a, b);
      plot.Dot(a, b, kInk);
      plot.Line(a, b, b, a, kOther);
      plot.Mark(a, b, kOther);
      for (const Size size : {Size{600, 400}, Size{70, 30}, Size{1, 1}}) {
        EXPECT_LT(Painted(size).calls, 2000);
      }
    }
  }
}

TEST_F(PreviewPlotTest, ReadoutOnlyOverThePlot) {
  plot.PointerMoved(At({1, 1}));
  EXPECT_EQ(plot.Readout(), "");
  plot.PointerMoved(At(Place(0.5, 0.5)));
  EXPECT_EQ(plot.Readout(), "0.300, 0.000e+0");
  plot.PointerLeft();
  EXPECT_EQ(plot.Readout(), "");
}

}  // namespace
}  // namespace zento
