#pragma once
// Numbers typed in command arguments, held within bounds that keep the clocks and counts far from overflow,
// whatever a GUI or a user sends.
#include "nuvobase/clsstring.h"

#include <cstdint>

namespace nvoChess {

// A clock holds at most a year.
constexpr int64_t MaxClockSeconds = int64_t(366) * 24 * 3600;
constexpr int64_t MaxMovesPerControl = 100000;
// Depths, megabytes and limits are plain int.
constexpr int64_t MaxCount = INT32_MAX;

// The decimal number of text; text that is no number reads as 0, and a number beyond bound, either way,
// reads as the bound.
int64_t ReadBounded(const nuvobase::clsString& text, int64_t bound);
// Seconds to milliseconds, with the seconds held to 0..MaxClockSeconds.
int64_t SecondsToMs(int64_t seconds);

} // namespace nvoChess
