#include "match/clstourneygame.h"

#include "chess/coordinates.h"
#include "chess/keys.h"
#include "match/clsexternalengine.h"
#include "nuvobase/platform.h"

#include <algorithm>
#include <cxxabi.h>

using nuvobase::clsString;

namespace nvoChess {

namespace {

// The bits of a result word that decide the points.
constexpr uint32_t ScoringMask = CodeAborted | CodeDraw | CodeBlackWon | CodeDecisive | CodeUndecided;
// Results of one turn.
constexpr uint32_t WhiteForfeits = CodeTimeForfeit | CodeBlackWins,
                   BlackForfeits = CodeTimeForfeit | CodeWhiteWins;
constexpr uint32_t WhiteCrashed = CodeEngineCrash | CodeBlackWins,
                   BlackCrashed = CodeEngineCrash | CodeWhiteWins;
constexpr uint32_t WhiteResigns = CodeResignation | CodeBlackWins,
                   BlackResigns = CodeResignation | CodeWhiteWins,
                   BlackGivesUp = CodeResignation | CodeDecisive;
constexpr uint32_t WhiteIllegal = CodeIllegalMove | CodeBlackWins,
                   BlackIllegal = CodeIllegalMove | CodeDecisive;
constexpr uint32_t RepetitionDraw = CodeRepetition | CodeDraw, ClaimedDraw = CodeDraw;
// Occurrences of a position before the newest one that end the game.
constexpr int RepetitionsBefore = 3;
constexpr int64_t UsPerMs = 1000;

} // namespace

clsTourneyGame::EngineMaker clsTourneyGame::MakeEmbedded;

clsTourneyGame::clsTourneyGame(int32_t gameId, int32_t clockMoves, int32_t clockGameMs,
                               int32_t clockIncrementMs, clsPlayer* white, clsPlayer* black,
                               const clsString& pgnFile, nuvobase::clsTSafeOutput* output)
    : clsThread(clsString("game")), Output(output), GameId(gameId), ClockMoves(clockMoves),
      ClockGameMs(clockGameMs), ClockIncrementMs(clockIncrementMs), WhitePlayer(white), BlackPlayer(black),
      PgnFile(pgnFile) {}

clsTourneyGame::~clsTourneyGame() {
    Abort();
    Wait();
}

void clsTourneyGame::Reset(bool keepTags) {
    clsGame::Reset(keepTags);
    PositionHashes.clear();
    TurnMs.clear();
    LogLines.Clear();
    SideToMove = 0;
    MoveNumber = 0;
    Finished = false;
}

bool clsTourneyGame::Start() {
    if (!IsRunning()) AbortRequested = false;
    return clsThread::Start();
}

void clsTourneyGame::Abort() {
    if (IsRunning())
        RequestAbort();
    else
        SetCode(CodeAborted);
}

bool clsTourneyGame::Run() {
    bool decided = false;
    try {
        decided = Play();
        if (!AdjudicationRule.IsEmpty()) Tags.SetValue("Reason", AdjudicationRule);
    } catch (abi::__forced_unwind&) {
        throw; // a cancelled thread unwinds to its end
    } catch (...) {
        GameLog(Neither, "game aborted do to software exception!");
        SetCode(CodeAborted);
    }
    KeepSoundEngines();
    Engines.clear();
    Referee.reset();
    SaveFiles();
    Finished = true;
    if (OnFinished) OnFinished();
    return decided;
}

bool clsTourneyGame::Play() {
    Reset(true);
    Referee = std::make_unique<clsChessCore>();
    const int firstMover = SetUpOpening();
    if (!WhitePlayer || !BlackPlayer) return false;
    GameLog(Neither, "new match: " + WhitePlayer->Name.Quote('\'') + " vs " + BlackPlayer->Name.Quote('\''));
    for (int side : {White, Black}) {
        std::unique_ptr<clsEngineInterface> engine = MakeEngine(side == White ? *WhitePlayer : *BlackPlayer);
        if (!engine) continue;
        engine->OpeningFen = StartFen;
        engine->OpeningMoves = OpeningMoves;
        Engines.push_back(std::move(engine));
        LaunchPlayer(*Engines.back(), side);
        if (PaceMs != 0) OpenGame(*Engines.back());
    }
    // Without pauses both programs start at once, and the game waits for them together.
    if (PaceMs == 0)
        for (auto& engine : Engines) OpenGame(*engine);
    if (Engines.size() != 2) {
        SetCode(CodeAborted);
        return false;
    }
    StartTurn([this, firstMover] { Engines[firstMover]->Go(); });
    if (PaceMs != 0) nuvobase::SleepMs(1);
    SideToMove = firstMover;
    while (GetState() == ThreadRunning && Code == CodeRunning) {
        if (AbortRequested) {
            SetCode(CodeAborted);
            break;
        }
        const int side = SideToMove;
        clsEngineInterface& mover = *Engines[side];
        const clsString reply = mover.ReadReply();
        // Without pauses a reply counts from when it arrived, not from when this thread came to read it.
        const uint64_t endUs = !reply.IsEmpty() && PaceMs == 0 ? std::max(mover.ReplyArrivalUs, TurnStartUs)
                                                               : nuvobase::ClockUs();
        const int64_t elapsedUs = int64_t(endUs - TurnStartUs);
        const int64_t elapsed = elapsedUs / UsPerMs;
        const int64_t clock = mover.OwnTimeMs;
        // The turn's wall time and the engine's own account of its search, for whoever studies the timing.
        const auto timing = [&] {
            const clsString wall = "\t" + clsString(elapsedUs) + " us";
            return mover.ReportedSearchMs < 0
                       ? wall
                       : wall + "\tengine " + clsString(mover.ReportedSearchMs) + " ms";
        };
        if (IsOverTime(elapsed, clock)) {
            const clsString over = clsString(elapsed) + ">" + clsString(clock);
            Tags.SetValue("Forfeit_ms", over);
            GameLog(side, mover.Name + " forfeits on time (" + over + ")" + timing());
            SetCode(side == Black ? BlackForfeits : WhiteForfeits);
            continue;
        }
        if (reply.IsEmpty()) {
            if (mover.IsStopped()) {
                GameLog(side, mover.Name + " has crashed!");
                SetCode(side == Black ? BlackCrashed : WhiteCrashed);
            } else if (PaceMs == 0) {
                mover.WaitForReply(int(std::min<int64_t>(clock + ForfeitGraceMs - elapsed + 1, ReplyWaitMs)));
            } else {
                nuvobase::SleepMs(1);
            }
            continue;
        }
        GameLog(side, reply + timing());
        const uint32_t code = HandleReply(reply, elapsed);
        if (code != CodeRunning) SetCode(code);
    }
    if (Code != CodeRunning) Score();
    return !(Code & (CodeUndecided | CodeAborted));
}

std::unique_ptr<clsEngineInterface> clsTourneyGame::MakeEngine(clsPlayer& player) {
    std::unique_ptr<clsEngineInterface> engine = PaceMs == 0 ? player.TakeIdle() : nullptr;
    if (engine) {
        engine->Game = this;
        return engine;
    }
    if (player.IsEmbedded()) {
        if (MakeEmbedded) engine = MakeEmbedded(player.Name, Output, this);
    } else {
        auto external = std::make_unique<clsExternalEngine>(player.Name, Output, this);
        external->FileName = player.FileName;
        external->Parameters = player.Parameters;
        external->EngineOptions = player.EngineOptions;
        external->PaceMs = PaceMs;
        engine = std::move(external);
    }
    if (engine) engine->Protocol = player.IsUci() ? clsEngineInterface::Uci : clsEngineInterface::XBoard;
    return engine;
}

void clsTourneyGame::KeepSoundEngines() {
    if (PaceMs != 0) return;
    for (auto& engine : Engines) {
        clsPlayer& player = engine->Side == White ? *WhitePlayer : *BlackPlayer;
        if (player.IsEmbedded() || !player.IsUci() || engine->IsStopped()) continue;
        // A search still running ends, and the program must say it is ready: then nothing of this game
        // is left in its output for the next one.
        engine->Settle();
        AwaitReady(*engine, true);
        int32_t score = 0;
        engine->TakeScore(score); // the last score belongs to this game
        if (engine->Ready && !engine->IsStopped()) player.KeepIdle(std::move(engine));
    }
}

void clsTourneyGame::LaunchPlayer(clsEngineInterface& engine, int side) {
    engine.Side = side;
    engine.OwnTimeMs = engine.OpponentTimeMs = ClockGameMs;
    engine.OwnIncrementMs = engine.OpponentIncrementMs = ClockIncrementMs;
    engine.MovesToGo = 0;
    if (engine.Ready) return;
    engine.StartEngine();
    GameLog(side, "waiting for " + engine.Name.Quote('\'') + " initialization...");
    if (PaceMs != 0) nuvobase::SleepMs(StartupWaitMs);
    engine.Handshake();
    if (PaceMs != 0) AwaitReady(engine);
}

bool clsTourneyGame::OpenGame(clsEngineInterface& engine) {
    if (PaceMs == 0) AwaitReady(engine);
    if (engine.Ready) {
        engine.NewGame();
        // Without pauses the first clock would otherwise run while the engine still prepares its game.
        if (PaceMs == 0) AwaitReady(engine);
    }
    return engine.Ready;
}

void clsTourneyGame::AwaitReady(clsEngineInterface& engine, bool settling) {
    // An XBoard program is ready when it says so with the feature done (or stays silent about it for the
    // grace time), not when the handshake has gone out.
    const auto ready = [&] { return engine.Ready && !engine.FeaturesPending(); };
    const uint64_t until = nuvobase::ClockMs() + (settling ? SettleWaitMs : HandshakePolls);
    // A program that has ended will not answer: it loses when its turn comes.
    for (int poll = 0; !ready() && !engine.IsStopped(); ++poll) {
        const uint64_t now = nuvobase::ClockMs();
        if (PaceMs == 0 ? now >= until : poll >= HandshakePolls) break;
        engine.NudgeFeatures();
        if ((!engine.ReadReply().IsEmpty() && !settling) || ready()) break;
        if (PaceMs == 0)
            engine.WaitForReply(int(std::min<uint64_t>(until - now, ReplyWaitMs)));
        else
            nuvobase::SleepMs(1);
    }
}

void clsTourneyGame::StartTurn(const std::function<void()>& send) {
    const uint64_t beforeUs = nuvobase::ClockUs();
    send();
    TurnStartUs = PaceMs == 0 ? nuvobase::ClockUs() : beforeUs;
}

uint32_t clsTourneyGame::HandleReply(const clsString& reply, int64_t elapsedMs) {
    const clsString word = reply.BeforeChar(' ');
    clsString rest = reply.AfterChar(' ');
    rest.Trim(' ');
    const bool whiteMoves = SideToMove == White;
    if (word == "move") return HandleMove(rest, elapsedMs);
    if (word == "resign") return whiteMoves ? WhiteResigns : BlackResigns;
    if (word == "result") {
        // A side may give the game up or claim a draw, never claim a win.
        if (rest.Compare("1/2-1/2", clsString::CompareStartsWith)) return ClaimedDraw;
        if (whiteMoves && rest.Compare("0-1", clsString::CompareStartsWith)) return WhiteResigns;
        if (!whiteMoves && rest.Compare("1-0", clsString::CompareStartsWith)) return BlackGivesUp;
    }
    return CodeRunning;
}

uint32_t clsTourneyGame::HandleMove(const clsString& rest, int64_t elapsedMs) {
    const int side = SideToMove;
    clsEngineInterface& mover = *Engines[side];
    mover.OwnTimeMs += int32_t(ClockIncrementMs - elapsedMs);
    TurnMs.push_back(int32_t(elapsedMs));
    const clsString move = CoordinatesOf(rest.BeforeChar(' '));
    const clsString san = move.IsEmpty() ? clsString() : Referee->SanText(move);
    if (san.IsEmpty() || !Referee->MakeMoveText(move)) return side == Black ? BlackIllegal : WhiteIllegal;
    RecordMove(move, san, side);
    uint32_t code = IsFourthOccurrence(PositionHashes) ? RepetitionDraw : Referee->GameStatus();
    if (code == CodeRunning) code = Adjudicate(mover, side);
    if (code != CodeRunning) {
        SetCode(code);
        GameLog(Neither, ResultText() + " " + ReasonText());
        return code;
    }
    mover.NotifyMove(move, side);
    SideToMove = 1 - side;
    clsEngineInterface& next = *Engines[1 - side];
    next.OpponentTimeMs = mover.OwnTimeMs;
    next.OpponentIncrementMs = mover.OwnIncrementMs;
    next.MovesToGo = 0;
    StartTurn([&] { next.NotifyMove(move, side); });
    return CodeRunning;
}

int clsTourneyGame::SetUpOpening() {
    SanMoves.clear();
    Adjudicator.Reset();
    AdjudicationRule.Clear();
    Referee->SetPosition(StartFen.IsEmpty() ? clsString(StartPositionFen) : StartFen);
    if (!StartFen.IsEmpty()) {
        Tags.SetValue("FEN", StartFen);
        Tags.SetValue("SetUp", "1");
    }
    const int firstMover = Referee->Board.SideToMove == 0 ? White : Black;
    // Full moves started: the move number of the position, less one while White has not moved in it.
    MoveNumber = Referee->MoveNumber > 0 ? Referee->MoveNumber : 1;
    if (firstMover == White) --MoveNumber;
    for (int position = 0; position >= 0;) {
        const clsString move = OpeningMoves.NextWord(' ', position, false, true);
        if (move.IsEmpty()) continue;
        const int side = Referee->Board.SideToMove == 0 ? White : Black;
        const clsString san = Referee->SanText(move);
        // The tournament has checked its openings: a move that fails here ends the opening.
        if (san.IsEmpty() || !Referee->MakeMoveText(move)) break;
        RecordMove(move, san, side);
    }
    OpeningPlies = SanMoves.size();
    return Referee->Board.SideToMove == 0 ? White : Black;
}

void clsTourneyGame::RecordMove(const clsString& move, const clsString& san, int side) {
    if (side == White) {
        ++MoveNumber;
        MoveText += clsString(MoveNumber) + ". ";
    } else if (MoveText.IsEmpty()) {
        MoveText += clsString(MoveNumber) + "... ";
    }
    MoveText += move + " ";
    SanMoves.push_back(san);
    PositionHashes.push_back(ScratchHash(Referee->Board));
}

clsString clsTourneyGame::CoordinatesOf(const clsString& text) {
    clsString move = text;
    move.RemoveChar('=');
    const clsCoordinateMove coordinates = ParseCoordinateMove(move);
    return coordinates.From != 0 && coordinates.To != 0 ? move : Referee->LegalSanToCoordinates(text);
}

uint32_t clsTourneyGame::Adjudicate(clsEngineInterface& mover, int side) {
    int32_t score = 0;
    const bool known = mover.TakeScore(score);
    if (!Adjudicator.Rules.Any()) return CodeRunning;
    return Adjudicator.AfterMove(side, known, score, MoveNumber, int32_t(SanMoves.size() - OpeningPlies),
                                 AdjudicationRule);
}

bool clsTourneyGame::IsFourthOccurrence(const std::vector<uint64_t>& hashes) {
    if (hashes.size() < 2) return false;
    const uint64_t newest = hashes.back();
    int earlier = 0;
    // The first entry is left out: the position before it is not in the list either.
    for (size_t i = hashes.size() - 2; i >= 1; --i)
        if (hashes[i] == newest) ++earlier;
    return earlier >= RepetitionsBefore;
}

void clsTourneyGame::Points(uint32_t code, int32_t& white, int32_t& black) {
    white = black = 0;
    switch (code & ScoringMask) {
    case CodeDecisive:
        white = clsPlayer::WinPoints;
        break;
    case CodeDecisive | CodeBlackWon:
        black = clsPlayer::WinPoints;
        break;
    case CodeDraw:
        white = black = clsPlayer::DrawPoints;
        break;
    default:
        break;
    }
}

void clsTourneyGame::Score() {
    int32_t points[2];
    Points(Code, points[White], points[Black]);
    clsPlayer* players[2] = {WhitePlayer, BlackPlayer};
    for (int side : {White, Black}) {
        const int32_t total = players[side]->AddScore(points[side]);
        GameLog(Neither, players[side]->Name.Quote('\'') + " result " + clsString(points[side]) + " score " +
                             clsString(total));
    }
}

void clsTourneyGame::GameLog(int side, const clsString& text) {
    static const char* const Marks[] = {"W", "B", "-"};
    const clsString line = clsString(Marks[side < White || side > Neither ? Neither : side]) + "\t" + text;
    LogLines.Add(line);
    if (Output && (Verbose || text.Compare("forfeit", clsString::CompareContains)))
        Output->Write("#\tG" + clsString(GameId) + "\t" + line, true);
}

clsString clsTourneyGame::PgnText() const {
    clsString text;
    for (int i = 0; i < Tags.Count; ++i)
        text += "[" + Tags.GetName(i) + " " + Tags.GetAt(i).Quote('"') + "]\r\n";
    // The result stands in its tag only: the move text ends with the last move.
    return text + "\r\n" + MoveText;
}

void clsTourneyGame::SaveFiles() const {
    if (PgnFile.IsEmpty()) return;
    clsString log;
    for (int i = 0; i < LogLines.Count; ++i) {
        if (i > 0) log += "\r\n";
        log += LogLines.GetAt(i);
    }
    clsString path = PgnFile.ToForwardSlashes();
    const bool saved = log.SaveToFile(path.ChangeExtension(".log").Text()) &&
                       PgnText().SaveToFile(path.ChangeExtension(".pgn").Text());
    if (!saved && Output)
        Output->Write("# cannot write the files of game " + clsString(GameId) + ": " + path, true);
}

} // namespace nvoChess
