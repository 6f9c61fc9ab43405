#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <variant>
#include <vector>

#include "core/workstation.h"
#include "devices/instruments.h"
#include "host/controls.h"
#include "host/form.h"
#include "measure/run.h"
#include "text/number.h"

namespace zento {

inline double NumberIn(const TextBox& box) {
  return ParseLenient(box.text());
}

inline void ShowNumber(TextBox& box, double value) {
  box.SetText(PlainNumber(value));
}

// Puts a number out of range right, silently.
void LimitBox(TextBox& box, double (*limit)(double));

// A box and the number of the settings that it holds. A window lists them once, and shows, stores
// and watches what it listed.
struct BoundBox {
  TextBox* box;
  std::variant<double*, std::int32_t*> setting;
};

// The track that receives the result, 0 to 20, shown in a box and stepped by arrows that wrap
// around. What a person types counts once the box is left or Enter is pressed.
class TargetTrack {
 public:
  TargetTrack(TextBox& box, UpDown& arrows, std::function<void()> changed);
  int number() const { return number_; }
  // Clamped to 0 to 20.
  void Select(std::int32_t track);
  // After 20 comes 0.
  void Advance() { Step(1); }
  // Takes what stands in the box.
  void Commit();

 private:
  void Step(int direction);
  TextBox& box_;
  std::function<void()> changed_;
  int number_ = 0;
};

// What tells the windows apart, apart from their controls.
struct MeasureWindow {
  const char* name;
  const char* caption;
  const char* timer;
  // Texts shown when a device does not open. A window that uses no generator or motor leaves them
  // empty.
  const char* board_message;
  const char* bus_message;
  const char* output_message;
  // From this sampling rate on (Hz) nothing is drawn while a run records.
  double draws_below;
  // The monitor's ticks follow the sampling rate in the box at once, not only from a start on.
  bool ticks_follow_box;
};

// A measurement window: one timer with two states (a live monitor, and the ticks of a run), Start
// and Stop, and the devices that it opens. The run is apart from it: the window makes its technique
// of what stands in the boxes, hands down what a person changes meanwhile, and shows and draws what
// the run has published. A window adds its controls, its texts and its layout.
class MeasureForm : public Form {
 public:
  Button cmdStart{*this, "cmdStart", "Start"};
  Button cmdStop{*this, "cmdStop", "Stop"};
  Timer timer;

  bool Load() override;
  // A run is ended first: its points stored, generator off, rotation 0.
  void CloseRequested() override;
  void Unload() override;

  bool Measuring() const { return run_.Active(); }
  // Of the run that goes on; without one, of the run that Start would begin.
  Plan CurrentPlan() const;

  void StartMeasurement();
  // Left and top edge, width and height of the window, in device-independent pixels.
  void SetSize(std::int16_t left, std::int16_t top, std::int16_t width, std::int16_t height);
  void Quit();

 protected:
  MeasureForm(Workstation& workstation, Host& host, Instruments& instruments,
              const MeasureWindow& window);

  // What a person may still change during a run has changed.
  void HandDownChoices();
  // The button empties the monitor, but not during a run.
  void LetClearMonitor(Button& button);

  Workstation& workstation() const { return workstation_; }
  Instruments& instruments() const { return instruments_; }
  const Settings& settings() const { return workstation_.settings; }
  const MeasureWindow& window() const { return window_; }
  const Run& run() const { return run_; }
  const RunPoints& points() const { return run_.points(); }
  Run& run() { return run_; }
  // The rate of the last point allows drawing it.
  bool DrawsLive() const { return run_.state().sampling_rate < window_.draws_below; }

  // The settings in the boxes, put right.
  virtual void ShowSettings() = 0;
  // ms between ticks, from the boxes.
  virtual std::int64_t MonitorInterval() const = 0;
  virtual void MonitorTick() = 0;
  virtual void ClearMonitor() = 0;

