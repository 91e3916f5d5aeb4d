// The process-wide pseudo-random generator: xorshift128+ with the shifts 23, 17 and 26, seeded from the clock
// at start. Everything that needs chance draws from it: keys, souls, book choice, random play.
#pragma once

#include <cstdint>

namespace nvoChess {

// The next 64-bit draw.
uint64_t RandomNext();

// abs of the draw's low 32 bits as a signed number, modulo n; 0 for n below 1.
int32_t RandomBelow(int32_t n);

// Puts the generator into a known state.
void RandomSeed(uint64_t s0, uint64_t s1);

} // namespace nvoChess
