#include "files/snapshot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "files/mod_FileHandler.h"
#include "link/per_source.h"
#include "tests/support/fake_link.h"
#include "tests/support/temp_folder.h"

namespace kalde2 {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct SnapshotTest : ::testing::Test, LinkFixture {
  TempFolder folder;
};

TEST_F(SnapshotTest, OfTheStoreEqualsThatOfTheFileSavedFromIt) {
  LoadProduct(35);
  Fit({0, 3});
  values.SetParamValue(29, -3);
  values.SetSourceValue(PerSourceSlot(182), 3, 7);
  const Snapshot held = TakeSnapshot(model, 35);
  SaveSettings("panel.txt", model, 35);
  // Saving leaves the last source selected, which is a value as any other.
  values.SetParamValue(ValueStore::kCurrentSource, 0);
  const Snapshot saved = SnapshotOfFile("panel.txt");
  EXPECT_EQ(saved.product_type, 35);
  EXPECT_EQ(saved.entries, held.entries);
  EXPECT_THAT(Compare(held, saved), IsEmpty());

  values.SetParamValue(29, 4);
  values.SetSourceValue(PerSourceSlot(182), 3, 8);
  EXPECT_THAT(Compare(saved, TakeSnapshot(model, 35)),
              ElementsAre(Difference{159, 0, -3, 4}, Difference{182, 0x30, 7, 8}));
  EXPECT_EQ(values.ParamValue(ValueStore::kCurrentSource), 0) << "looking changes nothing";
}

TEST_F(SnapshotTest, TellsWhatOneSideLacksAndTakesOddFiles) {
  const Snapshot one{35, {{159, 16, 1}, {182, 48, 2}}};
  const Snapshot other{71, {{182, 48, 2}, {160, 16, 3}}};
  EXPECT_THAT(Compare(one, other), ElementsAre(Difference{159, 16, 1, std::nullopt},
                                               Difference{160, 16, std::nullopt, 3}));
  WriteText("odd.txt", "[1.0]\n[DEVICE]\nK2-6350\n[GENERAL1A]\n159,1\n182,9\n159,2\n");
  const Snapshot odd = SnapshotOfFile("odd.txt");
  EXPECT_EQ(odd.product_type, std::nullopt);
  EXPECT_THAT(Compare(odd, {}), ElementsAre(Difference{159, 0, 2, std::nullopt},
                                            Difference{182, 0, 9, std::nullopt}));
}

}  // namespace
}  // namespace kalde2
