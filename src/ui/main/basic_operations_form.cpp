#include "ui/main/basic_operations_form.h"

#include <string>

#include "host/desktop.h"
#include "host/dialogs.h"
#include "host/host.h"
#include "text/number.h"
#include "ui/main/edit_a_track_form.h"

namespace zento {
namespace {

frmEditATrack* Editor(Host& host) {
  return host.desktop.FindAs<frmEditATrack>(frmEditATrack::kName);
}

}  // namespace

frmBasicOperations::frmBasicOperations(Host& host) : Form(host, kName, "Basic Operations") {
  cmdPreview.is_default = true;
  cmdClose.is_cancel = true;
  chkCh[0].SetTip("The x column: potential, time or rotation rate");
  chkCh[1].SetTip("The disk current");
  chkCh[2].SetTip("The third column: ring current or time");
  const auto outdate = [this] { cmdUpdate.SetEnabled(false); };
  opnOperation.on_select = [outdate](int) { outdate(); };
  txtOperand.on_change = outdate;
  for (std::size_t i = 0; i < chkCh.size(); ++i) chkCh[i].on_click = [outdate](int) { outdate(); };
  cmdPreview.on_click = [this] { cmdPreview_Click(); };
  cmdUpdate.on_click = [this] { cmdUpdate_Click(); };
  cmdClose.on_click = [&desktop = host.desktop] { desktop.Unload(kName); };
}

bool frmBasicOperations::Load() {
  cmdUpdate.SetEnabled(false);
  OfferColumns();
  return true;
}

void frmBasicOperations::OfferColumns() {
  const frmEditATrack* editor = Editor(host());
  const int held = editor == nullptr ? 0 : editor->held_columns();
  for (std::size_t c = 0; c < chkCh.size(); ++c) chkCh[c].SetEnabled(static_cast<int>(c) < held);
}

void frmBasicOperations::Activate() {
  OfferColumns();
  const frmEditATrack* editor = Editor(host());
  if (editor == nullptr || !editor->HasResult()) cmdUpdate.SetEnabled(false);
}

void frmBasicOperations::cmdPreview_Click() {
  const auto operation = static_cast<BasicOperation>(opnOperation.selected());
  const auto operand = ParseStrict(txtOperand.text());
  if (!operand) return host().dialogs.Message("The operand is not a number.");
  if (operation == BasicOperation::kDivide && *operand == 0) {
    return host().dialogs.Message("Can't divide by zero!");
  }
  frmEditATrack* editor = Editor(host());
  if (editor == nullptr) return;
  const frmEditATrack::ColumnFlags columns = {chkCh[0].value() == 1, chkCh[1].value() == 1,
                                              chkCh[2].value() == 1};
  cmdUpdate.SetEnabled(editor->BasicCalcTrack(columns, operation, *operand));
}

void frmBasicOperations::cmdUpdate_Click() {
  frmEditATrack* editor = Editor(host());
  if (editor != nullptr) editor->UpdateTrack();
  cmdUpdate.SetEnabled(false);
}

LayoutNode frmBasicOperations::Layout() {
  using namespace layout;
  return Rows({
      Columns({Group("Operation", {Item(opnOperation)}),
               Group("Columns", {Item(chkCh[0]), Item(chkCh[1]), Item(chkCh[2])})}),
      Fields({Field("Operand", txtOperand)}),
      Columns({Stretch(), Item(cmdPreview), Item(cmdUpdate), Item(cmdClose)}),
  });
}

}  // namespace zento
