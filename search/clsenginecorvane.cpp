#include "search/clsenginecorvane.h"

#include <algorithm>
#include <cstdio>

#include "chess/bits.h"
#include "chess/keys.h"
#include "nuvobase/platform.h"

namespace nvoChess {

using nuvobase::clsString;

namespace {

constexpr int32_t CorvanePawnValue = 105;
constexpr int32_t NoRandomLimit = 127; // the search runs until stopped
constexpr int32_t RandomOnlyLimit = 2;
constexpr int32_t DefaultPercentage = 60;
constexpr int32_t FirstDepth = 2;       // the deepening's first nominal depth
constexpr int64_t ForcedScore = 100000; // info score of a forced result, plus or minus the moves to it

} // namespace

nuvobase::clsStrings clsEngineCorvane::CommandLine;

clsEngineCorvane::clsEngineCorvane(clsEngineShare* share, const clsString& name,
                                   nuvobase::clsTSafeOutput* output, clsTourneyGame* game)
    : clsEngineInterface(name, output, game), clsTreeSearch(clsEngineInterface::ResultLock, share) {
    SearchFlags = CommandLine;
    if (HasFlag("-nopopcnt")) UsePopCount = false;
    if (Post) PostRecordSizes();
    LoadBook();
    SetPosition(clsString());
    SelectSoul(clsString("Simple5"));
}

clsEngineCorvane::~clsEngineCorvane() {
    StopEngine();
}

void clsEngineCorvane::PostRecordSizes() {
    const auto line = [this](const char* label, size_t size) {
        char hex[2 * sizeof(size_t) + 1];
        std::snprintf(hex, sizeof hex, "%zX", size);
        Info(clsString(label) + "=0x" + hex);
    };
    line("sizeof(clsMove)", sizeof(clsMove));
    line("sizeof(clsSimpleNode)", sizeof(clsSimpleNode));
    line("sizeof(clsTT)", sizeof(clsTT));
    line("sizeof(clsBoard)", sizeof(clsBoard));
}

bool clsEngineCorvane::HasFlag(const char* name) const {
    return SearchFlags.Find(clsString(name)) >= 0;
}

clsString clsEngineCorvane::Flag(const char* name) const {
    return SearchFlags.GetValue(clsString(name));
}

bool clsEngineCorvane::Start() {
    if (!IsRunning()) StopFlag = 0;
    return clsEngineInterface::Start();
}

bool clsEngineCorvane::Run() {
    if (Post) Info(" engine's running");
    BeginSearch();
    const bool random = HasFlag("-random"), timed = HasFlag("-timed"),
               proportional = HasFlag("-proportional");
    const clsString percentage = Flag("-proportional");
    SearchStart = nuvobase::ClockMs();
    ++SearchCount;
    int32_t limit = random && !timed && !proportional ? RandomOnlyLimit : NoRandomLimit;
    // A depth asked for by the front end bounds this search, which still finishes its first depth.
    if (Limits.Plies > 0) limit = std::min(limit, std::max(Limits.Plies, FirstDepth));
    NodeLimit = Limits.Nodes;

    if (!PlayBookMove()) {
        if (!PrepareRoot()) return true; // mate or stalemate: no move, no more words
        if (Post) Info(" " + clsString(Root->End() - Root->Moves) + " moves to analyze");
        const eDeepening end = Deepen(limit);
        if (Post && end != eDeepening::DepthLimit) {
            const clsMove best = CopyBestMove();
            const clsString moves = clsString(int64_t(best.Flags >> MoveForcedShift));
            int score = 0;
            if (end == eDeepening::Wins)
                Info("I'll win in " + moves + " moves playing " + GetBestMoveText(false, score));
            else
                Info("I'll lose in " + moves + " moves");
        }
    }
    TotalTime += static_cast<int64_t>(nuvobase::ClockMs() - SearchStart);
    if (random)
        ChooseAtRandom(!proportional          ? -1
                       : percentage.IsEmpty() ? DefaultPercentage
                                              : static_cast<int32_t>(percentage.ToSigned()));
    if (Post) Info(" engine stopped");
    return true;
}

bool clsEngineCorvane::StopEngine() {
    StopFlag = 1;
    return !Wait();
}

void clsEngineCorvane::SetStopped() {
    clsEngineInterface::SetStopped();
    StopFlag = 1;
}

clsString clsEngineCorvane::GetStatistics(int64_t elapsedMs) {
    clsString text;
    const uint64_t nodes = Nodes;
    if (elapsedMs != 0)
        text += clsString(elapsedMs) + " ms " + clsString(static_cast<int64_t>(nodes) / elapsedMs) + " Knps";
    if (nodes != 0) {
        const uint64_t hits = TTHits;
        text += ", TT hits: " + clsString(static_cast<int64_t>(hits)) + " ";
        text += clsString().FromDouble(hits * 100.0 / nodes, 2);
        text += "%, Rept.Hits: " + clsString(static_cast<int64_t>(ReptHits.load()));
    }
    return text;
}

bool clsEngineCorvane::IsWhiteToMove() {
    return Board.SideToMove == 0;
}

int clsEngineCorvane::SetMaxDepth(int depth) {
    return clsChessCore::SetMaxDepth(depth);
}

void clsEngineCorvane::PrintMoves(bool flag) {
    clsChessCore::PrintMoves(flag);
}

bool clsEngineCorvane::MakeMoveText(const clsString& move) {
    if (!clsEngineInterface::MakeMoveText(move)) return false;
    const uint64_t key = SearchKey(Board);
    if (clsTT* slot = Share ? Share->Slot(key) : nullptr) {
        *slot = clsTT{key, 0, TTGameDepth, DrawValue, TTGameHistory};
        Current->TTEntry = slot;
    }
    return true;
}

int clsEngineCorvane::SearchFixedDepth(int depth, int64_t& nodes) {
    uint64_t counted = 0;
    const int value = clsTreeSearch::SearchFixedDepth(depth, counted);
    nodes = static_cast<int64_t>(counted);
    return value;
}

bool clsEngineCorvane::SetPosition(const clsString& fen) {
    clsChessCore::SetPosition(fen, &EpdFields);
    // The counters of the FEN belong to the engine's side of the game.
    clsEngineInterface::MoveNumber = clsChessCore::MoveNumber;
    clsEngineInterface::HalfMoveClock = clsChessCore::HalfMoveClock;
    return true;
}

clsString clsEngineCorvane::GetInfoLine() {
    const clsMove best = CopyBestMove();
    if (best.Flags & MoveIllegal) return clsString();
    const int64_t moves = best.Flags >> MoveForcedShift;
    int64_t score = static_cast<int64_t>(best.Score * 100 / static_cast<double>(CorvanePawnValue));
    if (best.Flags & MoveWins)
        score = moves + ForcedScore;
    else if (best.Flags & MoveLoses)
        score = moves - ForcedScore;
    const int64_t centiseconds = static_cast<int64_t>(nuvobase::ClockMs() - SearchStart) * 1000 / 10000;
    return clsString(SearchDepth) + " " + clsString(score) + "  " + clsString(centiseconds) + " " +
           clsString(static_cast<int64_t>(Nodes.load())) + " " + MoveText(&best, true);
}

void clsEngineCorvane::DepthFinished() {
    if (!Limits.DepthLines) return;
    const clsMove best = CopyBestMove();
    if (best.Flags & MoveIllegal) return;
    // The top byte counts the moves to a forced result from 0, for a mate in one.
    const int32_t moves = static_cast<int32_t>(best.Flags >> MoveForcedShift) + 1;
    const int32_t mate = (best.Flags & MoveWins) ? moves : (best.Flags & MoveLoses) ? -moves : 0;
    DepthLine(SearchDepth, best.Score * 100 / CorvanePawnValue, mate, Nodes.load(),
              static_cast<int64_t>(nuvobase::ClockMs() - SearchStart), MoveText(&best, false));
}

clsString clsEngineCorvane::GetPosition() {
    return clsChessCore::GetPosition();
}

clsString clsEngineCorvane::GetBestMoveText(bool consume, int& score) {
    clsString text;
    if (BestMoveLock.Lock() != 0) return text;
    if (!(BestMove.Flags & MoveIllegal)) {
        text = MoveText(&BestMove, false);
        score = BestMove.Score;
        if (consume) BestMove.Flags |= MoveIllegal; // handed out once
    }
    BestMoveLock.Unlock();
    return text;
}

clsString clsEngineCorvane::GetSpareText() {
    return clsString();
}

bool clsEngineCorvane::MakeMove(uint64_t from, uint64_t to, char promotion) {
    return clsChessCore::MakeMove(from, to, promotion);
}

uint64_t clsEngineCorvane::PositionHash() {
    return BoardKey(Board);
}

clsString clsEngineCorvane::ReadReply() {
    return clsString();
}

int clsEngineCorvane::PawnValue() {
    return CorvanePawnValue;
}

void clsEngineCorvane::CrossSoul(clsEngineInterface* other) {
    clsSoul mixed = GetSoul(), theirs;
    theirs.LoadNumbers(other->GetSoulText());
    mixed.Cross(theirs);
    SetSoul(mixed);
}

clsString clsEngineCorvane::GetSoulText() {
    return GetSoul().Text();
}

void clsEngineCorvane::LoadDefaultSoul() {
    SelectSoul(clsString("simple5"));
}

uint64_t clsEngineCorvane::Perft(int depth, bool divide) {
    ResetStatistics();
    return clsChessCore::Perft(depth, divide);
}

clsString clsEngineCorvane::SanToCoordinates(const clsString& san, bool generateFirst) {
    return clsChessCore::SanToCoordinates(san, generateFirst);
}

void clsEngineCorvane::SendLine(const clsString&) {}

void clsEngineCorvane::SelectSoul(const clsString& name) {
    SoulName = name;
    if (SoulName.IsEmpty()) SoulName = Options.GetValue(clsString("soul"));
    if (SoulName.IsEmpty()) SoulName = Flag("-soul");
    if (SoulName.IsEmpty()) SoulName = "Simple5";
    for (const char* named : clsSoul::Named)
        if (clsString(named).BeforeChar('=') == SoulName) LoadSoulText(clsString(named));
}

void clsEngineCorvane::LoadSoulText(const clsString& text) {
    clsSoul soul;
    SoulName = soul.LoadText(text);
    SetSoul(soul);
}

void clsEngineCorvane::RandomizeSoul() {
    clsSoul soul;
    soul.Randomize();
    SetSoul(soul);
}

void clsEngineCorvane::WriteLine(const clsString& line) {
    if (Output) Output->Write(line, true);
    Buffer.Push(line);
}

} // namespace nvoChess
