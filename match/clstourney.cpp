#include "match/clstourney.h"

#include "match/clsexternalengine.h"
#include "nuvobase/platform.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <deque>

using nuvobase::clsString;
using nuvobase::clsXML;

namespace nvoChess {

namespace {

constexpr int32_t DefaultGameMs = 60000;
constexpr int32_t ClockDefaultMs = 300000; // of a clock element without its attributes
constexpr int MsPerSecond = 1000;

int32_t ReadNumber(const clsString& text) {
    return int32_t(text.ToDecimal());
}

// An attribute read as a number, or fallback when it is absent.
int32_t NumberAttribute(clsXML& node, const char* name, int32_t fallback) {
    const clsString value = node.GetAttribute(name);
    return value.IsEmpty() ? fallback : ReadNumber(value);
}

// The local date and time, with milliseconds when there are any.
clsString Now() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm local{};
    localtime_r(&now.tv_sec, &local);
    char text[40];
    const long ms = now.tv_nsec / 1000000;
    std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    clsString date(text);
    if (ms != 0) {
        std::snprintf(text, sizeof text, ".%03ld", ms);
        date += text;
    }
    return date;
}

} // namespace

clsTourney::clsTourney(int32_t id, const clsString& path, nuvobase::clsTSafeOutput* output)
    : clsThread(clsString("tourney")), Output(output), Id(id) {
    Document.LoadFile(path.ToForwardSlashes());
}

clsTourney::~clsTourney() {
    Stop();
    Wait();
}

bool clsTourney::Run() {
    StartMs = nuvobase::ClockMs();
    LogLines.Clear();
    ClockMoves = 0;
    ClockGameMs = DefaultGameMs;
    ClockIncrementMs = 0;
    Round = 0;
    Threads = 1;
    Root = Document.FindDeep("tourney");
    if (!Root) {
        Output->Write("# tourney: the file has no tourney element", true);
        FlushLog();
        return true;
    }
    if (!ReadSettings()) {
        Output->Write("# end", true);
        FlushLog();
        return true;
    }
    clsXML* engines = Root->FindPath("tourney/engines", clsString(), clsString());
    if (!engines) {
        Output->Write("# tourney: the file has no engines element", true);
        FlushLog();
        return true;
    }
    Log(0, "tourney " + Name);
    // The console takes lines ended by LF alone.
    Output->Write(engines->ToText().ReplaceAll("\r\n", "\n"), false);
    MakePlayers(*engines);
    if (Sprt && Players.size() != 2) {
        Output->Write("# tourney: sprt tests a match of two players; it is left out", true);
        Sprt.reset();
    }
    if (!PgnOut.IsEmpty() || !Openings.Items.empty() || Sprt) {
        std::vector<clsString> names;
        for (auto& player : Players) names.push_back(player->Name);
        Standings = std::make_unique<clsStandings>(names);
        Standings->Sprt = Sprt;
        // Without openings a pair of games has no common start: each game counts alone.
        Standings->SprtByPair = !Openings.Items.empty();
    }
    if (!EnginesTakeOpenings()) {
        Output->Write("# end", true);
        FlushLog();
        return true;
    }
    if (Players.size() < 2) Output->Write("# tourney: fewer than two active engines, no game to play", true);
    PathPrefix = LogFolder;
    PathPrefix.PathJoin(FileStem().Text());
    PathPrefix += ".T" + clsString(Id);
    Log(0, "creating games");
    MakeGames();
    Log(0, clsString(int64_t(Games.size())) + " games created");
    Log(0, "          -   _");
    Log(0, "        [(|) (|)]       \"IN MOTO L'OROLOGIO DEL BIANCO!\"");
    Log(0, "_________________________");
    if (Type == Learning) {
        LearningRun();
        Log(0, "----------------- learning has finished");
    } else {
        PlayRounds();
        Round = Rounds;
        Log(0, "----------------- tournament has finished");
        for (auto& player : Players) Log(0, player->Name + ": " + clsString(player->GetScore()));
        Log(0, "-----------------");
        if (Standings) WriteStandings(true);
    }
    for (auto& player : Players) player->EndIdle();
    Output->Write("# end", true);
    FlushLog();
    return true;
}

