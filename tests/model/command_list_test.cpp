#include "model/command_list.h"

#include <gtest/gtest.h>

#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

TEST(CommandListTest, WhatHasNoNameHasNoLine) {
  struct : ResolutionNames {
    [[nodiscard]] std::string ResolutionName(std::int32_t) const override { return "resolution"; }
  } resolutions;
  LinkFixture unit;
  const CommandList commands(unit.model, resolutions);
  unit.catalogue.AddParameter(140, "", 0, 0, 1, false);
  unit.catalogue.AddParameter(141, "named", 0, 0, 1, false);
  const auto lines = commands.Lines();
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(AddressOf(lines.front().index), 141);
}

}  // namespace
}  // namespace kalde2
