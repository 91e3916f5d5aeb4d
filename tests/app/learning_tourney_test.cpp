// The learning tournament: candidate souls judged by whole round loops of the pupil, their log lines, the
// breeding step, and the embedded player taking up the soul file.
#include "xboard_fixture.h"

#include "match/clstourney.h"
#include "search/clsembeddedplayer.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <unistd.h>

namespace nvoChess {
namespace {

namespace fs = std::filesystem;

// The soul file lies in the working folder: each test works in a folder of its own.
class ThreadedLearningTourneyTest : public XBoardTest {
protected:
    ThreadedLearningTourneyTest()
        : Folder(fs::temp_directory_path() / ("corvane_learning_" + std::to_string(getpid()))),
          Old(fs::current_path()) {
        fs::create_directories(Folder);
        fs::current_path(Folder);
    }
    ~ThreadedLearningTourneyTest() override {
        fs::current_path(Old);
        fs::remove_all(Folder);
    }

    fs::path Folder, Old;
};

// A learning tournament of two embedded players with a tiny clock.
constexpr const char* LearningFile = CORVANE_TEST_DATA "/embedded_pair.xml";

TEST_F(ThreadedLearningTourneyTest, GenerationsRankAndBreedTheCandidates) {
    clsTourney::LearningGenerations = 2;
    clsTourney tourney(1, clsString(LearningFile), &Captured.Output);
    ASSERT_TRUE(tourney.Start());
    tourney.Wait();
    // The text of the log lines behind id, time, round, game and "-": generations, trials and ranks.
    std::vector<std::string> generations, trials, ranks;
    std::string last;
    for (const std::string& line : Written()) {
        const std::vector<std::string> fields = Split(line, '\t');
        if (fields.size() <= 5 || fields[4] != "-") continue;
        last = line.substr(line.find("-\t") + 2);
        if (last.rfind("# learning generation ", 0) == 0) generations.push_back(last);
        if (last.rfind("player ", 0) == 0) trials.push_back(last);
        if (last.size() > 1 && last[0] == '#' && isdigit(last[1])) ranks.push_back(last);
    }
    EXPECT_EQ(generations, (std::vector<std::string>{"# learning generation 0", "# learning generation 1"}));
    ASSERT_EQ(trials.size(), 10u);
    ASSERT_EQ(ranks.size(), 10u);
    for (size_t g = 0; g < 2; ++g) {
        // Best first, each candidate once, with the score of its trial and sixteen values.
        std::set<size_t> seen;
        int previous = INT32_MAX;
        for (size_t i = 0; i < 5; ++i) {
            EXPECT_EQ(Split(trials[g * 5 + i], '\t')[0], "player " + std::to_string(i) + " score");
            const std::vector<std::string> rank = Split(ranks[g * 5 + i], '\t');
            ASSERT_EQ(rank.size(), 17u) << ranks[g * 5 + i];
            const int score = std::stoi(rank[0].substr(1));
            const size_t id = std::stoul(rank[1].substr(0, rank[1].find('=')));
            ASSERT_LT(id, 5u);
            EXPECT_EQ(score, std::stoi(Split(trials[g * 5 + id], '\t')[1]));
            EXPECT_LE(score, previous);
            previous = score;
            seen.insert(id);
        }
        EXPECT_EQ(seen.size(), 5u);
    }
    EXPECT_EQ(last, "----------------- learning has finished");
    std::ifstream soul(clsTourney::SoulFile);
    const std::string text((std::istreambuf_iterator<char>(soul)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text.substr(0, 2), "4=");
    EXPECT_EQ(Split(text, '\t').size(), 16u);
}

TEST_F(ThreadedLearningTourneyTest, PupilSoulFileFormsAndBreedingSteps) {
    const std::string expected = "1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\t16\t";
    for (const char* soul : {"3=1\t2\t3\t4\t5\t6\t7\t8\t9\t10\t11\t12\t13\t14\t15\t16",
                             "name=1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n"}) {
        clsEmbeddedPlayer player(clsString("pupil"), &Captured.Output, nullptr, clsString(soul));
        EXPECT_STREQ(player.GetSoulText().Text(), expected.c_str()) << soul;
    }
    // A step goes 100/105 of the way, cut toward zero, and stops when it would be 0; values stay within 0 and
    // the pawn value, 105.
    const struct {
        int32_t Player, Best, Expected;
    } rows[] = {{0, 100, 99}, {100, 0, 1}, {50, 200, 105}, {30, 30, 30}};
    clsTourney tourney(1, clsString("none.xml"), &Captured.Output);
    clsEmbeddedPlayer engine(clsString("unit"), &Captured.Output, nullptr, clsString());
    for (const auto& row : rows) {
        clsPlayer player, best;
        player.Engine = &engine;
        for (int i = 0; i < 16; ++i) {
            player.Soul.Add(row.Player);
            best.Soul.Add(row.Best);
        }
        // Each parameter is bred one time in eight: enough calls breed every one to its end.
        for (int call = 0; call < 400; ++call) tourney.BreedTowards(player, best);
        for (int i = 0; i < 16; ++i)
            EXPECT_EQ(player.Soul.GetAt(i), row.Expected) << row.Player << " " << row.Best;
    }
}

} // namespace
} // namespace nvoChess
