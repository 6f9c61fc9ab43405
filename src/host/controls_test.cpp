#include "host/controls.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/form.h"
#include "host/virtual/virtual_host.h"
#include "text/status.h"

namespace zento {
namespace {

struct Sample : Form {
  explicit Sample(Host& host) : Form(host, "frmSample", "Sample") { txtText.multiline = true; }
  LayoutNode Layout() override { return layout::Item(txtTitle); }
  TextBox txtTitle{*this, "txtTitle"};
  TextBox txtText{*this, "txtText"};
  ComboBox cboUnit{*this, "cboUnit"};
  Grid MSFlexGrid1{*this, "MSFlexGrid1", 2, 2};
};

struct ControlsTest : testing::Test {
  VirtualHost machine;
  Sample form{machine.host};
};

TEST_F(ControlsTest, ASelectionStaysInsideTheText) {
  TextBox& box = form.txtTitle;
  box.SetText("potential");
  box.Select({7, 99});
  EXPECT_EQ(box.selection(), (TextBox::Range{7, 9}));
  box.ReplaceSelection("m");
  EXPECT_EQ(box.text(), "potentim");
  EXPECT_EQ(box.selection(), (TextBox::Range{8, 8}));
  box.Select({4, 7});
  box.SetText("pH");
  EXPECT_EQ(box.selection(), (TextBox::Range{2, 2}));
}

TEST_F(ControlsTest, ErasingTakesAWholeCharacterOrTheSelection) {
  TextBox& box = form.txtTitle;
  ASSERT_TRUE(box.UserType("5 μA").ok());
  box.UserSelect({4, 4});
  ASSERT_TRUE(box.UserErase().ok());
  EXPECT_EQ(box.text(), "5 A");
  box.UserSelect({0, 2});
  ASSERT_TRUE(box.UserErase().ok());
  ASSERT_TRUE(box.UserErase().ok());  // nothing stands before the caret
  EXPECT_EQ(box.text(), "A");
}

TEST_F(ControlsTest, LineBreaksAreBlanksInALineAndLineFeedsInATextBox) {
  form.txtTitle.SetText("a\r\nb");
  EXPECT_EQ(form.txtTitle.text(), "a  b");
  form.txtText.SetText("a\r\nb\rc\n");
  EXPECT_EQ(form.txtText.text(), "a\nb\nc\n");
  form.txtText.Select({2, 3});
  EXPECT_EQ(form.txtText.CaretLine(), 1);
  EXPECT_EQ(form.txtText.CaretLineText(), "b");
}

TEST_F(ControlsTest, AChoiceIsKeptWhereNewItemsHaveItsIndex) {
  ComboBox& box = form.cboUnit;
  std::vector<int> chosen;
  box.on_select = [&](int index) { chosen.push_back(index); };
  box.SetItems({"A", "mA", "nA"});
  ASSERT_TRUE(box.UserSet("2").ok());
  ASSERT_TRUE(box.UserChoose(2).ok());
  EXPECT_FALSE(box.UserChoose(3).ok());
  box.SetItems({"V", "mV", "kV"});
  EXPECT_EQ(box.selected(), 2);
  box.SetItems({"V", "mV"});
  EXPECT_EQ(box.selected(), -1);
  EXPECT_EQ(chosen, (std::vector<int>{2, 2}));
}

TEST_F(ControlsTest, AGridKeepsTheCellsThatBothSizesHave) {
  Grid& grid = form.MSFlexGrid1;
  for (int i = 0; i < 4; ++i) grid.SetCell(i / 2, i % 2, std::to_string(i));
  grid.SelectRow(1);
  grid.Resize(3, 1);
  EXPECT_EQ(grid.Value(), "0\n2\n");
  EXPECT_EQ(grid.selected_row(), 1);
  grid.Resize(1, 3);
  EXPECT_EQ(grid.Value(), "0\t\t");
  EXPECT_EQ(grid.selected_row(), -1);
}

}  // namespace
}  // namespace zento
