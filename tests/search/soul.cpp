#include "search/clssoul.h"

#include <gtest/gtest.h>

using namespace nvoChess;
using nuvobase::clsString;

namespace {

clsSoul Uniform(int32_t value) {
    clsSoul soul;
    for (int32_t& parameter : soul.P) parameter = value;
    return soul;
}

} // namespace

TEST(Soul, TextFormsAndDrawsBelow105) {
    clsSoul soul;
    EXPECT_EQ(soul.LoadText(clsString(clsSoul::Named[0])), "Simple5");
    EXPECT_EQ(soul.Text(), "7\t20\t20\t5\t5\t8\t8\t10\t10\t20\t5\t1\t5\t15\t5\t10\t");

    // Each number is the word up to the next space: the empty word between two spaces is 0, so is what atoi
    // can't read, and a missing number.
    EXPECT_EQ(soul.LoadText(clsString("Mine=1 2 3  -4 x5 6\t7")), "Mine");
    EXPECT_EQ(soul.Text(), "1\t2\t3\t0\t-4\t0\t6\t0\t0\t0\t0\t0\t0\t0\t0\t0\t");

    // Without "=" the whole text is the name and every parameter is 0.
    EXPECT_EQ(soul.LoadText(clsString("NoNumbers 5 6")), "NoNumbers 5 6");
    EXPECT_EQ(soul.Text(), clsString("0\t").Append("0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t0\t"));

    // The tab form reads back.
    clsSoul copy;
    copy.LoadText(clsString(clsSoul::Named[3]));
    soul.LoadNumbers(copy.Text());
    EXPECT_EQ(soul.Text(), copy.Text());
    EXPECT_EQ(soul[clsSoul::PassedPawn], 88);

    // Random parameters are drawn below 105, some above 100.
    bool high = false;
    for (int round = 0; round < 50; ++round) {
        soul.Randomize();
        for (int32_t parameter : soul.P) {
            EXPECT_GE(parameter, 0);
            EXPECT_LT(parameter, 105);
            high = high || parameter > 100;
        }
    }
    EXPECT_TRUE(high);
}

TEST(Soul, CrossBands) {
    // All 1 crossed with all 100: 100 is the other's value, 50 the mean (an integer division), 1 the own one,
    // anything else a fresh draw. The bands are 60, 8, 30 and 2 in 100.
    int counts[4] = {};
    const int trials = 1000;
    for (int i = 0; i < trials; ++i) {
        clsSoul soul = Uniform(1);
        soul.Cross(Uniform(100));
        for (int32_t parameter : soul.P)
            ++counts[parameter == 100 ? 0 : parameter == 50 ? 1 : parameter == 1 ? 2 : 3];
    }
    const double all = trials * 16.0;
    EXPECT_NEAR(counts[0] / all, 0.60, 0.03);
    EXPECT_NEAR(counts[1] / all, 0.08, 0.015);
    EXPECT_NEAR(counts[2] / all, 0.30, 0.03);
    EXPECT_NEAR(counts[3] / all, 0.02, 0.01);
}
