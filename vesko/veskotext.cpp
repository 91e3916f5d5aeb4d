#include "vesko/veskotext.h"

#include "vesko/veskotables.h"

#include <bit>
#include <cstring>

namespace nvoChess {

namespace {

// The men of a half in FEN order of letters, as upper-case letters.
struct Man {
    char Letter;
    uint64_t VeskoHalf::*Word;
};
constexpr Man Men[6] = {{'P', &VeskoHalf::Pawns}, {'N', &VeskoHalf::Knights}, {'B', &VeskoHalf::Bishops},
                        {'R', &VeskoHalf::Rooks}, {'Q', &VeskoHalf::Queens},  {'K', &VeskoHalf::King}};

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? char(c + 32) : c;
}

int64_t MaterialOf(const VeskoHalf& half, const VeskoWeights& weights) {
    return std::popcount(half.Pawns) * weights.Pawn + std::popcount(half.Knights) * weights.Knight +
           std::popcount(half.Bishops) * weights.Bishop + std::popcount(half.Rooks) * weights.Rook +
           std::popcount(half.Queens) * weights.Queen;
}

// Places a man by its letter; false when the letter is none of the twelve.
bool Place(char letter, uint64_t bit, VeskoHalf& white, VeskoHalf& black) {
    for (const Man& man : Men) {
        VeskoHalf* half = letter == man.Letter ? &white : letter == Lower(man.Letter) ? &black : nullptr;
        if (!half) continue;
        half->*man.Word |= bit;
        half->Occupied |= bit;
        return true;
    }
    return false;
}

char LetterAt(uint64_t bit, const VeskoHalf& white, const VeskoHalf& black) {
    for (const Man& man : Men) {
        if (white.*man.Word & bit) return man.Letter;
        if (black.*man.Word & bit) return Lower(man.Letter);
    }
    return 0;
}

} // namespace

uint64_t VeskoTextToSquare(const char* text) {
    if (text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') return 0;
    return uint64_t(1) << ((text[1] - '1') * 8 + 7 - (text[0] - 'a'));
}

void VeskoSquareToText(uint64_t square, char* text) {
    const int index = VeskoSquareOf(square);
    text[0] = char('a' + 7 - index % 8);
    text[1] = char('1' + index / 8);
}

int VeskoMoveToText(const VeskoNode* node, const VeskoMove* move, char* text) {
    VeskoSquareToText(move->From, text);
    VeskoSquareToText(move->To, text + 2);
    if (move->Piece != &node->Mine.Pawns || !move->Extra.NewPiece) return 4;
    for (const Man& man : Men)
        if (move->Extra.NewPiece == &(node->Mine.*man.Word)) text[4] = Lower(man.Letter);
    return 5;
}

void VeskoReadFen(VeskoBlock* block) {
    const char* text = block->Text;
    const char* const end = text + strnlen(text, sizeof block->Text);
    VeskoHalf white{}, black{};
    bool blackToMove = false;
    uint64_t enPassant = 0;

    int square = 63; // a8, then along the rank towards h1
    for (; text < end && *text != ' '; ++text) {
        if (*text == '/') continue;
        if (*text >= '1' && *text <= '8') {
            square -= *text - '0';
            continue;
        }
        if (square >= 0) Place(*text, uint64_t(1) << square, white, black);
        --square; // anything else takes a square as well
    }
    if (text < end) ++text; // the blank behind the board
    if (text < end) blackToMove = *text++ == 'b';
    if (text < end) ++text;
    for (; text < end && *text != ' '; ++text) {
        if (*text == 'K') white.Castling |= 0x09;
        if (*text == 'Q') white.Castling |= 0x88;
        if (*text == 'k') black.Castling |= uint64_t(0x09) << 56;
        if (*text == 'q') black.Castling |= uint64_t(0x88) << 56;
    }
    if (text < end) ++text;
    if (end - text >= 2) enPassant = VeskoTextToSquare(text);

    VeskoNode* root = &block->NodeStack[VeskoRootIndex];
    std::memset(root, 0, sizeof *root);
    root->Mine = blackToMove ? black : white;
    root->Theirs = blackToMove ? white : black;
    root->Flags = blackToMove ? VeskoBlackToMove : 0;
    root->PawnStep = blackToMove ? -8 : 8;
    root->Material = MaterialOf(root->Mine, block->Weights) - MaterialOf(root->Theirs, block->Weights);
    block->NodeStack[VeskoRootIndex - 1].EnPassant = enPassant;
}

void VeskoWriteFen(VeskoBlock* block) {
    const VeskoNode* root = &block->NodeStack[VeskoRootIndex];
    const bool blackToMove = root->Flags & VeskoBlackToMove;
    const VeskoHalf& white = blackToMove ? root->Theirs : root->Mine;
    const VeskoHalf& black = blackToMove ? root->Mine : root->Theirs;
    char* out = block->Text;
    for (int rank = 7; rank >= 0; --rank) {
        int empty = 0;
        for (int square = rank * 8 + 7; square >= rank * 8; --square) {
            const char letter = LetterAt(uint64_t(1) << square, white, black);
            if (!letter) {
                ++empty;
                continue;
            }
            if (empty) *out++ = char('0' + empty);
            empty = 0;
            *out++ = letter;
        }
        if (empty) *out++ = char('0' + empty);
        if (rank) *out++ = '/';
    }
    *out++ = ' ';
    *out++ = blackToMove ? 'b' : 'w';
    *out++ = ' ';
    *out++ = '-'; // castling rights are not written
    *out++ = ' ';
    const uint64_t enPassant = block->NodeStack[VeskoRootIndex - 1].EnPassant;
    if (enPassant) {
        VeskoSquareToText(enPassant, out);
        out += 2;
    } else {
        *out++ = '-';
    }
    *out = 0;
}

} // namespace nvoChess
