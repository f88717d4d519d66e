// The algebra of versions, held against counting on small numbers.
#include "authoring/model/VersionSpan.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using authoring::NumberFilter;
using authoring::VersionFilter;
using authoring::VersionNumbers;
using authoring::VersionSpan;
using qelcore::utility::OSComponentVersion;
using qelsystemcompatibilityreport::VersionRange;

VersionSpan Span(const char* range) {
  return authoring::SpanOf(VersionRange(std::string(range)));
}

TEST(VersionSpanTest, ASpanHoldsWhatItsRangeHolds) {
  for (const char* const range :
       {"", "5.0", "5.0-", "5.0-5.+", "-6.1.+", "7.0-+", "9.0-8.0", "0.0.0.0", "+"}) {
    for (const char* const version :
         {"", "0.0.0.0", "5.0", "5.0.0.1", "5.9", "6.1.3", "6.2", "7.0", "8.5", "9.0", "+"}) {
      const VersionNumbers numbers = authoring::NumbersOf(OSComponentVersion(version));
      const VersionSpan span = Span(range);
      EXPECT_EQ(span.mFirst <= numbers && numbers <= span.mLast,
                VersionRange(std::string(range)).IsVersionInRange(OSComponentVersion(version)))
          << range << " and " << version;
    }
  }
}

TEST(VersionSpanTest, MergesAndCovers) {
  EXPECT_EQ(authoring::Merge({Span("3.0-4.0"), Span("1.0-2.0"), Span("9.0-8.0")}),
            (std::vector<VersionSpan>{Span("1.0-2.0"), Span("3.0-4.0")}));
  // Neighbours leave no version between them.
  EXPECT_EQ(authoring::Merge({Span("1.0-1.+"), Span("2.0-3.0")}), std::vector<VersionSpan>{Span("1.0-3.0")});
  EXPECT_EQ(authoring::Merge({Span("1.0-+"), Span("2.0-3.0")}), std::vector<VersionSpan>{Span("1.0-+")});
  EXPECT_TRUE(
      authoring::Covers({Span("1.0-3.0"), Span("5.0-9.0")}, {Span("1.0"), Span("2.0-3.0"), Span("6.0-9.0")}));
  EXPECT_FALSE(authoring::Covers({Span("1.0-3.0"), Span("5.0-9.0")}, {Span("2.0-5.0")}));
  EXPECT_FALSE(authoring::Covers({Span("1.0-3.0")}, {Span("")}));
  EXPECT_TRUE(authoring::Covers({Span("")}, {Span("1.0-3.0")}));
  EXPECT_FALSE(authoring::Covers({}, {Span("1.0")}));
}

/// What really can be left, of all numbers below 64.
std::set<std::uint32_t> Left(std::uint32_t mask, std::uint32_t modulus) {
  std::set<std::uint32_t> left;
  for (std::uint32_t number = 0; number < 64; ++number) {
    const OSComponentVersion version =
        (OSComponentVersion(number, 0, 0, 0) & OSComponentVersion(mask, 0, 0, 0)) %
        OSComponentVersion(modulus, 0, 0, 0);
    left.insert(version.mVersionW);
  }
  return left;
}

TEST(VersionSpanTest, ANumberFilterMissesNothing) {
  for (std::uint32_t mask = 0; mask < 32; ++mask) {
    for (std::uint32_t modulus = 0; modulus < 20; ++modulus) {
      const std::set<std::uint32_t> left = Left(mask, modulus);
      const NumberFilter filter(mask, modulus);
      EXPECT_GE(filter.Largest(), *left.rbegin()) << mask << " % " << modulus;
      // Exact where the modulus is beyond the mask, or the mask keeps the low bits.
      const bool isExact = modulus > mask || modulus == 0 || (mask & (mask + 1)) == 0;
      for (std::uint32_t number = 0; number < 40; ++number) {
        const auto truth = left.lower_bound(number);
        const auto answer = filter.LeastFrom(number);
        if (truth == left.end()) {
          EXPECT_TRUE(!isExact || !answer) << mask << " % " << modulus << " from " << number;
        } else {
          ASSERT_TRUE(answer) << mask << " % " << modulus << " from " << number;
          EXPECT_LE(*answer, *truth) << mask << " % " << modulus << " from " << number;
          EXPECT_TRUE(!isExact || *answer == *truth) << mask << " % " << modulus << " from " << number;
        }
      }
    }
  }
}

TEST(VersionSpanTest, AVersionFilterIsRightForSmallNumbers) {
  // Two numbers below 8 with every mask; the other two are cleared.
  for (std::uint32_t first = 0; first < 8; ++first) {
    for (std::uint32_t second = 0; second < 8; ++second) {
      const VersionFilter filter(OSComponentVersion(first, second, 0, 0), OSComponentVersion());
      for (std::uint32_t begin = 0; begin < 81; begin += 2) {
        for (std::uint32_t end = begin; end < 81; end += 3) {
          const VersionSpan span{{begin / 9, begin % 9, 1, 0}, {end / 9, end % 9, 0, 5}};
          bool isReached = false;
          for (std::uint32_t number = 0; number < 64; ++number) {
            const VersionNumbers left{number / 8 & first, number % 8 & second, 0, 0};
            isReached |= span.mFirst <= left && left <= span.mLast;
          }
          EXPECT_EQ(filter.MayReach(span), isReached)
              << first << '.' << second << ", " << begin << " to " << end;
        }
      }
    }
  }
}

}  // namespace
