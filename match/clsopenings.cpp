#include "match/clsopenings.h"

#include "book/clsgame.h"
#include "book/clspgnfile.h"
#include "chess/clschesscore.h"
#include "nuvobase/asciichars.h"

#include <cstring>

using nuvobase::clsString;

namespace nvoChess {

namespace {

constexpr int BoardSide = 8;
constexpr const char* PieceChars = "PNBRQKpnbrqk";

// splitmix64: a small generator whose sequence is fixed by its seed alone, on every machine and library.
uint64_t SplitMix(uint64_t& state) {
    uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

// The placement field as a grid, grid[0] rank 8; false when it does not describe 64 squares.
bool ReadPlacement(const clsString& placement, char grid[BoardSide][BoardSide + 1]) {
    int rank = 0, file = 0;
    for (const char* c = placement.Text(); *c; ++c) {
        if (*c == '/') {
            if (file != BoardSide || ++rank >= BoardSide) return false;
            file = 0;
        } else if (*c >= '1' && *c <= '8') {
            for (int n = *c - '0'; n > 0; --n) {
                if (file >= BoardSide) return false;
                grid[rank][file++] = '.';
            }
        } else if (std::strchr(PieceChars, *c) != nullptr) {
            if (file >= BoardSide) return false;
            grid[rank][file++] = *c;
        } else {
            return false;
        }
    }
    return rank == BoardSide - 1 && file == BoardSide;
}

int Count(const char grid[BoardSide][BoardSide + 1], char piece) {
    int count = 0;
    for (int rank = 0; rank < BoardSide; ++rank)
        for (int file = 0; file < BoardSide; ++file) count += grid[rank][file] == piece;
    return count;
}

// Every castling right has its king and rook on their first squares.
bool CastlingBacked(const clsString& rights, const char grid[BoardSide][BoardSide + 1]) {
    if (rights == "-") return true;
    struct clsRight {
        char Letter;
        int Rank;
        char King, Rook;
        int RookFile;
    };
    static const clsRight Rights[] = {
        {'K', 7, 'K', 'R', 7}, {'Q', 7, 'K', 'R', 0}, {'k', 0, 'k', 'r', 7}, {'q', 0, 'k', 'r', 0}};
    constexpr int KingFile = 4;
    for (const char* c = rights.Text(); *c; ++c) {
        const clsRight* right = nullptr;
        for (const clsRight& candidate : Rights)
            if (candidate.Letter == *c) right = &candidate;
        if (right == nullptr || grid[right->Rank][KingFile] != right->King ||
            grid[right->Rank][right->RookFile] != right->Rook)
            return false;
    }
    return true;
}

} // namespace

clsString clsOpenings::PositionFault(clsChessCore& core, const clsString& fen) {
    int position = 0;
    const clsString placement = fen.NextWord(' ', position, false, true);
    const clsString side = position >= 0 ? fen.NextWord(' ', position, false, true) : clsString();
    const clsString rights = position >= 0 ? fen.NextWord(' ', position, false, true) : clsString();
    const clsString passant = position >= 0 ? fen.NextWord(' ', position, false, true) : clsString();
    char grid[BoardSide][BoardSide + 1] = {};
    if (!ReadPlacement(placement, grid))
        return clsString("the placement is not eight ranks of eight squares");
    if (side != "w" && side != "b") return clsString("no side to move");
    if (Count(grid, 'K') != 1 || Count(grid, 'k') != 1) return clsString("not one king a side");
    for (int file = 0; file < BoardSide; ++file)
        if (std::strchr("Pp", grid[0][file]) || std::strchr("Pp", grid[BoardSide - 1][file]))
            return clsString("a pawn on the first or last rank");
    if (!CastlingBacked(rights, grid)) return clsString("castling rights without their king and rook");
    if (passant != "-" && (passant.Size() != 2 || passant.Text()[0] < 'a' || passant.Text()[0] > 'h' ||
                           passant.Text()[1] != (side == "w" ? '6' : '3')))
        return clsString("a bad en passant square");
    core.SetPosition(fen);
    core.SetRootNode();
    core.Generate(-1);
    for (const clsMove* move = core.Current->Moves; move != core.Current->End(); ++move)
        if (move->Captured() == PieceKing) return clsString("the side not to move is in check");
    if (core.GameStatus() != GameOn) return clsString("the game is over there");
    return clsString();
}

bool clsOpenings::Load(const clsString& file, int32_t plies, nuvobase::clsCStrings& skipped) {
    Items.clear();
    bool read = false;
    if (file.Compare(".pgn", clsString::CompareEndsWith))
        LoadPgn(file, plies, skipped, read);
    else
        LoadEpd(file, skipped, read);
    return read;
}

void clsOpenings::LoadEpd(const clsString& file, nuvobase::clsCStrings& skipped, bool& read) {
    clsString text;
    read = text.LoadFromFile(file.Text()) > 0;
    clsChessCore core;
    int number = 0;
    for (int position = 0; read && position >= 0;) {
        clsString line = text.NextWord('\n', position);
        ++number;
        line.Trim('\r', true, true).Trim(' ', true);
        if (line.IsEmpty()) continue;
        // Four fields of position, then either the two counters or the operations of the line.
        int at = 0;
        clsString fen;
        for (int field = 0; field < 4 && at >= 0; ++field)
            fen += (field ? " " : "") + line.NextWord(' ', at, false, true);
        clsString halfMoves = at >= 0 ? line.NextWord(' ', at, false, true) : clsString();
        clsString fullMove = at >= 0 ? line.NextWord(' ', at, false, true) : clsString();
        if (!nuvobase::IsAsciiDigits(halfMoves.Text()) || !nuvobase::IsAsciiDigits(fullMove.Text()) ||
            fullMove == "0") {
            halfMoves = "0";
            fullMove = "1";
        }
        fen += " " + halfMoves + " " + fullMove;
        const clsString fault = PositionFault(core, fen);
        if (!fault.IsEmpty()) {
            skipped.Add(file + " line " + clsString(number) + ": " + fault + ", opening skipped");
            continue;
        }
        Items.push_back({fen, clsString()});
    }
}

void clsOpenings::LoadPgn(const clsString& file, int32_t plies, nuvobase::clsCStrings& skipped, bool& read) {
    clsChessCore core;
    int number = 0;
    read = clsPGNFile::ForEachGame(file, [&](const clsString& text) {
        ++number;
        clsGame game;
        game.ReadPgn(text, core, nullptr, plies);
        // The reader keeps a move that fits but is not legal; the replay finds it.
        core.SetPosition(clsString());
        bool legal = game.Tags.GetValue("FEN").IsEmpty();
        for (int position = 0; legal && position >= 0;) {
            const clsString move = game.MoveText.NextWord(' ', position, false, true);
            legal = move.IsEmpty() || core.MakeMoveText(move);
        }
        if (legal && core.GameStatus() == GameOn)
            Items.push_back({clsString(), game.MoveText});
        else
            skipped.Add(file + " game " + clsString(number) + ": its moves are not legal, opening skipped");
    });
}

void clsOpenings::Shuffle(uint64_t seed) {
    uint64_t state = seed;
    for (size_t i = Items.size(); i > 1; --i) std::swap(Items[i - 1], Items[SplitMix(state) % i]);
}

const clsOpening& clsOpenings::ForRound(int32_t round) const {
    static const clsOpening StartPosition;
    if (Items.empty()) return StartPosition;
    const int32_t count = int32_t(Items.size());
    return Items[size_t(((round - 1) % count + count) % count)];
}

bool clsOpenings::HasSetUpPositions() const {
    for (const clsOpening& opening : Items)
        if (!opening.Fen.IsEmpty()) return true;
    return false;
}

} // namespace nvoChess
