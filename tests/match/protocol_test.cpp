// The client side of both protocols, word for word, and the rules of a refereed game that need no engine.
#include "match/clsredirectedchild.h"
#include "match/clstourney.h"
#include "match/clstourneygame.h"
#include "match/recordingengine.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

using namespace nvoChess;

namespace {

using Lines = std::vector<std::string>;

struct SentRow {
    const char* Name;
    uint32_t Protocol;
    int Side;
    std::function<void(RecordingEngine&)> Call;
    Lines Expected;
};

TEST(EngineProtocol, LinesSentAndLinesRead) {
    using Engine = RecordingEngine;
    const auto handshake = [](Engine& e) { e.Handshake(); };
    const auto newGame = [](Engine& e) { e.NewGame(); };
    const auto go = [](Engine& e) { e.Go(); };
    const auto e2e4 = [](Engine& e) { e.NotifyMove("e2e4", 0); };
    const SentRow rows[] = {
        {"xboard handshake", 0, 0, handshake, {"xboard", "protover 2"}},
        {"uci handshake", 1, 0, handshake, {"uci"}},
        {"xboard new game", 0, 0, newGame, {"new", "post", "level 0 61 2"}},
        {"uci new game", 1, 0, newGame, {"ucinewgame", "position startpos", "isready"}},
        {"xboard go", 0, 1, go, {"time 6199", "otim 3000", "go"}},
        {"uci go as white", 1, 0, go, {"go wtime 61999 btime 30005 winc 2500 binc 1000"}},
        {"uci go as black", 1, 1, go, {"go wtime 30005 btime 61999 winc 1000 binc 2500"}},
        {"xboard opponent's move", 0, 1, e2e4, {"time 6199", "otim 3000", "e2e4"}},
        {"uci moves replayed from the start",
         1,
         0,
         [](Engine& e) { e.NotifyMove("e2e4", 0), e.NotifyMove("e7e5", 1); },
         {"position startpos moves e2e4 e7e5 ", "go wtime 61999 btime 30005 winc 2500 binc 1000"}},
        {"own move only recorded", 0, 0, e2e4, {}},
        {"quit", 1, 0, [](Engine& e) { e.QuitEngine(); }, {"quit"}},
        {"no protocol says nothing", 7, 0, [](Engine& e) { e.Handshake(), e.NewGame(), e.Go(); }, {}},
    };
    for (const SentRow& row : rows) {
        SCOPED_TRACE(row.Name);
        RecordingEngine engine;
        engine.Protocol = row.Protocol;
        engine.Side = row.Side;
        // The same clocks for every step: the lines show which of them each protocol passes on.
        engine.OwnTimeMs = 61999;
        engine.OpponentTimeMs = 30005;
        engine.OwnIncrementMs = 2500;
        engine.OpponentIncrementMs = 1000;
        row.Call(engine);
        EXPECT_EQ(engine.Sent, row.Expected);
    }

    // Parsing a line gives the normal form.
    const struct {
        uint32_t Protocol;
        const char *Line, *Result;
        bool Ready, PingFeature;
    } lines[] = {
        {1, "bestmove E7E8Q ponder E2E4", "move e7e8q ponder e2e4", false, false},
        {1, "uciok", "", true, false},
        {1, "readyok", "", true, false},
        {1, "info depth 3 pv e2e4", "", false, false},
        {1, "move e2e4", "", false, false},
        {0, "move E7E8=Q", "move e7e8=q", false, false},
        {0, "RESIGN", "resign", false, false},
        {0, "1/2-1/2 {draw}", "result 1/2-1/2", false, false},
        {0, "0-1 {Black mates}", "result 0-1", false, false},
        {0, "12 nonsense", "", false, false},
        {0, "pong", "", true, false}, // an empty number is 0, the counter of a fresh engine
        {0, "pong 3", "", false, false},
        {0, "feature done=0", "", false, false},
        {0, "feature setboard=1 done=1", "", true, false},
        {0, "feature ping=1", "", false, true},
        {0, "", "", false, false},
    };
    for (const auto& row : lines) {
        SCOPED_TRACE(row.Line);
        RecordingEngine engine;
        engine.Protocol = row.Protocol;
        EXPECT_STREQ(engine.ParseLine(row.Line).Text(), row.Result);
        EXPECT_EQ(engine.Ready, row.Ready);
        EXPECT_EQ(engine.PingFeature, row.PingFeature);
    }

    // The ping feature holds Ready back until the matching pong.
    RecordingEngine engine;
    engine.ParseLine("feature ping=1 done=1");
    EXPECT_EQ(engine.Sent, Lines{"ping 1"});
    EXPECT_FALSE(engine.Ready);
    engine.ParseLine("pong 2");
    EXPECT_FALSE(engine.Ready);
    engine.ParseLine("pong 1");
    EXPECT_TRUE(engine.Ready);
    engine.ParseLine("feature done=0");
    EXPECT_FALSE(engine.Ready);
    engine.ParseLine("feature done=1");
    EXPECT_TRUE(engine.Ready);
    // A quoted value is not unquoted: its words fall apart, and a key behind them is lost in the pieces.
    engine.ParseLine("feature myname=\"Fake Engine\" ping=1");
    EXPECT_STREQ(engine.Options.GetValue("myname").Text(), "\"Fake");
    EXPECT_FALSE(engine.PingFeature);
    EXPECT_EQ(engine.Sent.size(), 1u);
}

TEST(GameRules, TimeForfeitTimeControlAndPgnText) {
    // An answer up to 50 ms beyond the clock is in time.
    EXPECT_FALSE(clsTourneyGame::IsOverTime(5050, 5000));
    EXPECT_TRUE(clsTourneyGame::IsOverTime(5051, 5000));
    EXPECT_TRUE(clsTourneyGame::IsOverTime(51, 0));
    // The fourth occurrence of a position is played by the refereed games of fake engines.
    EXPECT_STREQ(clsTourney::TimeControlTag(0, 60000, 0).Text(), "60");
    EXPECT_STREQ(clsTourney::TimeControlTag(300000, 300000, 0).Text(), "300000/300");
    EXPECT_STREQ(clsTourney::TimeControlTag(40, 1999, 500).Text(), "40/1+500");
    // The PGN text quotes tags and leaves the result to its tag.
    clsTourneyGame game(1, 0, 1000, 0, nullptr, nullptr, clsString(), nullptr);
    game.Tags.SetValue("White", "A \"quoted\" name");
    game.MoveText = "1. e2e4 e7e5 ";
    game.SetCode(0x0200);
    EXPECT_STREQ(game.PgnText().Text(), "[White \"A \"\"quoted\"\" name\"]\r\n[Result \"1/2-1/2\"]\r\n"
                                        "[Reason \"\"]\r\n\r\n1. e2e4 e7e5 ");
}

TEST(ChildProcess, ArgumentsAreSplitAsAShellSplitsThem) {
    const struct {
        const char* Parameters;
        Lines Words;
    } rows[] = {
        {"", {}},
        {"  -x  -t 4000 ", {"-x", "-t", "4000"}},
        {"\"a b\" 'c \"d' e\\ f", {"a b", "c \"d", "e f"}},
        {"x\"\"y ''", {"xy", ""}},
    };
    for (const auto& row : rows) {
        const nuvobase::clsCStrings words = clsRedirectedChild::SplitArguments(row.Parameters);
        Lines got;
        for (int i = 0; i < words.Count; ++i) got.emplace_back(words.GetAt(i).Text());
        EXPECT_EQ(got, row.Words) << row.Parameters;
    }
}

} // namespace