  // Before a start: false, and the person told, when it must not be.
  virtual bool MayStart() { return true; }
  // Puts the boxes right and makes them the settings.
  virtual void TakeBoxes() = 0;
  // Of what stands in the boxes, whether it was put right or not.
  virtual std::unique_ptr<Technique> MakeTechnique() const = 0;
  virtual RunChoices Choices() const = 0;

  // The labels and empty graphs of a run that begins, waits, records, is over.
  virtual void ShowStart(const Technique& technique) = 0;
  virtual void ShowRecording() = 0;
  virtual void ShowIdle() = 0;
  // At every tick and whenever else the run tells where it stands.
  virtual void ShowState(const RunState&) {}
  // Draws the point, of which those before it have been drawn.
  virtual void DrawPoint(std::int32_t index) = 0;
  // Draws all points that are kept, once the run is over.
  virtual void DrawAll() = 0;
  // The points are in their tracks.
  virtual void PointsStored() {}

 private:
  bool OpenDevices();
  void Tick();
  void Follow(const RunState& state);
  void DrawNewPoints();
  void ShowEnd();

  Workstation& workstation_;
  Instruments& instruments_;
  const MeasureWindow window_;
  bool unloaded_ = false;
  bool recording_shown_ = false;
  std::int32_t drawn_ = 0;  // points
  std::int64_t readings_drawn_ = 0;
  Run run_;
};

// What the windows share that measure one cell into one track: target track and title, the boxes
// that hold settings, and the operations that macros call.
class CellForm : public MeasureForm {
 public:
  TextBox txtRetainTime{*this, "txtRetainTime"};
  TextBox txtAccum{*this, "txtAccum"};
  TextBox txtDataNum{*this, "txtDataNum", "0"};
  UpDown UpDown1{*this, "UpDown1"};
  TextBox txtTitle{*this, "txtTitle"};

  // What macros call. Each puts its value into the control, limited as a person's entry is.
  void SelTrack(std::int32_t track) { target_.Select(track); }
  void Title(const std::string& title);
  void DiskScale(double amperes_per_volt);  // 0 or less becomes 1e-5
  void RetainTime(std::int32_t seconds) { ShowNumber(txtRetainTime, seconds); }
  void Accumlation(std::int32_t readings) { Enter(txtAccum, readings); }  // 1 or more

 protected:
  CellForm(Workstation& workstation, Host& host, Instruments& instruments,
           const MeasureWindow& window);
  // Once the window's controls exist: watches the boxes and the choice of the run's end.
  void Watch(OptionGroup& method);

  // As a person who types a number and leaves the box.
  void Enter(TextBox& box, double number);
  void EnterRpm(TextBox& box, const std::string& rpm);     // 0 to 10000
  void EnterScale(TextBox& box, double amperes_per_volt);  // 0 or less becomes 1e-5
  // Puts entries out of range right and makes them the settings.
  void LeaveBox();
  bool HasGenerator() const { return settings().GPIBControl > 0; }

  virtual std::vector<BoundBox> Boxes() = 0;
  virtual TextBox& CurrentScale() = 0;
  virtual void LimitBoxes() = 0;
  // What a generator cannot hold becomes what it can.
  virtual void LimitRetainTime();
  virtual void StoreSettings();
  void ShowSettings() override;
  void TakeBoxes() override;
  RunChoices Choices() const override;

  // The monitor reads these channels, averaged over so many readings; ShowReadings is told the
  // means in V, ShowNoReading when the board gave none.
  virtual std::span<const std::uint8_t> MonitorChannels() const = 0;
  virtual double MonitorAccumulation() const = 0;
  virtual void ShowReadings(std::span<const double> volts) = 0;
  virtual Label& ReadingLabel() = 0;
  void MonitorTick() override;

  TargetTrack target_;

 private:
  const OptionGroup* method_ = nullptr;
};

// Makes the measurement windows known to the desktop. All arguments outlive it.
void RegisterMeasureForms(Desktop& desktop, Workstation& workstation, Host& host,
                          Instruments& instruments);

}  // namespace zento
