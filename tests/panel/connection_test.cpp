#include "tests/support/panel_fixture.h"

namespace kalde2 {
namespace {

class Connection : public PanelFixture {};

TEST_F(Connection, OpensDetectsAndFillsTheList) {
  StartAndOpen(35);
  EXPECT_EQ(Form().lbl_comstate->text(), "OPEN : K2-6350");
  EXPECT_EQ(Form().Cmd_openclose->text(), "Close &Port");
  EXPECT_GT(Form().lst_commands->count(), 40);
  EXPECT_EQ(port.setups.at(0).settings, "57600,N,8,1");
}

}  // namespace
}  // namespace kalde2
