#include "analysis/analysis_form.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <utility>

#include "core/track_store.h"
#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "host/path_text.h"
#include "host/services.h"
#include "text/status.h"

namespace zento {
namespace {

// Of an own graph when it is shown first, in pixels.
constexpr std::int16_t kGraphLeft = 67, kGraphTop = 67, kGraphWidth = 480, kGraphHeight = 480;

}  // namespace

AnalysisForm::AnalysisForm(Workstation& workstation, Host& host, std::string name,
                           std::string caption)
    : Form(host, std::move(name), std::move(caption)),
      workstation_(workstation),
      selector_(txtDataNum, UpDown1) {
  selector_.on_change = [this] { ShowTrack(); };
  txtResult.multiline = true;
  txtResult.read_only = true;
  txtResult.SetTip("The report of the last calculation");
  cmdCopyResult.SetEnabled(false);
  cmdSaveResult.SetEnabled(false);
  cmdCopyResult.on_click = [this] { CopyReport(); };
  cmdSaveResult.on_click = [this] { AskToSaveReport(); };
}

bool AnalysisForm::Load() {
  generation_ = workstation_.DataGeneration;
  ShowSettings();
  selector_.Show(FirstTrack());
  ShowTrack();
  return true;
}

TrackRecord& AnalysisForm::Record() const {
  return workstation_.tracks.Record(Track());
}

void AnalysisForm::Activate() {
  if (generation_ == workstation_.DataGeneration) return;
  generation_ = workstation_.DataGeneration;
  ShowTrackAgain();
}

void AnalysisForm::ShowReport(std::string report, AnalysisResult result) {
  report_ = std::move(report);
  result_ = std::move(result);
  txtResult.SetText(report_);
  lblFit.SetText(FitLineText(result_));
  cmdCopyResult.SetEnabled(!report_.empty());
  cmdSaveResult.SetEnabled(!report_.empty());
}

void AnalysisForm::Refuse(const std::string& message) {
  RefuseQuietly(message);
  host().dialogs.Message(message);
}

void AnalysisForm::RefuseQuietly(const std::string& message) {
  result_ = {};
  result_.refusal = message;
}

LayoutNode AnalysisForm::ReportPanel(const std::string& caption) {
  using namespace layout;
  return Group(
      caption,
      {Item(txtResult, 1), Item(lblFit), Columns({Item(cmdCopyResult), Item(cmdSaveResult)})}, 1);
}

void AnalysisForm::CopyReport() {
  host().clipboard.SetText(report_);
}

void AnalysisForm::AskToSaveReport() {
  FileQuestion question;
  question.save = true;
  question.title = "Save report";
  question.description = "Text files";
  question.pattern = "*.txt";
  question.suggested = name() + ".txt";
  // By name: the window may be gone when the answer comes.
  host().dialogs.AskFile(question, [&desktop = host().desktop, window = name()](
                                       const std::optional<std::filesystem::path>& path) {
    auto* form = path ? desktop.FindAs<AnalysisForm>(window) : nullptr;
    if (form != nullptr) form->SaveReport(*path);
  });
}

void AnalysisForm::SaveReport(const std::filesystem::path& path) {
  const Status saved = host().files.Replace(path, report_);
  if (!saved.ok()) host().dialogs.Message(saved.Within("save " + TextFromPath(path)).why());
}

OwnGraph::OwnGraph(Host& host, std::string name) : host_(host), name_(std::move(name)) {
  host_.desktop.Register(
      name_, [&host = host_, name = name_] { return std::make_unique<Graph>(host, name); });
  host_.desktop.Load(name_);
}

OwnGraph::~OwnGraph() {
  host_.desktop.Unload(name_);
}

Graph& OwnGraph::Show() {
  auto* graph = host_.desktop.LoadAs<Graph>(name_);
  if (!host_.desktop.Shown(name_)) {
    graph->SetSize(kGraphLeft, kGraphTop, kGraphWidth, kGraphHeight);
  }
  host_.desktop.Show(name_);
  return *graph;
}

}  // namespace zento
