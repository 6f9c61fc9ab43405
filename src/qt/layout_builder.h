#pragma once

#include <functional>

#include "host/form.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QLayout;
class QWidget;

namespace zento {

class ControlBinding;

// Turns a form's layout into toolkit layouts. Extra height goes to pictures, tables and other
// things that can use it, and else below everything; captions and boxes of fields stand in two
// aligned columns.
class LayoutBuilder {
 public:
  // Null for a control that has no widget; such a node is left out.
  using FindBinding = std::function<ControlBinding*(Control&)>;
  explicit LayoutBuilder(FindBinding find) : find_(std::move(find)) {}

  // Gives `page` the layout of `root`.
  void Build(const LayoutNode& root, QWidget& page);

 private:
  void Add(const LayoutNode& node, QBoxLayout& into);
  void AddChildren(const LayoutNode& node, QBoxLayout& into);
  // Null also for a node without a control.
  ControlBinding* BindingOf(const LayoutNode& node) const;
  // A table's editor stands inside it.
  void EmbedEditor(ControlBinding& binding);
  void AddTable(const LayoutNode& node, QGridLayout& into);
  void AddField(const LayoutNode& node, QGridLayout& into, int row);
  QLayout* FieldBox(const LayoutNode& node, ControlBinding& binding);
  QLabel* FieldLabel(const LayoutNode& node, ControlBinding& binding);
  // Whether the node can use more height, or width.
  bool Grows(const LayoutNode& node) const;

  FindBinding find_;
};

}  // namespace zento