bool clsTourney::ReadSettings() {
    Name = Root->GetAttribute("name");
    Rounds = 1;
    const clsString type = Root->GetAttribute("type");
    Type = type == "gauntlet" ? Gauntlet : type == "learning" ? Learning : RoundRobin;
    clsXML* options = Root->FindPath("options", clsString(), clsString());
    if (options) {
        Rounds = ReadNumber(options->GetValue("rounds", "1"));
        LogFolder = options->GetValue("logfolder", clsString());
        Threads = ReadNumber(options->GetValue("threads", "1"));
        // A game needs a thread: fewer than one would leave every game waiting for ever.
        if (Threads < 1) Threads = 1;
        Verbose = options->GetValue("verbose", clsString()) == "true";
        PaceMs = ReadNumber(options->GetValue("pace_ms", clsString(clsExternalEngine::DefaultPaceMs)));
        if (PaceMs < 0) PaceMs = 0;
        if (clsXML* clock = Root->FindPath("clock", clsString(), clsString())) {
            ClockMoves = NumberAttribute(*clock, "moves_per_second", ClockDefaultMs);
            ClockGameMs = NumberAttribute(*clock, "game_ms", ClockDefaultMs);
            ClockIncrementMs = NumberAttribute(*clock, "increment_ms", 0);
        }
        if (clsXML* adjudicate = options->FindPath("adjudicate", clsString(), clsString()))
            Adjudication = clsAdjudicationRules::Read(*adjudicate);
        PgnOut = options->GetValue("pgnout", clsString());
        PgnOut.Trim(' ');
        if (!PgnOut.IsEmpty()) {
            if (ShardCount > 0) {
                // The shard's mark goes in front of the extension: all.pgn becomes all.S2.pgn.
                const int dot = PgnOut.FindLast('.');
                const int mark = dot > PgnOut.FindLast('/') ? dot : PgnOut.Size();
                PgnOut = PgnOut.Left(mark) + ".S" + clsString(ShardIndex) + PgnOut.Mid(mark);
            }
            clsString path = LogFolder;
            PgnOut = path.PathJoin(PgnOut.Text());
        }
        if (!ReadOpenings(*options) || !ReadSprt(*options)) return false;
    }
    if (!LogFolder.IsEmpty()) {
        LogFile = LogFolder;
        LogFile.PathJoin(FileStem().Text());
        LogFile += ".log";
    }
    HeaderTags.Clear();
    if (clsXML* header = Root->FindPath("pgn/header", clsString(), clsString())) {
        for (int i = 0; i < header->Children.Count; ++i) {
            clsXML* tag = header->ChildAt(i);
            if (!tag || tag->Type != clsXML::TypeText ||
                tag->Name.Compare("nuvo", clsString::CompareStartsWith))
                continue;
            HeaderTags.SetValue(tag->Name, tag->Text, false);
        }
    }
    return true;
}

void clsTourney::MakePlayers(clsXML& engines) {
    nuvobase::clsXMLCollection all;
    engines.FindAll("engine", all);
    for (int n = 0; n < all.Count; ++n) {
        clsXML& engine = *all.Items[n];
        if (engine.GetAttribute("active") != "true") continue;
        clsString fileName = engine.GetValue("filename", clsString());
        fileName.Trim(' ').Unquote('"');
        auto player =
            std::make_unique<clsPlayer>(engine.GetAttribute("name"), engine.GetAttribute("protocol"),
                                        fileName, engine.GetValue("parameters", clsString()));
        nuvobase::clsXMLCollection options;
        engine.FindAll("option", options);
        for (int i = 0; i < options.Count; ++i)
            player->EngineOptions.SetValue(options.Items[i]->GetAttribute("name"),
                                           options.Items[i]->GetAttribute("value"));
        Log(0, "engine " + clsString(n + 1) + "\t" + player->Name + "\t" + player->FileName);
        Players.push_back(std::move(player));
    }
}

void clsTourney::MakeGames() {
    const int count = int(Players.size());
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            if (i == j || (Type != RoundRobin && i != 0 && j != 0)) continue;
            AddGame(int32_t(Games.size()) + 1, Players[i].get(), Players[j].get());
        }
    }
    PairingCount = Games.size();
}

