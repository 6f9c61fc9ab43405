#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "host/canvas.h"
#include "host/controls.h"
#include "host/desktop.h"
#include "host/form.h"
#include "host/host.h"

namespace zento::demo {

// A curve that can be drawn whole or point by point.
class Curve : public Canvas {
 public:
  using Canvas::Canvas;

  void Paint(Surface& surface) override {
    ++paints;
    surface.Clear({255, 255, 255});
    for (double x = 50; x < surface.Extent().width; x += 50) {
      surface.Line({x, 0}, {x, surface.Extent().height}, {220, 220, 220});
    }
    surface.Text({surface.Extent().width / 2, 8}, "電流 / A",
                 {10, {0, 0, 0}, HorizontalAnchor::kCentre});
    surface.Polyline(points, {200, 30, 30});
  }
  void PaintOverlay(Surface& surface) override {
    if (pointer) surface.Line({pointer->x, 0}, {pointer->x, size().height}, {0, 90, 200});
  }
  void Append(Point point) {
    points.push_back(point);
    if (points.size() < 2) return;
    const Point before = points[points.size() - 2];
    const Rect dirty{std::min(before.x, point.x), std::min(before.y, point.y),
                     std::abs(before.x - point.x), std::abs(before.y - point.y)};
    Extend(dirty, [&](Surface& surface) { surface.Line(before, point, {200, 30, 30}); });
  }
  void Refresh() { Invalidate(); }
  void PointerPressed(const PointerEvent& event) override { pressed.push_back(event); }
  void PointerMoved(const PointerEvent& event) override {
    pointer = event.at;
    InvalidateOverlay();
  }
  void PointerLeft() override {
    pointer.reset();
    InvalidateOverlay();
  }
  void DoubleClicked(const PointerEvent&) override { ++double_clicks; }
  void WheelTurned(const PointerEvent&, double steps) override { wheel += steps; }
  std::string Readout() const override {
    return pointer ? "x = " + std::to_string(static_cast<int>(pointer->x)) : std::string();
  }

  std::vector<Point> points;
  std::optional<Point> pointer;
  std::vector<PointerEvent> pressed;
  int paints = 0;
  int double_clicks = 0;
  double wheel = 0;
};

// Every kind of control in one window.
class DemoForm : public Form {
 public:
  explicit DemoForm(Host& host) : Form(host, "frmDemo", "Demonstration of every control") {
    cbxReference.SetItems({"SHE", "SCE", "Ag|AgCl|sat.", "Hg|HgO"});
    lstFiles.SetItems({"first.znt", "second.znt", "third.znt"});
    txtNotes.multiline = true;
    txtNotes.SetText("Ferrocyanide in 1 M KCl\nsecond line");
    txtNumber.read_only = true;
    cmdStart.is_default = true;
    cmdClose.is_cancel = true;
    sheet.headings = {"Quantity", "Value"};
    sheet.column_widths = {0, -1};
    sheet.first_column_is_label = true;
    const char* labels[] = {"Mode", "Title", "Time", "Scan rate /mVs-1", "V1st /V"};
    for (int row = 0; row < 5; ++row) sheet.SetCell(row, 0, labels[row]);
    sheet.SetCell(1, 1, "フェロシアン 5 mM");
    chkOutlet[2].SetValue(2);
    mnuQuit.separator_before = true;
    mnuLater.SetEnabled(false);
    txtScanrate.SetTip("Between 0.01 and 1000 mV/s");
    bar.SetPosition(40);
    updTrack.on_up = [this] { txtNumber.SetText(std::to_string(++track)); };
    updTrack.on_down = [this] { txtNumber.SetText(std::to_string(--track)); };
    for (int i = 0; i <= 300; ++i) {
      curve.points.push_back({i * 1.4, 110 - 80 * std::sin(i * std::numbers::pi / 60)});
    }
  }
  void CloseRequested() override {
    ++close_requests;
    if (may_close) Form::CloseRequested();
  }

  LayoutNode Layout() override {
    using namespace layout;
    return Columns({
        Rows({
            Group("Sample", {Fields({Field("Title", txtTitle), Field("Track", txtNumber, &updTrack),
                                     Field("Scan rate /mVs-1", txtScanrate),
                                     Field("Reference", cbxReference)})}),
            Group("Measurement Method", {Item(OpnMethod)}),
            Group("Outlets",
                  {Columns({Item(chkOutlet[0]), Item(chkOutlet[1]), Item(chkOutlet[2])})}),
            Columns({Item(cmdStart), Item(cmdClose)}),
            Item(lblRemain),
            Item(bar),
        }),
        Rows({Item(curve, 3), Item(sheet, 2)}, 1),
        Rows({Text("Notes"), Item(txtNotes), Item(lstFiles)}),
    });
  }

  MenuItem mnuOpen{*this, "mnuOpen", "File", "Open", "Ctrl+O"};
  MenuItem mnuLater{*this, "mnuLater", "File", "Search Track"};
  MenuItem mnuQuit{*this, "mnuQuit", "File", "Quit", "Ctrl+Q"};
  MenuItem mnuCopy{*this, "mnuCopy", "Edit", "Copy A & B", "Ctrl+Shift+C"};
  TextBox txtTitle{*this, "txtTitle", "Sample"};
  TextBox txtNumber{*this, "txtDataNum", "0"};
  UpDown updTrack{*this, "UpDown1"};
  TextBox txtScanrate{*this, "txtScanrate", "50"};
  ComboBox cbxReference{*this, "cbxReference"};
  OptionGroup OpnMethod{*this, "OpnCVMeas", {"by cycle num.", "button"}, 0};
  ControlArray<CheckBox, 3> chkOutlet{*this, "chkPower", {"Motor", "Lamp", "Pump & gas"}};
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdClose{*this, "cmdClose", "Close"};
  Label lblRemain{*this, "lblTimeRemain", "80s remain Scan Rate:50.1"};
  ProgressBar bar{*this, "barProgress"};
  Curve curve{*this, "PrevGraph", {420, 240}};
  Grid sheet{*this, "InformationSheet", 5, 2};
  TextBox txtNotes{*this, "txtNotes"};
  ListBox lstFiles{*this, "lstFiles"};
  Timer timer{*this, "DemoTimer"};

  int track = 0;
  int close_requests = 0;
  bool may_close = true;
};

}  // namespace zento::demo
