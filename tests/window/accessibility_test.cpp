#include "window/value_combo_box.h"
#include "window_fixture.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QProgressBar>

namespace kestrova::test {

namespace {

/// What a screen reader reads.
class Accessibility : public WindowTest {
 protected:
  QAccessibleInterface& of(const char* name) {
    return *QAccessible::queryAccessibleInterface(&widget<QWidget>(name));
  }
  QString name(const char* control) { return of(control).text(QAccessible::Name); }
  /// The text of the label that a control belongs to.
  QString label(const char* control) {
    for (const auto& [other, relation] : of(control).relations(QAccessible::Label)) {
      if (relation.testFlag(QAccessible::Label)) return other->text(QAccessible::Name);
    }
    return {};
  }
};

TEST_F(Accessibility, HasANameAndADescriptionForEveryControl) {
  open();
  int seen = 0;
  for (auto* control : window->findChildren<QWidget*>()) {
    const bool isControl = control->focusPolicy() != Qt::NoFocus || qobject_cast<QProgressBar*>(control) ||
                           qobject_cast<QAbstractButton*>(control);
    const bool isPart = control->objectName().isEmpty() || control->objectName().startsWith(u"qt_");
    if (!isControl || isPart || control->inherits("QMenu") || control->inherits("QMenuBar")) continue;
    auto* accessible = QAccessible::queryAccessibleInterface(control);
    ASSERT_NE(accessible, nullptr) << control->objectName().toStdString();
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << control->objectName().toStdString();
    EXPECT_FALSE(accessible->text(QAccessible::Description).isEmpty()) << control->objectName().toStdString();
    ++seen;
  }
  EXPECT_EQ(seen, 16);
}

TEST_F(Accessibility, SaysWhatANumberCounts) {
  open();
  EXPECT_EQ(name("lblPhotoCount"), QStringLiteral("Photos found"));
  controls().lblPhotoCount->setStringValue(QStringLiteral("1240"));
  controls().trgRotatedSize->setStringValue(QStringLiteral("3.10 MB"));
  frame();
  EXPECT_EQ(name("lblPhotoCount"), QStringLiteral("Photos found: 1240"));
  EXPECT_EQ(name("trgRotatedSize"), QStringLiteral("Size of the photos rewritten: 3.10 MB"));
  setTarget("/target");
  frame();
  EXPECT_EQ(name("lblTargetPath"), QStringLiteral("Target folder: /target"));
}

TEST_F(Accessibility, TellsWhatAComboBoxDisplays) {
  open();
  EXPECT_EQ(of("comboFolderFormat").text(QAccessible::Value), QStringLiteral("Photos and videos"));
  EXPECT_EQ(name("comboFolderFormat"), QStringLiteral("Photos and videos"));
  EXPECT_EQ(of("comboFolderFormat").role(), QAccessible::ComboBox);
  EXPECT_EQ(label("comboFolderFormat"), QStringLiteral("Folders"));
  controls().comboFolderFormat->chooseItem(2);
  frame();
  EXPECT_EQ(of("comboFolderFormat").text(QAccessible::Value), QStringLiteral("2014/05/21"));
}

TEST_F(Accessibility, OpensAComboBoxOnRequest) {
  open();
  auto& combo = of("comboCopy");
  ASSERT_EQ(combo.childCount(), 1);
  EXPECT_EQ(combo.indexOfChild(combo.child(0)), 0);
  auto* view = widget<ValueComboBox>("comboCopy").view();
  combo.actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
  EXPECT_TRUE(eventually([&] { return view->isVisible(); }));
  combo.actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_TRUE(eventually([&] { return !view->isVisible(); }));
}

TEST_F(Accessibility, LabelsEveryChoice) {
  open();
  EXPECT_EQ(label("comboCopy"), QStringLiteral("Take"));
  EXPECT_EQ(label("comboPhotoFormats"), QStringLiteral("Photo formats"));
  EXPECT_EQ(label("comboResolution"), QStringLiteral("Size"));
}

}  // namespace

}  // namespace kestrova::test
