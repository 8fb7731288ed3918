#include "app/controls.h"

#include <gtest/gtest.h>

namespace kestrova {

TEST(Controls, AnAbsentControlReadsAsNothingAndIgnoresWhatItIsSent) {
  Outlet<TextField> label;
  Outlet<ComboBox> combo;
  Outlet<CheckBox> box;
  EXPECT_TRUE(label.isAbsent());
  label->setStringValue(QStringLiteral("text"));
  EXPECT_EQ(label->stringValue(), QString());
  EXPECT_EQ(combo->indexOfSelectedItem(), 0);
  combo->selectItemAtIndex(-1);
  EXPECT_EQ(combo->indexOfSelectedItem(), 0);
  box->setState(CheckBox::on);
  EXPECT_EQ(box->state(), CheckBox::off);
  EXPECT_EQ(label.operator->(), Outlet<TextField>().operator->()) << "one stands in for all";
}

TEST(Controls, AnOutletLosesItsControlWhenTheOwnerDropsIt) {
  auto control = std::make_shared<TextField>();
  Outlet<TextField> label;
  label = control;
  label->setStringValue(QStringLiteral("text"));
  EXPECT_EQ(label->stringValue(), QStringLiteral("text"));
  control.reset();
  EXPECT_TRUE(label.isAbsent());
}

TEST(Controls, ADisabledButtonDoesNothing) {
  Button button;
  int clicks = 0;
  button.action = [&] { ++clicks; };
  button.performClick();
  button.setEnabled(false);
  button.performClick();
  EXPECT_EQ(clicks, 1);
}

TEST(Controls, ACheckBoxKnowsThreeStates) {
  CheckBox box;
  box.setState(7);
  EXPECT_EQ(box.state(), CheckBox::on);
  box.setState(-5);
  EXPECT_EQ(box.state(), CheckBox::mixed);
  box.setState(0);
  EXPECT_EQ(box.state(), CheckBox::off);
  box.performClick();
  EXPECT_EQ(box.state(), CheckBox::on);
}

TEST(Controls, AComboBoxKeepsWhatItDisplaysApartFromItsSelection) {
  ComboBox combo;
  combo.setItems({QStringLiteral("one"), QStringLiteral("two")});
  combo.selectItemAtIndex(1);
  EXPECT_EQ(combo.objectValueOfSelectedItem(), QStringLiteral("two"));
  EXPECT_EQ(combo.objectValue(), QString());
  combo.setObjectValue(QStringLiteral("other"));
  EXPECT_EQ(combo.indexOfSelectedItem(), 1);
  combo.chooseItem(0);
  EXPECT_EQ(combo.objectValue(), QStringLiteral("one"));
  combo.selectItemAtIndex(9);
  EXPECT_EQ(combo.indexOfSelectedItem(), ComboBox::noSelection);
}

TEST(Controls, ATableForgetsItsSelectionWhenItReloads) {
  TableView table;
  table.selectRowIndexes({0, 2});
  table.reloadData();
  EXPECT_TRUE(table.selectedRowIndexes().empty());
}

}  // namespace kestrova
