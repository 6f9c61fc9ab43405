#include "ui/main/settings_form.h"

#include <optional>

#include "core/settings.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "text/number.h"

namespace zento {
namespace {

constexpr char kName[] = "frmSettings";
constexpr std::int32_t kLastAddress = 7;

}  // namespace

frmSettings::frmSettings(Workstation& workstation, Host& host)
    : Form(host, kName, "Settings"), settings_(workstation.settings) {
  txtGPIBAddr.read_only = true;
  cmdOK.is_default = true;
  cmdOK.is_cancel = true;  // there is nothing to take back
  ConnectDevices();
  ConnectRest();
}

void frmSettings::ConnectDevices() {
  opnDevice.on_select = [this](int index) { ChooseBoard(index); };
  txtDevice.on_change = [this] { settings_.DeviceName = txtDevice.text(); };
  txtCardNumber.on_change = [this] {
    settings_.CardNumber = ToLong(ParseLenient(txtCardNumber.text()));
  };
  chkDynamicRange.on_click = [this](int value) { settings_.DynamicRange = ToInteger(value); };
  opnFGControl.on_select = [this](int index) { settings_.GPIBControl = index; };
  updAddr.on_up = [this] { StepAddress(+1); };
  updAddr.on_down = [this] { StepAddress(-1); };
  opnMotor.on_select = [this](int index) { settings_.DABoard = index; };
  txtRPMvsVoltageFile.on_change = [this] {
    settings_.RPMvsVoltageFile = txtRPMvsVoltageFile.text();
  };
  cmdRPMvsVoltOpen.on_click = [this] { AskForCalibration(); };
  opnPowerControl.on_select = [this](int index) { settings_.PowerControl = index; };
}

void frmSettings::ConnectRest() {
  opnDrawMethod.on_select = [this](int index) { settings_.PrevGraphDrawSetting = index; };
  txtSoundFileName.on_change = [this] { settings_.SoundFileName = txtSoundFileName.text(); };
  cmdOK.on_click = [this] { host().desktop.Unload(kName); };
}

bool frmSettings::Load() {
  opnDevice.Select(settings_.ADBoard);
  txtDevice.SetText(settings_.DeviceName);
  txtCardNumber.SetText(PlainNumber(settings_.CardNumber));
  chkDynamicRange.SetValue(settings_.DynamicRange);
  opnFGControl.Select(settings_.GPIBControl);
  txtGPIBAddr.SetText(PlainNumber(settings_.GPIBAddress));
  opnMotor.Select(settings_.DABoard);
  txtRPMvsVoltageFile.SetText(settings_.RPMvsVoltageFile);
  opnPowerControl.Select(settings_.PowerControl);
  opnDrawMethod.Select(settings_.PrevGraphDrawSetting);
  txtSoundFileName.SetText(settings_.SoundFileName);
  return true;
}

LayoutNode frmSettings::Layout() {
  using namespace layout;
  return Rows({
      Columns({Rows({Group("Analog input board", {Item(opnDevice),
                                                  Fields({Field("Device name", txtDevice),
                                                          Field("Card Number:", txtCardNumber)}),
                                                  Item(chkDynamicRange)}),
                     Group("Preview", {Item(opnDrawMethod)}), Stretch()}),
               Rows({Group("Function generator",
                           {Item(opnFGControl),
                            Fields({Field("GPIB address", txtGPIBAddr, &updAddr)})}),
                     Group("Motor", {Item(opnMotor),
                                     Fields({Field("RPM vs. Voltage File", txtRPMvsVoltageFile,
                                                   &cmdRPMvsVoltOpen)})}),
                     Group("Power control", {Item(opnPowerControl)}), Stretch()})}),
      Fields({Field("Sound file", txtSoundFileName)}),
      Text("Devices are opened as chosen here when the program starts the next time."),
      Columns({Stretch(), Item(cmdOK)}),
  });
}

void frmSettings::ChooseBoard(int index) {
  if (index != settings_.ADBoard) host().dialogs.Message("Zentoを再起動後有効になります");
  settings_.ADBoard = index;
}

void frmSettings::StepAddress(int direction) {
  if (direction > 0 && settings_.GPIBAddress < kLastAddress) ++settings_.GPIBAddress;
  if (direction < 0 && settings_.GPIBAddress > 0) --settings_.GPIBAddress;
  txtGPIBAddr.SetText(PlainNumber(settings_.GPIBAddress));
}

void frmSettings::AskForCalibration() {
  FileQuestion question;
  question.title = "RPM vs. Voltage File";
  question.description = "Calibration files";
  question.pattern = "*";
  host().dialogs.AskFile(
      question, [&desktop = host().desktop](const std::optional<std::filesystem::path>& path) {
        auto* form = path ? desktop.FindAs<frmSettings>(kName) : nullptr;
        if (form == nullptr) return;
        form->settings_.RPMvsVoltageFile = TextFromPath(*path);
        form->txtRPMvsVoltageFile.SetText(form->settings_.RPMvsVoltageFile);
      });
}

}  // namespace zento
