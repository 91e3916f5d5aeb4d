// The engine's use of its opening book: which moves of the position lead to
// book positions, the choice of one of them before a search, and the
// console's listing.
#include <cmath>
#include <cstdio>

#include "book/polyglotkey.h"
#include "book/polyglotline.h"
#include "chess/keys.h"
#include "chess/random.h"
#include "nuvobase/platform.h"
#include "search/clsenginecorvane.h"

namespace nvoChess {

using nuvobase::clsString;

namespace {

// A move below this share of the weights was played too rarely to count.
constexpr double RareShare = 0.02;
// Keeps the thread alive long enough for a front end's poll to see it run.
constexpr unsigned BookMovePauseMs = 50;

bool CanOpen(const clsString& name) {
    std::FILE* file = std::fopen(name.Text(), "rb");
    if (!file) return false;
    std::fclose(file);
    return true;
}

double Weight(const clsBookEntry& entry) {
    return std::sqrt(static_cast<double>(entry.Games()));
}

// The score is (draws + 2 wins) * 500 / games: tenths of a percent.
double Percentage(const clsBookEntry& entry) {
    return entry.Score() / 10.0;
}

clsString HexKey(uint64_t key) {
    return clsString("0000000000000000").ToHexFixed(key);
}

} // namespace

void clsEngineCorvane::LoadBook() {
    clsString name = Flag("book");
    if (name.IsEmpty()) name = DefaultBook;
    if (!CanOpen(name)) {
        if (Post) Info("no book " + name);
        return;
    }
    if (Post) Info("loading book " + name);
    Book.Clear();
    clsString error;
    if (!LoadBookFile(name, 0, error) && !error.IsEmpty()) Info("error loading " + name + ": " + error);
}

bool clsEngineCorvane::PlayLegal(const clsMove& move) {
    ApplyMove(move);
    if (IsAttacked(Board.Kings & Board.Mine)) return false;
    SetEnPassantField(move);
    SwapSides();
    return true;
}

int clsEngineCorvane::GetBookEntries(nuvobase::clsPCollection<clsBookEntryExt>& list, bool generate) {
    clsSimpleNode& node = *Current;
    node.SavedBoard = Board;
    list.Clear();
    if (generate) {
        SetRootNode();
        Generate(-1);
    }
    for (const clsMove* move = node.Moves; move != node.End(); ++move) {
        if (PlayLegal(*move))
            if (const clsBookEntry* entry = Book.Find(BoardKey(Board)))
                list.Add(new clsBookEntryExt(*entry, MoveText(move, true)));
        RestoreBoard(node);
    }
    if (list.Count > 1)
        nuvobase::QuickSortPointers(list.Items, 0, list.Count - 1, CompareBookEntries<clsBookEntryExt>);
    return list.Count;
}

bool clsEngineCorvane::PlayBookMove() {
    nuvobase::clsPCollection<clsBookEntryExt> list;
    const clsMove* chosen = PolyglotBook.IsEmpty() ? ChooseBookMove(list) : ChoosePolyglotMove();
    RestoreBoard(*Current);
    if (!chosen) return false;
    SetBestMove(chosen);
    if (Post) Info(" book move " + MoveText(chosen, false));
    nuvobase::SleepMs(BookMovePauseMs);
    return true;
}

const clsMove* clsEngineCorvane::ChooseBookMove(nuvobase::clsPCollection<clsBookEntryExt>& list) {
    Current->SavedBoard = Board;
    if (GetBookEntries(list, true) == 0) return nullptr;
    double total = 0;
    for (int i = 0; i < list.Count; ++i) total += Weight(*list.At(i));
    for (int i = list.Count - 1; i >= 0; --i)
        if (Weight(*list.At(i)) / total < RareShare) list.Delete(i);
    if (list.Count == 0) return nullptr;
    const clsString& wanted = list.At(RandomBelow(list.Count))->Move;
    for (const clsMove* move = Current->Moves; move != Current->End(); ++move)
        if (MoveText(move, true).Compare(wanted) == 1) return move;
    return nullptr; // two keys collided: the entry belongs to another position
}

const clsMove* clsEngineCorvane::ChoosePolyglotMove() {
    Current->SavedBoard = Board;
    const auto entries = PolyglotBook.Find(PolyglotKey(Board));
    // Every move of the position must be legal; a book that says otherwise belongs to another position.
    for (const clsPolyglotEntry& entry : entries) {
        if (FindPolyglotMove(*this, entry.Move)) continue;
        Info("book move " + PolyglotMoveText(entry.Move) + " is not legal here: the book is not used");
        return nullptr;
    }
    const int pick = PickByWeight(entries, RandomNext());
    return pick < 0 ? nullptr : FindPolyglotMove(*this, entries[pick].Move);
}

void clsEngineCorvane::ListPolyglotMoves() {
    const uint64_t key = PolyglotKey(Board);
    const auto entries = PolyglotBook.Find(key);
    uint64_t total = 0;
    for (const clsPolyglotEntry& entry : entries) total += entry.Weight;
    for (const clsPolyglotEntry& entry : entries) {
        clsString line =
            HexKey(key) + " " + PolyglotMoveText(entry.Move) + " " + clsString(int64_t(entry.Weight));
        if (total > 0) line += " " + clsString().FromDouble(100.0 * entry.Weight / double(total), 2) + "%";
        if (!FindPolyglotMove(*this, entry.Move)) line += " not legal";
        Info(line);
    }
    if (entries.empty()) Info(HexKey(key) + " ???");
}

void clsEngineCorvane::ListBookMoves() {
    if (!PolyglotBook.IsEmpty()) return ListPolyglotMoves();
    Perft(1, false);
    clsSimpleNode& node = *Root;
    clsString best;
    double bestPercentage = -1;
    for (const clsMove* move = node.Moves; move != node.End(); ++move) {
        if (PlayLegal(*move)) {
            const uint64_t key = BoardKey(Board);
            clsString line = HexKey(key) + " " + MoveText(move, true);
            const clsBookEntry* entry = Book.Find(key);
            if (!entry) {
                line += " ???";
            } else {
                const double percentage = Percentage(*entry);
                line += " " + clsString(static_cast<int64_t>(entry->Wins)) + " " +
                        clsString(static_cast<int64_t>(entry->Draws)) + " " +
                        clsString(static_cast<int64_t>(entry->Losses)) + " " +
                        clsString().FromDouble(percentage, 2) + "%";
                if (percentage > bestPercentage) {
                    bestPercentage = percentage;
                    best = line;
                }
            }
            Info(line);
        }
        RestoreBoard(node);
    }
    if (!best.IsEmpty()) Info(best + " <--- best entry");
}

} // namespace nvoChess
