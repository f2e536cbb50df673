#include "controls/drop_down_list.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace kalde2 {
namespace {

/// A list of 106 entries, "0" to "105", that has the focus.
class DropDownListTest : public testing::Test {
 protected:
  DropDownListTest() {
    for (int i = 0; i < kEntries; ++i) list_.addItem(QString::number(i));
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    list_.setFocus();
  }

  [[nodiscard]] bool IsOpen() const { return list_.view()->isVisible(); }

  static constexpr int kEntries = 106;
  QWidget window_;
  DropDownList list_{&window_};
  QSignalSpy chosen_{&list_, &QComboBox::activated};
};

TEST_F(DropDownListTest, TypingOpensItAndEnterChooses) {
  for (const auto& [end, index, choices] :
       {std::tuple{Qt::Key_Escape, 0, 0}, {Qt::Key_Return, 47, 1}}) {
    QTest::keyClick(&list_, '4');
    ASSERT_TRUE(IsOpen());
    QTest::keyClick(list_.view(), '7');
    EXPECT_EQ(list_.view()->currentIndex().row(), 47);
    EXPECT_EQ(list_.currentIndex(), 0);
    QTest::keyClick(list_.view(), end);
    EXPECT_FALSE(IsOpen());
    EXPECT_EQ(list_.currentIndex(), index);
    EXPECT_EQ(chosen_.count(), choices);
  }
  QTest::keyClick(&list_, '9', Qt::AltModifier);
  EXPECT_FALSE(IsOpen());
  QTest::keyClick(&list_, Qt::Key_Down);
  EXPECT_EQ(chosen_.takeLast().at(0), 48) << "an arrow key chooses at once";
  EXPECT_EQ(chosen_.count(), 1);
}

TEST_F(DropDownListTest, ItShowsFifteenEntriesAndAScrollBar) {
  list_.showPopup();
  const QAbstractItemView& view = *list_.view();
  const int row = view.sizeHintForRow(0);
  EXPECT_NEAR(static_cast<double>(view.viewport()->height()) / row, 15, 1);
  EXPECT_TRUE(view.verticalScrollBar()->isVisible());
}

}  // namespace
}  // namespace kalde2