clsTourneyGame& clsTourney::AddGame(int32_t id, clsPlayer* white, clsPlayer* black) {
    auto game = std::make_unique<clsTourneyGame>(id, ClockMoves, ClockGameMs, ClockIncrementMs, white, black,
                                                 PathPrefix + ".R0.G" + clsString(id) + ".pgn", Output);
    game->Verbose = Verbose;
    game->PaceMs = PaceMs;
    game->OnFinished = [this] { WakeScheduler(); };
    clsTourneyGame& added = *game;
    const bool locked = GamesLock.Lock() == 0;
    Games.push_back(std::move(game));
    if (locked) GamesLock.Unlock();
    return added;
}

clsString clsTourney::TimeControlTag(int32_t moves, int32_t gameMs, int32_t incrementMs) {
    clsString tag = clsString(gameMs / MsPerSecond);
    if (moves != 0) tag = clsString(moves) + "/" + tag;
    if (incrementMs != 0) tag += "+" + clsString(incrementMs);
    return tag;
}

void clsTourney::SetTags(clsTourneyGame& game, int position) {
    game.Tags.SetValue("Event", Name);
    game.Tags.SetValue("Site", clsString());
    game.Tags.SetValue("Date", clsString());
    game.Tags.SetValue("Round", clsString(game.Round));
    game.Tags.SetValue("NuvoRound", clsString(Id) + ":" + clsString(game.Round) + ":" + clsString(position));
    game.Tags.SetValue("NuvoSoftware", Software);
    game.Tags.SetValue("NuvoTimeControl", clsString(ClockMoves) + ":" + clsString(ClockGameMs) + ":" +
                                              clsString(ClockIncrementMs));
    game.Tags.SetValue("TimeControl", TimeControlTag(ClockMoves, ClockGameMs, ClockIncrementMs));
    game.Tags.SetValue("White", game.WhitePlayer->Name);
    game.Tags.SetValue("Black", game.BlackPlayer->Name);
    game.Tags.SetValue("Result", "*");
    for (int i = 0; i < HeaderTags.Count; ++i) game.Tags.SetValue(HeaderTags.GetName(i), HeaderTags.GetAt(i));
}

void clsTourney::PlayRounds() {
    for (auto& game : Games)
        if (game->Code == CodeRunning) game->Abort();
    for (auto& player : Players) player->SetScore(0);
    if (Resume && !TakeUpPlayedGames()) return;
    struct clsScheduled {
        int32_t Round;
        size_t Pairing;
    };
    std::deque<clsScheduled> waiting;
    for (int32_t round = 1; round <= Rounds; ++round) {
        if (!PlaysRound(round)) continue;
        for (size_t p = 0; p < PairingCount; ++p)
            if (PlayedGames.count({round, Games[p]->GameId}) == 0) waiting.push_back({round, p});
    }
    std::vector<clsTourneyGame*> playing; // started and not yet reported, in the order they started
    uint64_t progressDue = 0;
    while (!playing.empty() || (!waiting.empty() && MayStartGames())) {
        // The round shown, and with pauses the only one whose games may start: that of the oldest game.
        Round = playing.empty() ? waiting.front().Round : playing.front()->Round;
        clsString status;
        for (size_t g = 0; g < playing.size();) {
            clsTourneyGame& game = *playing[g];
            if (game.Finished) {
                Report(game);
                playing.erase(playing.begin() + ptrdiff_t(g));
                continue;
            }
            status += clsString(game.SideToMove == 0 ? "W" : "B") + clsString(game.MoveNumber) + " ";
            ++g;
        }
        const auto mayStart = [&](const clsScheduled& next) {
            return MayStartGames() && (PaceMs == 0 || next.Round == Round);
        };
        while (!waiting.empty() && playing.size() < size_t(Threads) && mayStart(waiting.front())) {
            const clsScheduled next = waiting.front();
            waiting.pop_front();
            clsTourneyGame& game = IdleGame(next.Pairing, playing);
            StartGame(game, next.Round, int(next.Pairing) + 1);
            playing.push_back(&game);
        }
        size_t pending = playing.size();
        for (auto next = waiting.begin(); next != waiting.end() && mayStart(*next); ++next) ++pending;
        const uint64_t now = nuvobase::ClockMs();
        if (PaceMs != 0 || now >= progressDue) {
            Output->Write("# ROUND " + clsString(Round) + "/" + clsString(Rounds) + " - GAMES PLAYING " +
                              clsString(int64_t(playing.size())) + "/" + clsString(int64_t(pending)) + " " +
                              status,
                          true);
            progressDue = now + SchedulerMs;
        }
        if (pending == 0) continue; // the round is over: the next one starts at once
        if (PaceMs == 0)
            AwaitGameEnd(int(progressDue - now));
        else
            nuvobase::SleepMs(SchedulerMs);
    }
}

