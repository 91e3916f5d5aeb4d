#include "search/clstreesearch.h"

#include "chess/keys.h"
#include "chess/random.h"

namespace nvoChess {

namespace {

constexpr uint32_t ForcedMovesField = 0xFF000000;
constexpr int32_t LosingValue = -4999; // below this a move loses by force
constexpr int32_t QueenLoss = -940;    // random play keeps above this

bool SameMove(const clsMove& a, const clsMove& b) {
    return a.From == b.From && a.To == b.To && a.Promotion() == b.Promotion();
}

// Stable, so that equal keys keep their order; the root list is short and a
// search allocates nothing.
template <typename Key> void SortDescending(clsMove* first, clsMove* end, Key key) {
    for (clsMove* i = first + 1; i < end; ++i) {
        const clsMove moving = *i;
        clsMove* j = i;
        for (; j > first && key(*(j - 1)) < key(moving); --j) *j = *(j - 1);
        *j = moving;
    }
}

} // namespace

clsTreeSearch::clsTreeSearch(nuvobase::clsMutex& resultLock, clsEngineShare* share)
    : Share(share), BestMoveLock(resultLock) {
    BestMove.Flags = MoveIllegal;
}

int32_t clsTreeSearch::WalkTree(int32_t depth) {
    clsSimpleNode* const start = Current;
    clsSimpleNode* node = start;
    int32_t value = 0;

Enter:
    // The slot is asked for first: its cache miss overlaps with the rest.
    node->Key = SearchKey(Board);
    node->TTEntry = Share ? Share->Slot(node->Key) : nullptr;
    if (node->TTEntry) __builtin_prefetch(node->TTEntry);
    node->SavedBoard = Board;
    // The mover's own alpha; a walk begun at the root has none and takes 0.
    node->Best = node->Ply >= 2 ? (node - 2)->Best : 0;
    node->MoveCount = 0;
    node->Stage = 0;
    node->CurMove = nullptr;
    // The first stages are generated while the slot comes from memory; a
    // usable value drops them unused.
    while (Generate(node->Stage) == 0 && node->Stage < 5) ++node->Stage;
    if (node->TTEntry) {
        const eProbe probe = ProbeTT(*node->TTEntry, node->Key, depth);
        if (probe != eProbe::Miss) Bump(TTHits);
        if (probe == eProbe::Usable) {
            node->Best = node->TTEntry->TTValue;
            goto Leave;
        }
    }
    goto Generated;

Generate:
    while (Generate(node->Stage) == 0 && node->Stage < 5) ++node->Stage;
Generated:
    if (node->Stage > 5) {
        // Out of moves: without a legal one the node is mate or stalemate, and
        // that replaces whatever alpha it inherited.
        if (node->LegalCount == 0) node->Best = node->InCheck ? MatedValue : DrawValue;
        goto Leave;
    }

NextMove:
    if (node->CurMove == node->End()) {
        ++node->Stage;
        goto Generate;
    }
    ApplyMove(*node->CurMove);
    if ((node->InCheck || (node->CurMove->From & node->PinLines)) && IsAttacked(Board.Kings & Board.Mine)) {
        node->CurMove->Flags |= MoveIllegal;
        RestoreBoard(*node);
        ++node->CurMove;
        goto NextMove;
    }
    Bump(Nodes);
    if (NodeLimit != 0 && Nodes.load(std::memory_order_relaxed) >= NodeLimit) StopFlag = 1;
    ++node->LegalCount;
    if (node->Ply < depth) {
        if (node->TTEntry) node->TTEntry->TTFlags |= TTOnPath;
        SwapSides();
        Current = ++node;
        node->LegalCount = 0;
        goto Enter;
    }
    // The last ply: moves are evaluated in the node, no child is entered.
    value = Evaluate() + Board.Material;

Apply:
    node->CurMove->Score = static_cast<int16_t>(value);
    if (node->CurMove->Score > node->Best) {
        node->Best = node->CurMove->Score;
        if (node->TTEntry) StoreTT(*node->TTEntry, node->Best, depth - node->Ply);
        // The bound is the parent's Best seen from this side.
        const int32_t parentBest = (node - 1)->Best;
        if (parentBest != NoValue && node->Best >= -parentBest) {
            RestoreBoard(*node);
            (node - 1)->CurMove->Flags |= MoveRefuted;
            goto Leave;
        }
        // Whoever continues restores the board.
        if (node->CurMove->Score >= WonThreshold) goto Leave;
    }
    RestoreBoard(*node);
    ++node->CurMove;
    goto NextMove;

Leave:
    if (node != start && !Stopped()) {
        value = -node->Best;
        if (node->TTEntry) node->TTEntry->TTFlags &= ~TTOnPath;
        Current = --node;
        goto Apply;
    }
    ClearPathFlags(node, start);
    Current = start;
    RestoreBoard(*start);
    return start->Best;
}

void clsTreeSearch::ClearPathFlags(clsSimpleNode* from, clsSimpleNode* to) {
    for (clsSimpleNode* node = from; node >= to; --node)
        if (node->TTEntry) node->TTEntry->TTFlags &= ~TTOnPath;
}

int32_t clsTreeSearch::SearchRoot() {
    clsSimpleNode* const root = Root;
    clsMove* const first = root->Moves;
    clsMove* const end = root->End();
    SortRoot(true);
    Bump(Nodes);
    root->Best = NoValue;
    root->SavedBoard = Board;
    for (clsMove* m = first; m < end; ++m) {
        m->Flags &= ~MoveRefuted;
        m->Score = NoValue;
    }
    const int32_t depth = SearchDepth.load(std::memory_order_relaxed);
    for (clsMove* m = first; m < end; ++m) {
        if (Stopped()) break;
        root->CurMove = m;
        if (m->Captured() == PieceKing) { // only an illegal position offers this
            m->Flags |= MoveWins;
            SetBestMove(m);
            return 9999;
        }
        int32_t value = m->Score; // a move found losing at an earlier depth isn't searched again
        if (!(m->Flags & MoveLoses)) {
            ++root->LegalCount;
            ApplyMove(*m);
            SwapSides();
            Current = root + 1;
            value = Stopped() ? NoValue : -WalkTree(depth);
            Current = root;
            RestoreBoard(*root);
        }
        // A cut-off search keeps the best move it has, also within a depth.
        if (Stopped()) break;
        if (m->Flags & MoveRefuted) continue;
        m->Score = static_cast<int16_t>(value);
        // The best move of the last depth, searched first, always replaces
        // BestMove with its new value; another move must beat that value.
        const clsMove best = CopyBestMove();
        const bool same = SameMove(*m, best);
        if (value < LosingValue) m->Flags |= MoveLoses;
        if (value > root->Best || same) {
            root->Best = value;
            if (m->Score > best.Score || same) SetBestMove(m);
        }
        if (root->Best >= WonThreshold) break;
    }
    return root->Best;
}

void clsTreeSearch::BeginSearch() {
    if (BestMoveLock.Lock() == 0) {
        BestMove.Flags |= MoveIllegal;
        BestMove.Score = NoValue;
        BestMoveLock.Unlock();
    }
    ResetStatistics();
}

bool clsTreeSearch::PrepareRoot() {
    ComputeMaterial();
    // The walk leaves the nodes as they were set up but for the rank masks,
    // which follow the side to move at the root.
    ResetNodes();
    Root->LegalCount = 0;
    Generate(-1);
    if (FilterLegal() == 0) return false;
    SortRoot(false);
    return true;
}

clsTreeSearch::eDeepening clsTreeSearch::Deepen(int32_t limit) {
    for (SearchDepth = 2; SearchDepth <= limit; SearchDepth += 2) {
        if (Stopped()) break;
        SearchRoot();
        SortRoot(true);
        eDeepening result = eDeepening::DepthLimit;
        if (BestMoveLock.Lock() == 0) {
            BestMove.Flags = (BestMove.Flags & ~ForcedMovesField) | static_cast<uint32_t>(SearchDepth / 2 - 1)
                                                                        << MoveForcedShift;
            // A search stopped before its first move has no value to judge.
            const bool found = !(BestMove.Flags & MoveIllegal);
            if (found && BestMove.Score >= WonThreshold) {
                BestMove.Flags |= MoveWins;
                result = eDeepening::Wins;
            } else if (found && BestMove.Score < LosingValue) {
                BestMove.Flags |= MoveLoses;
                result = eDeepening::Loses;
            }
            BestMoveLock.Unlock();
        }
        if (!Stopped()) DepthFinished();
        if (result != eDeepening::DepthLimit) return result;
    }
    return eDeepening::DepthLimit;
}

void clsTreeSearch::ChooseAtRandom(int32_t percentage) {
    Current = Root;
    const int32_t count = FilterLegal();
    clsMove* const first = Root->Moves;
    if (percentage < 0) {
        SetBestMove(count > 0 ? first + RandomBelow(count) : nullptr);
        return;
    }
    for (clsMove* m = first; m < first + count; ++m)
        if (RandomBelow(100) <= percentage && m->Score > QueenLoss) {
            SetBestMove(m);
            return;
        }
}

int32_t clsTreeSearch::SearchFixedDepth(int32_t depth, uint64_t& nodes) {
    ResetNodes();
    ResetStatistics();
    // Nobody can stop a walk made on the caller's thread: a flag left from an
    // earlier search must not cut it short.
    StopFlag = 0;
    nodes = 0;
    if (depth < 1) return 0;
    SetMaxDepth(depth);
    const int32_t value = WalkTree(depth);
    nodes = Nodes;
    return value;
}

void clsTreeSearch::SetBestMove(const clsMove* move) {
    if (BestMoveLock.Lock() != 0) return;
    if (move)
        BestMove = *move;
    else
        BestMove.Flags |= MoveIllegal;
    BestMoveLock.Unlock();
}

clsMove clsTreeSearch::CopyBestMove() {
    clsMove copy;
    copy.Flags = MoveIllegal;
    copy.Score = NoValue;
    if (BestMoveLock.Lock() == 0) {
        copy = BestMove;
        BestMoveLock.Unlock();
    }
    return copy;
}

void clsTreeSearch::ResetStatistics() {
    Nodes = 0;
    TTHits = 0;
    ReptHits = 0;
}

void clsTreeSearch::SortRoot(bool byScore) {
    clsMove* const first = Root->Moves;
    clsMove* const end = Root->End();
    if (byScore)
        SortDescending(first, end, [](const clsMove& m) { return m.Score; });
    else
        SortDescending(first, end, [](const clsMove& m) { return m.Value; });
}

} // namespace nvoChess
