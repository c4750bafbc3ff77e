#include "PublishedDates.h"

namespace workbench::schedule {

TEST(PublishedDates, AreTheRollDaysOfTheirRules) {
  for (const PublishedRule& rule : published_rules()) {
    const TradingDays calendar = trading_days(shipped(rule.calendar));
    for (const KnownDate& known : rule.dates) {
      const ContractDates dates = contract_dates(rule.rule, known.contract, calendar);
      EXPECT_EQ(text_of(dates.roll), to_text(known.date)) << rule.product << ' ' << to_text(known.contract);
      EXPECT_EQ(dates.roll.basis, Basis::calendar);
      EXPECT_FALSE(dates.closed);
    }
  }
}

}  // namespace workbench::schedule
