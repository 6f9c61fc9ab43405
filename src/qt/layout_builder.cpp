#include "qt/layout_builder.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/basic_bindings.h"
#include "qt/qt_text.h"
#include "qt/table_bindings.h"
#include "qt/text_bindings.h"

namespace zento {
namespace {

constexpr int kPageMargin = 12;
constexpr int kGroupMargin = 10;
constexpr int kSpacing = 8;
constexpr int kCompanionSpacing = 2;
constexpr int kFieldCharacters = 9;
// A caption longer than this wraps.
constexpr std::size_t kLongCaption = 60;

bool IsVertical(const QBoxLayout& box) {
  return box.direction() == QBoxLayout::TopToBottom;
}

QLabel* Caption(const std::string& text) {
  auto* label = new QLabel(ToQt(text));
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(text.size() > kLongCaption);
  return label;
}

// Room for so many characters in a box of text.
void SetCharacters(ControlBinding& binding, int characters) {
  if (dynamic_cast<LineBinding*>(&binding) == nullptr) return;
  QWidget& edit = binding.widget();
  edit.setMinimumWidth(edit.fontMetrics().averageCharWidth() * characters + 16);
}

// A picture with at most a strip below it: a plotting window.
bool IsPlotPage(const LayoutNode& root) {
  if (root.kind != LayoutNode::Kind::kRows || root.children.empty()) return false;
  const Control* first = root.children.front().control;
  return first != nullptr && first->Kind() == ControlKind::kCanvas && root.children.size() <= 2;
}

}  // namespace

void LayoutBuilder::Build(const LayoutNode& root, QWidget& page) {
  auto* rows = new QVBoxLayout(&page);
  // A plot fills its window from edge to edge.
  const int margin = IsPlotPage(root) ? 0 : kPageMargin;
  rows->setContentsMargins(margin, margin, margin, margin);
  rows->setSpacing(kSpacing);
  Add(root, *rows);
  if (!Grows(root)) rows->addStretch(1);
}

bool LayoutBuilder::Grows(const LayoutNode& node) const {
  if (node.stretch > 0 && node.kind != LayoutNode::Kind::kStretch) return true;
  if (node.control != nullptr) {
    const ControlBinding* binding = find_(*node.control);
    return binding != nullptr && binding->Tall();
  }
  return std::any_of(node.children.begin(), node.children.end(),
                     [this](const LayoutNode& child) { return Grows(child); });
}

void LayoutBuilder::AddChildren(const LayoutNode& node, QBoxLayout& into) {
  for (const LayoutNode& child : node.children) Add(child, into);
}

void LayoutBuilder::Add(const LayoutNode& node, QBoxLayout& into) {
  const int share = node.stretch > 0 ? node.stretch : Grows(node) ? 1 : 0;
  switch (node.kind) {
    case LayoutNode::Kind::kRows: {
      auto* rows = new QVBoxLayout;
      rows->setSpacing(IsPlotPage(node) ? 0 : kSpacing);
      into.addLayout(rows, share);
      AddChildren(node, *rows);
      // Beside a taller neighbour the rows stay together at the top.
      if (!IsVertical(into) && !Grows(node)) rows->addStretch(1);
      break;
    }
    case LayoutNode::Kind::kColumns: {
      auto* columns = new QHBoxLayout;
      columns->setSpacing(kSpacing);
      into.addLayout(columns, share);
      AddChildren(node, *columns);
      break;
    }
    case LayoutNode::Kind::kGroup: {
      auto* group = new QGroupBox(PlainCaption(node.caption));
      auto* rows = new QVBoxLayout(group);
      rows->setContentsMargins(kGroupMargin, kGroupMargin, kGroupMargin, kGroupMargin);
      rows->setSpacing(kSpacing);
      into.addWidget(group, share);
      AddChildren(node, *rows);
      if (!Grows(node)) rows->addStretch(1);
      break;
    }
    case LayoutNode::Kind::kFields: {
      auto* grid = new QGridLayout;
      grid->setHorizontalSpacing(kSpacing);
      grid->setVerticalSpacing(kSpacing - 2);
      grid->setColumnStretch(1, 1);
      into.addLayout(grid, share);
      for (const LayoutNode& child : node.children) AddField(child, *grid, grid->rowCount());
      break;
    }
    case LayoutNode::Kind::kTable: {
      auto* grid = new QGridLayout;
      grid->setHorizontalSpacing(kSpacing);
      grid->setVerticalSpacing(kSpacing - 2);
      into.addLayout(grid, share);
      AddTable(node, *grid);
      break;
    }
    case LayoutNode::Kind::kField:
      if (ControlBinding* binding = BindingOf(node)) {
        auto* row = new QHBoxLayout;
        row->setSpacing(kSpacing);
        row->addWidget(FieldLabel(node, *binding));
        row->addLayout(FieldBox(node, *binding), 1);
        into.addLayout(row, share);
      }
      break;
    case LayoutNode::Kind::kItem:
      if (ControlBinding* binding = BindingOf(node)) {
        EmbedEditor(*binding);
        into.addWidget(&binding->widget(), share);
      }
      break;
    case LayoutNode::Kind::kText:
      into.addWidget(Caption(node.caption));
      break;
    case LayoutNode::Kind::kStretch:
      into.addStretch(std::max(1, node.stretch));
      break;
  }
}

ControlBinding* LayoutBuilder::BindingOf(const LayoutNode& node) const {
  return node.control == nullptr ? nullptr : find_(*node.control);
}

void LayoutBuilder::EmbedEditor(ControlBinding& binding) {
  auto* table = dynamic_cast<EditGridBinding*>(&binding);
  if (table == nullptr) return;
  TextBox& editor = dynamic_cast<EditGrid&>(binding.control()).editor();
  if (ControlBinding* its = find_(editor)) table->Embed(*its);
}

void LayoutBuilder::AddTable(const LayoutNode& node, QGridLayout& into) {
  for (int row = 0; const LayoutNode& cells : node.children) {
    for (int column = 0; const LayoutNode& cell : cells.children) {
      ControlBinding* binding = BindingOf(cell);
      if (binding != nullptr) {
        // A wider share is also a promise of so many boxes' width.
        if (cell.stretch > 0) SetCharacters(*binding, cell.stretch * kFieldCharacters);
        into.addWidget(&binding->widget(), row, column);
      }
      if (cell.kind == LayoutNode::Kind::kText) into.addWidget(Caption(cell.caption), row, column);
      if (cell.stretch > 0) into.setColumnStretch(column, cell.stretch);
      ++column;
    }
    ++row;
  }
}

void LayoutBuilder::AddField(const LayoutNode& node, QGridLayout& into, int row) {
  ControlBinding* binding = BindingOf(node);
  if (node.kind == LayoutNode::Kind::kField && binding != nullptr) {
    const Qt::Alignment top = binding->Tall() ? Qt::AlignTop : Qt::AlignVCenter;
    into.addWidget(FieldLabel(node, *binding), row, 0, Qt::AlignLeft | top);
    into.addLayout(FieldBox(node, *binding), row, 1);
    return;
  }
  auto* whole = new QHBoxLayout;
  into.addLayout(whole, row, 0, 1, 2);
  Add(node, *whole);
}

QLabel* LayoutBuilder::FieldLabel(const LayoutNode& node, ControlBinding& binding) {
  QLabel* label = Caption(node.caption);
  label->setBuddy(&binding.widget());
  binding.AttachLabel(*label);
  return label;
}

QLayout* LayoutBuilder::FieldBox(const LayoutNode& node, ControlBinding& binding) {
  auto* row = new QHBoxLayout;
  row->setSpacing(kCompanionSpacing);
  row->addWidget(&binding.widget(), 1);
  auto* line = dynamic_cast<LineBinding*>(&binding);
  SetCharacters(binding, kFieldCharacters);
  ControlBinding* companion = node.companion == nullptr ? nullptr : find_(*node.companion);
  if (companion != nullptr) {
    row->addWidget(&companion->widget());
    auto* stepper = dynamic_cast<UpDownBinding*>(companion);
    if (stepper == nullptr) row->setSpacing(kSpacing);
    if (stepper != nullptr && line != nullptr) line->SetStepper(*stepper);
  }
  return row;
}

}  // namespace zento
