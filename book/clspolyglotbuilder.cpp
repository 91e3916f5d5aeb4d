#include "book/clspolyglotbuilder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "book/clspolyglotbook.h"
#include "book/polyglotkey.h"

namespace nvoChess {

namespace {

// Games of one move after which its position's counts are halved.
constexpr uint16_t HalvingGames = 16384;
constexpr int WinPoints = 2, DrawPoints = 1, LossPoints = 0;
constexpr size_t FirstSlots = size_t(1) << 12;
// The table grows before it is more than this share full, in tenths.
constexpr size_t MaxFillTenths = 7;
constexpr size_t WriteBufferEntries = 4096;

// Points of white's moves and of black's moves in a game with this result word.
void PointsOf(uint32_t code, int points[2]) {
    const bool decided = !(code & CodeUndecided);
    if (decided && (code & CodeWhiteWins) == CodeWhiteWins) {
        points[0] = WinPoints;
        points[1] = LossPoints;
    } else if (decided && (code & CodeBlackWins) == CodeBlackWins) {
        points[0] = LossPoints;
        points[1] = WinPoints;
    } else {
        points[0] = points[1] = DrawPoints;
    }
}

// The book's order for the C library's sort: key upwards, weight downwards.
int CompareOut(const void* left, const void* right) {
    const clsPolyglotEntry& a = *static_cast<const clsPolyglotEntry*>(left);
    const clsPolyglotEntry& b = *static_cast<const clsPolyglotEntry*>(right);
    if (a.Key != b.Key) return a.Key < b.Key ? -1 : 1;
    if (a.Weight != b.Weight) return a.Weight > b.Weight ? -1 : 1;
    return 0;
}

} // namespace

void clsPolyglotBuilder::Played(const clsBoard& before, const clsMove& move, const clsBoard&) {
    Game.push_back({PolyglotKey(before), PolyglotMove(move)});
}

void clsPolyglotBuilder::GameEnded(uint32_t code) {
    int points[2];
    PointsOf(code, points);
    for (size_t ply = 0; ply < Game.size(); ++ply) Count(Game[ply].Key, Game[ply].Move, points[ply % 2]);
    Game.clear();
}

void clsPolyglotBuilder::Count(uint64_t key, uint16_t move, int points) {
    if (Slots.empty() || (Tallies.size() + 1) * 10 > Slots.size() * MaxFillTenths) Grow();
    size_t slot = SlotOf(key);
    for (; Slots[slot] != 0; slot = (slot + 1) & (Slots.size() - 1)) {
        clsTally& tally = Tallies[Slots[slot] - 1];
        if (tally.Key != key || tally.Move != move) continue;
        ++tally.Games;
        tally.Points = uint16_t(tally.Points + points);
        if (tally.Games >= HalvingGames) HalveMovesOf(key);
        return;
    }
    Tallies.push_back({key, move, 1, uint16_t(points)});
    Slots[slot] = uint32_t(Tallies.size());
}

// All moves of a key lie on the probing run that starts at the key's slot.
void clsPolyglotBuilder::HalveMovesOf(uint64_t key) {
    for (size_t slot = SlotOf(key); Slots[slot] != 0; slot = (slot + 1) & (Slots.size() - 1)) {
        clsTally& tally = Tallies[Slots[slot] - 1];
        if (tally.Key != key) continue;
        tally.Games /= 2;
        tally.Points /= 2;
    }
}

void clsPolyglotBuilder::Grow() {
    Slots.assign(Slots.empty() ? FirstSlots : Slots.size() * 2, 0);
    for (size_t i = 0; i < Tallies.size(); ++i) {
        size_t slot = SlotOf(Tallies[i].Key);
        while (Slots[slot] != 0) slot = (slot + 1) & (Slots.size() - 1);
        Slots[slot] = uint32_t(i + 1);
    }
}

bool clsPolyglotBuilder::Write(const nuvobase::clsString& file, int minGames, int64_t& written) const {
    std::vector<clsPolyglotEntry> entries;
    for (const clsTally& tally : Tallies)
        if (tally.Games >= minGames && tally.Points > 0)
            entries.push_back({tally.Key, tally.Move, tally.Points, 0});
    if (!entries.empty()) std::qsort(entries.data(), entries.size(), sizeof(clsPolyglotEntry), CompareOut);
    written = int64_t(entries.size());
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.Text(), "wb"), std::fclose);
    if (!stream) return false;
    uint8_t buffer[WriteBufferEntries * PolyglotEntrySize];
    for (size_t first = 0; first < entries.size(); first += WriteBufferEntries) {
        const size_t count = std::min(WriteBufferEntries, entries.size() - first);
        for (size_t i = 0; i < count; ++i)
            WritePolyglotEntry(entries[first + i], buffer + i * PolyglotEntrySize);
        if (std::fwrite(buffer, PolyglotEntrySize, count, stream.get()) != count) return false;
    }
    return std::fclose(stream.release()) == 0;
}

} // namespace nvoChess
