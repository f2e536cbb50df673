#include <gtest/gtest.h>

#include <array>
#include <random>

#include "bench/soak/memory_watch.h"
#include "simulator/unit.h"
#include "tests/support/fake_link.h"

namespace kalde2 {
namespace {

constexpr std::array kFaultsInTurn = {"none",         "late=300",      "split=200,3",  "none",
                                      "noise-before", "noise-after",   "silent-for=9", "none",
                                      "error-reply",  "wrong-address", "short-frame",  "none"};

/// The link and the values, with a simulated unit at the other end.
struct LinkSoak : ::testing::Test, LinkFixture {
  LinkSoak() {
    LoadProduct(35);
    port.on_write = [this](std::string_view frame) { return Answer(frame); };
  }

  std::string Answer(std::string_view frame) {
    std::string now;
    for (const LineAction& action : unit.Receive(frame)) {
      if (action.after.count() == 0) {
        now += action.bytes;
      } else {
        clock.After(action.after, [this, bytes = action.bytes] { port.Receive(bytes); });
      }
    }
    return now;
  }

  /// One transaction with a parameter of the product; what the fakes remember is dropped.
  ReplyRecord Transact(bool is_read, std::int16_t address, std::int32_t value) {
    // Silence in the last second of an hour never ends, so every request is sent at half past.
    clock.SetMillisecondOfHour(std::chrono::minutes(30));
    const ReplyRecord reply =
        link.SendParameter(is_read ? kRead : kWrite, kFirstSourceCode, value, address);
    port.written.clear();
    display.log.clear();
    return reply;
  }

  /// A value that the parameter can take.
  std::int32_t ValueFor(CatalogueIndex index) {
    constexpr std::uint32_t kListItems = 4;
    const ParamRecord& record = catalogue.Record(index);
    if (record.HasList) return static_cast<std::int32_t>(random() % kListItems);
    return std::uniform_int_distribution<std::int32_t>(record.MinValue, record.MaxValue)(random);
  }

  /// Transactions one after the other, each with a parameter and a value by chance, the unit's
  /// faults changing all the while. @return how many were answered in order
  long Run(long transactions) {
    constexpr long kEachFault = 1000;
    const std::vector<CatalogueIndex>& parameters = catalogue.ActiveParams();
    long answered = 0;
    for (long i = 0; i < transactions; ++i) {
      const char* const fault =
          kFaultsInTurn[static_cast<std::size_t>(i / kEachFault) % kFaultsInTurn.size()];
      if (i % kEachFault == 0) {
        (void)unit.Faults().Add("none");
        EXPECT_FALSE(unit.Faults().Add(fault).has_value());
      }
      const CatalogueIndex parameter = parameters[random() % parameters.size()];
      const std::int32_t value = ValueFor(parameter);
      const Address address = AddressOf(parameter);
      const bool is_read = random() % 2 == 0;
      const ReplyRecord reply = Transact(is_read, address, value);
      const bool in_order = reply.Valid && reply.Address == address &&
                            reply.Value == unit.Value(address, kFirstSourceCode) &&
                            (is_read || reply.Value == value) && !link.CommsBusy();
      const bool must_be = std::string_view(fault) == "none";
      EXPECT_TRUE(in_order || !must_be) << "transaction " << i << " with address " << address;
      answered += in_order ? 1 : 0;
    }
    return answered;
  }

  SimulatedUnit unit{UnitOptions{}};
  std::mt19937 random;
};

TEST_F(LinkSoak, AMillionTransactionsUnderChangingFaults) {
  constexpr long kWarmUp = 50'000;
  constexpr long kTransactions = 1'000'000;
  Run(kWarmUp);
  const MemoryWatch memory;
  const long answered = Run(kTransactions);
  memory.Finish(kTransactions, "transactions");
  std::printf("         of these %ld answered in order\n", answered);

  // No drift: with the faults gone, the panel's values become the unit's.
  (void)unit.Faults().Add("none");
  for (const CatalogueIndex index : catalogue.ActiveParams()) {
    const Address address = AddressOf(index);
    ASSERT_TRUE(Transact(true, address, 0).Valid) << address;
  }
  values.SetParamValue(ValueStore::kCurrentSource, kFirstSourceCode);
  for (const CatalogueIndex index : catalogue.ActiveParams()) {
    const Address address = AddressOf(index);
    constexpr int kOnSourceLoss = 163;  // its replies go to the column that element 278 numbers
    if (address == address::kSetupSource || address == kOnSourceLoss) continue;
    EXPECT_EQ(values.GetParamValue(index), unit.Value(address, kFirstSourceCode)) << address;
  }
}

}  // namespace
}  // namespace kalde2