clsTourneyGame& clsTourney::IdleGame(size_t pairing, const std::vector<clsTourneyGame*>& playing) {
    const int32_t id = Games[pairing]->GameId;
    for (auto& game : Games)
        if (game->GameId == id && std::find(playing.begin(), playing.end(), game.get()) == playing.end())
            return *game;
    return AddGame(id, Games[pairing]->WhitePlayer, Games[pairing]->BlackPlayer);
}

void clsTourney::StartGame(clsTourneyGame& game, int32_t round, int position) {
    game.Round = round;
    game.PgnFile = PathPrefix + ".R" + clsString(round) + ".G" + clsString(game.GameId) + ".pgn";
    game.Reset(false);
    SetTags(game, position);
    SetOpening(game);
    game.Tags.SetValue("Date", Now());
    game.Start();
}

void clsTourney::Report(clsTourneyGame& game) {
    // The game has ended: its thread is joined before its fields are read.
    game.Wait();
    LogInRound(game.Round, game.GameId,
               "result\t" + game.ResultText() + "\t" + game.ReasonText() + "\t" + game.WhitePlayer->Name +
                   "\t" + game.BlackPlayer->Name + "\t" + game.PgnFile);
    FlushLog();
    if (Standings) RecordResult(game);
}

void clsTourney::WakeScheduler() {
    if (WakeLock.Lock() != 0) return;
    GameEndedSinceLook = true;
    GameEnded.WakeAll();
    WakeLock.Unlock();
}

void clsTourney::AwaitGameEnd(int timeoutMs) {
    if (WakeLock.Lock() != 0) return;
    if (!GameEndedSinceLook) GameEnded.Wait(timeoutMs);
    GameEndedSinceLook = false;
    WakeLock.Unlock();
}

void clsTourney::Log(int32_t gameId, const clsString& text) {
    LogInRound(Round, gameId, text);
}

void clsTourney::LogInRound(int32_t round, int32_t gameId, const clsString& text) {
    const clsString line = clsString(Id) + "\t" + clsString(int64_t(nuvobase::ClockMs() - StartMs)) + "\t" +
                           clsString(round) + "\t" + clsString(gameId) + "\t-\t" + text;
    Output->Write(line, true);
    if (LogFile.IsEmpty()) return;
    if (LogLock.Lock() == 0) {
        LogLines.Add(line);
        LogLock.Unlock();
    }
}

void clsTourney::FlushLog() {
    if (LogFile.IsEmpty()) return;
    clsString text;
    if (LogLock.Lock() == 0) {
        for (int i = 0; i < LogLines.Count; ++i) {
            if (i > 0) text += "\r\n";
            text += LogLines.GetAt(i);
        }
        LogLock.Unlock();
    }
    if (!text.SaveToFile(LogFile.Text())) Output->Write("# tourney: cannot write " + LogFile, true);
}

bool clsTourney::Stop() {
    if (!IsRunning()) return true;
    StopRequested = true;
    if (GamesLock.Lock() == 0) {
        for (auto& game : Games)
            if (game->IsRunning()) game->RequestAbort();
        GamesLock.Unlock();
    }
    WakeScheduler();
    Log(0, "cancel");
    for (unsigned waited = 0; waited < StopWaitMs && IsRunning(); waited += SchedulerMs / 10)
        nuvobase::SleepMs(SchedulerMs / 10);
    if (IsRunning()) clsThread::Stop();
    return true;
}

} // namespace nvoChess
