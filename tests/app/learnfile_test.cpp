// The learner's result file as it is read back on resume, and the names of its per-generation files.
#include "app/learnfile.h"

#include <gtest/gtest.h>

#include <string>

namespace nvoChess {
namespace {

using nuvobase::clsString;

struct FileNameRow {
    const char* File;
    int64_t Generation;
    const char* Expected;
};

TEST(LearnFileTest, GenerationFiles) {
    const FileNameRow rows[] = {
        {"learn.csv", 7, "learn.007.csv"},
        {"runs/learn.csv", 1234, "runs/learn.1234.csv"},
        {"runs.old/learn", 12, "runs.old/learn.012"},
    };
    for (const FileNameRow& row : rows)
        EXPECT_STREQ(GenerationFile(clsString(row.File), row.Generation).Text(), row.Expected) << row.File;
}

struct LineRow {
    const char* Line;
    const char* Name;
    int64_t Score;
    const char* Soul;
    bool Complete, Numeric;
};

TEST(LearnFileTest, MemberLines) {
    const LineRow rows[] = {
        {"3\t1\t'L,A, Nights'\t-4\t1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\t16\t", "L,A, Nights",
         -4, "L,A, Nights=1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16", true, true},
        // Cut behind the second parameter.
        {"3\t2\t'Clotho'\t2\t7\t20", "Clotho", 2, "Clotho=7 20", false, true},
        {"3\t2\t'Abaddon's Bolero'\tabc\t7\tx\t", "Abaddon's Bolero", 0, "Abaddon's Bolero=7 x", false,
         false},
        {"", "", 0, "=", false, true},
    };
    for (const LineRow& row : rows) {
        const clsLearnLine read = ReadLearnLine(clsString(row.Line));
        EXPECT_STREQ(read.Name.Text(), row.Name) << row.Line;
        EXPECT_EQ(read.Score, row.Score) << row.Line;
        EXPECT_STREQ(read.Soul.Text(), row.Soul) << row.Line;
        EXPECT_EQ(read.Complete, row.Complete) << row.Line;
        EXPECT_EQ(read.Numeric, row.Numeric) << row.Line;
    }
}

TEST(LearnFileTest, LastGenerationFound) {
    const nuvobase::clsCStrings lines =
        TextLines(clsString("1\ta\r\n1\tb\r\n\r\n 2\tc\r\n2\td\r\n\r\nx\te\r\n"));
    int first = -1;
    EXPECT_EQ(HighestGeneration(lines, first), 2);
    EXPECT_EQ(first, 2);
    EXPECT_EQ(lines.Count, 5);
}

} // namespace
} // namespace nvoChess
