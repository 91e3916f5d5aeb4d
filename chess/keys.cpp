#include "chess/keys.h"

#include <cstring>
#include <mutex>

#include "chess/bits.h"
#include "chess/random.h"

namespace nvoChess {

uint64_t RandomKeys[64][8][2];
uint64_t SideKeys[2];

namespace {

void FillRandomBytes(void* words, size_t bytes) {
    auto* out = static_cast<unsigned char*>(words);
    for (size_t i = 0; i < bytes; ++i) out[i] = static_cast<unsigned char>(RandomBelow(256));
}

void FillKeys() {
    FillRandomBytes(RandomKeys, sizeof(RandomKeys));
    FillRandomBytes(SideKeys, sizeof(SideKeys));
}

// One step of the book key's xorshift: w mixed with p, then y.
uint64_t Step(uint64_t w, uint64_t p, uint64_t y) {
    uint64_t x = w ^ p;
    x ^= x << 23;
    return (((y >> 9) ^ x) >> 17) ^ x ^ y;
}

} // namespace

void InitKeys() {
    static std::once_flag filled;
    std::call_once(filled, FillKeys);
}

uint64_t ScratchHash(clsBoard& board) {
    uint64_t hash = 0;
    for (int colour = 0; colour < 2; ++colour) {
        const uint64_t men = board.MenOf(colour);
        for (int word = PiecePawn; word <= 9; ++word)
            for (uint64_t bits = board.Word(word) & men; bits != 0; bits &= bits - 1)
                hash ^= RandomKeys[BitIndex(bits)][word - 2][colour];
    }
    board.Hash = hash;
    return hash;
}

uint64_t BoardKey(const clsBoard& board) {
    constexpr uint64_t C = 0x00002C070202CDE2ULL;
    uint64_t x = board.Kings ^ 0xA10E014701010401ULL;
    x ^= x << 23;
    const uint64_t s1 = ((x ^ 0x580E041398440000ULL) >> 17) ^ x;
    const uint64_t s2 = Step(board.Queens, C, s1);
    const uint64_t s3 = Step(board.Rooks, s1, s2);
    const uint64_t s4 = Step(board.Bishops, s2, s3);
    const uint64_t s5 = Step(board.Knights, s3, s4);
    const uint64_t s6 = Step(board.Pawns, s4, s5);
    const uint64_t s7 = Step(static_cast<uint64_t>(static_cast<int64_t>(board.SideToMove)), s5, s6);
    const uint64_t s8 = Step(board.Mine, s6, s7);
    const uint64_t s9 = Step(board.EnPassant - board.CastleRights, s7, s8);
    return (s9 + s8) ^ (s8 + s7) ^ (s7 + s6) ^ (s6 + s5) ^ (s5 + s4) ^ (s4 + s3) ^ (s3 + s2) ^ (s2 + s1) ^
           (s1 + C) ^ board.Occupied;
}

} // namespace nvoChess
