#pragma once
// The names of the members of a learning population: member i is named by entry i. Entry 0 is the member
// that keeps the default soul.
namespace nvoChess {

constexpr int LearnNameCount = 81;
extern const char* const LearnNames[LearnNameCount];

} // namespace nvoChess
