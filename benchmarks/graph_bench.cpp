// What a graph costs above its surface, which here only counts: one live point with few and with
// 40001 points there, and whole redraws with and without decimation. What a real screen adds is in
// qt_redraw_bench.cpp.

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "graph/decimate.h"
#include "graph/graph_form.h"
#include "graph/preview_plot.h"
#include "graph/svg_surface.h"
#include "host/virtual/virtual_host.h"

namespace {

using namespace zento;

constexpr std::size_t kPoints = 40001;
constexpr Size kScreen{1000, 700};
constexpr Colour kRed{255, 0, 0};
constexpr WorldWindow kWorld{-0.25, 5e-4, 0.65, -5e-4};

// Ten cycles between -0.2 V and 0.6 V with a wave and the noise of a 12 bit board; V, A.
std::vector<Point> Voltammogram(double noise_amperes) {
  std::mt19937 random(3);
  std::normal_distribution<double> noise(0, 1);
  std::vector<Point> points;
  for (std::size_t i = 0; i < kPoints; ++i) {
    const double phase = 10.0 * static_cast<double>(i) / static_cast<double>(kPoints);
    const double up = phase - std::floor(phase);
    const double volts = up < 0.5 ? -0.2 + 1.6 * up : 0.6 - 1.6 * (up - 0.5);
    const double wave = (up < 0.5 ? 1 : -1) * std::exp(-std::pow((volts - 0.22) / 0.08, 2));
    points.push_back({volts, 4e-4 * wave + noise_amperes * noise(random)});
  }
  return points;
}

class CountingSurface : public Surface {
 public:
  std::size_t vertices = 0;
  std::size_t dots = 0;

  Size Extent() const override { return kScreen; }
  void Clear(Colour) override {}
  void Line(Point, Point, Colour, double) override { vertices += 2; }
  void Polyline(std::span<const Point> points, Colour, double) override {
    vertices += points.size();
  }
  void Dots(std::span<const Point> points, Colour) override { dots += points.size(); }
  void Circle(Point, double, Colour, const Colour*) override {}
  void Box(Rect, Colour) override {}
  void FillBox(Rect, Colour) override {}
  void Text(Point, std::string_view, const TextStyle&) override {}
  Size Measure(std::string_view text, const TextStyle&) const override {
    return {8.0 * static_cast<double>(text.size()), 14};
  }
  void SetClip(Rect) override {}
  void ClearClip() override {}
};

// Passes additions on to the surface.
class CountingView : public FormView {
 public:
  explicit CountingView(Form& form) : form_(form) { form.SetView(this); }
  ~CountingView() override { form_.SetView(nullptr); }
  CountingSurface surface;

  void ControlChanged(Control&) override {}
  void CanvasInvalid(Canvas&) override {}
  void CanvasOverlayInvalid(Canvas&) override {}
  void CanvasExtended(Canvas&, Rect, const std::function<void(Surface&)>& paint) override {
    paint(surface);
  }
  void CaptionChanged(Form&) override {}
  void FocusRequested(Control&) override {}
  void GeometryRequested(Form&) override {}

 private:
  Form& form_;
};

struct Plot {
  Plot() {
    graph.SetSize(0, 0, 1000, 700);
    graph.View(kWorld.x1, kWorld.y1, kWorld.x2, kWorld.y2);
    graph.Axis(0.1, 1e-4, 10, "/V");
  }
  VirtualHost machine;
  Graph graph{machine.host, "Graph1"};
};

void LivePoint(benchmark::State& state) {
  const std::vector<Point> points = Voltammogram(4e-6);
  Plot plot;
  plot.graph.Curve(std::span(points).first(static_cast<std::size_t>(state.range(0))), kRed);
  CountingView view(plot.graph);
  std::size_t i = 0;
  for (auto _ : state) {
    const Point& point = points[i++ % kPoints];
    plot.graph.VPset(point.x, point.y, kRed);
  }
}
BENCHMARK(LivePoint)->Arg(1)->Arg(kPoints);

// The peer: every point mapped and handed to the surface.
void PeerRedraw(benchmark::State& state) {
  const std::vector<Point> points = Voltammogram(4e-6);
  const WorldMap map(kWorld, kScreen);
  CountingSurface surface;
  for (auto _ : state) {
    std::vector<Point> places;
    places.reserve(points.size());
    for (const Point& point : points) places.push_back(map(point));
    surface.Polyline(places, kRed, 0);
    benchmark::DoNotOptimize(places.data());
  }
  state.counters["vertices"] = static_cast<double>(kPoints);
}
BENCHMARK(PeerRedraw)->Unit(benchmark::kMicrosecond);

void Redraw(benchmark::State& state, CurveStyle style, double noise) {
  Plot plot;
  plot.graph.Curve(Voltammogram(noise), kRed, style);
  std::size_t strokes = 0;
  for (auto _ : state) {
    CountingSurface surface;
    plot.graph.Picture1.Paint(surface);
    strokes = surface.vertices + surface.dots;
  }
  state.counters["vertices"] = static_cast<double>(strokes);
}
BENCHMARK_CAPTURE(Redraw, LinesSmooth, CurveStyle::kLines, 0)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Redraw, LinesNoisy, CurveStyle::kLines, 4e-6)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Redraw, DotsNoisy, CurveStyle::kDots, 4e-6)->Unit(benchmark::kMicrosecond);

// Axes, grid and labels alone.
void RedrawAxes(benchmark::State& state) {
  Plot plot;
  CountingSurface surface;
  for (auto _ : state) plot.graph.Picture1.Paint(surface);
}
BENCHMARK(RedrawAxes)->Unit(benchmark::kMicrosecond);

void WriteSvg(benchmark::State& state) {
  Plot plot;
  plot.graph.Curve(Voltammogram(4e-6), kRed, CurveStyle::kLines);
  std::size_t bytes = 0;
  for (auto _ : state) {
    SvgSurface surface(kScreen);
    plot.graph.Picture1.Paint(surface);
    bytes = surface.Document().size();
  }
  state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(WriteSvg)->Unit(benchmark::kMicrosecond);

}  // namespace
