// What drawing costs on a picture in memory, 1000 x 700: a whole voltammogram of 40001 points
// beside one QPainter polyline of the same points, and one more live point with all of them there.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPolygonF>
#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <vector>

#include "graph/graph_form.h"
#include "graph/preview_plot.h"
#include "host/desktop.h"
#include "host/native/native_clock.h"
#include "host/native/native_files.h"
#include "host/services.h"
#include "qt/qt_host.h"
#include "qt/raster_surface.h"

namespace {

using namespace zento;

constexpr int kPoints = 40001;
constexpr int kWidth = 1000;
constexpr int kHeight = 700;

// Ten cycles between -0.2 V and 0.6 V with a wave and the noise of a 12 bit board; V, A.
std::vector<Point> Voltammogram() {
  std::mt19937 random(3);
  std::normal_distribution<double> noise(0, 4e-6);
  std::vector<Point> points;
  for (int i = 0; i < kPoints; ++i) {
    const double phase = 10.0 * i / kPoints;
    const double up = phase - std::floor(phase);
    const double volts = up < 0.5 ? -0.2 + 1.6 * up : 0.6 - 1.6 * (up - 0.5);
    const double wave = (up < 0.5 ? 1 : -1) * std::exp(-std::pow((volts - 0.22) / 0.08, 2));
    points.push_back({volts, 4e-4 * wave + noise(random)});
  }
  return points;
}

constexpr double kLeft = -0.2;
constexpr double kRight = 0.6;
constexpr double kTop = 5e-4;
constexpr double kBottom = -5e-4;

std::vector<Point> OnScreen() {
  std::vector<Point> points = Voltammogram();
  for (Point& point : points) {
    point = {(point.x - kLeft) / (kRight - kLeft) * kWidth,
             (point.y - kTop) / (kBottom - kTop) * kHeight};
  }
  return points;
}

QImage Screen() {
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  image.fill(Qt::white);
  return image;
}

void PeerPainterPolyline(benchmark::State& state) {
  QImage image = Screen();
  QPolygonF polygon;
  for (const Point& point : OnScreen()) polygon.append(QPointF(point.x, point.y));
  for (auto _ : state) {
    QPainter painter(&image);
    painter.setPen(QPen(Qt::red, 0));
    painter.drawPolyline(polygon);
  }
}
BENCHMARK(PeerPainterPolyline)->Unit(benchmark::kMicrosecond);

void SurfacePolyline(benchmark::State& state) {
  QImage image = Screen();
  const std::vector<Point> points = OnScreen();
  for (auto _ : state) RasterSurface(image).Polyline(points, {255, 0, 0});
}
BENCHMARK(SurfacePolyline)->Unit(benchmark::kMicrosecond);

struct Silence : Sound {
  void Play(const std::string&) override {}
};

struct PreviewForm : Form {
  explicit PreviewForm(Host& host) : Form(host, "frmPreview", "Preview") {}
  LayoutNode Layout() override { return layout::Item(PrevGraph, 1); }
  PreviewPlot PrevGraph{*this, "PrevGraph", {kWidth, kHeight}};
};

struct Program {
  Program() {
    host.host().desktop.Register("Graph1",
                                 [this] { return std::make_unique<Graph>(host.host(), "Graph1"); });
    host.host().desktop.Register("frmPreview",
                                 [this] { return std::make_unique<PreviewForm>(host.host()); });
  }
  NativeClock clock;
  NativeFiles files;
  Silence sound;
  QtHost host{clock, files, sound};
};

// The whole picture with its axes and labels.
void GraphRedraw(benchmark::State& state) {
  Program program;
  auto& graph = *program.host.host().desktop.LoadAs<Graph>("Graph1");
  graph.SetSize(0, 0, kWidth, kHeight);
  graph.View(kLeft, kTop, kRight, kBottom);
  graph.Axis(0.1, 1e-4, 10, "/V");
  graph.Curve(Voltammogram(), {255, 0, 0}, CurveStyle::kLines);
  QImage image = Screen();
  for (auto _ : state) {
    RasterSurface surface(image);
    graph.Picture1.Paint(surface);
  }
}
BENCHMARK(GraphRedraw)->Unit(benchmark::kMicrosecond);

void PreviewRedraw(benchmark::State& state) {
  Program program;
  auto& form = *program.host.host().desktop.LoadAs<PreviewForm>("frmPreview");
  form.PrevGraph.SetRange(kLeft, kBottom, kRight, kTop);
  form.PrevGraph.Polyline(Voltammogram(), {255, 0, 0});
  QImage image = Screen();
  for (auto _ : state) {
    RasterSurface surface(image);
    form.PrevGraph.Paint(surface);
  }
}
BENCHMARK(PreviewRedraw)->Unit(benchmark::kMicrosecond);

// One more point in a shown window, with so many there: drawn into the picture and announced to the
// screen; with `on_screen` also carried to it at once, which an event loop does at most once a
// turn.
void LivePoint(benchmark::State& state, bool on_screen) {
  Program program;
  auto& graph = *program.host.host().desktop.LoadAs<Graph>("Graph1");
  graph.SetSize(0, 0, kWidth, kHeight);
  program.host.host().desktop.Show("Graph1");
  QApplication::processEvents();
  graph.View(kLeft, kTop, kRight, kBottom);
  graph.Axis(0.1, 1e-4, 10, "/V");
  const std::vector<Point> points = Voltammogram();
  graph.Curve(std::span(points).first(static_cast<std::size_t>(state.range(0))), {255, 0, 0});
  for (int i = 0; i < 5; ++i) QApplication::processEvents();
  std::size_t i = 0;
  for (auto _ : state) {
    const Point& point = points[i++ % points.size()];
    graph.VPset(point.x, point.y, {0, 0, 255});
    if (on_screen) QApplication::processEvents();
  }
}
BENCHMARK_CAPTURE(LivePoint, Drawn, false)->Arg(1)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(LivePoint, OnScreen, true)->Arg(1)->Arg(kPoints)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
