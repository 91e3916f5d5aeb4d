#include "book/clspolyglotbook.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "book/polyglotkey.h"

namespace nvoChess {

using nuvobase::clsString;

namespace {

uint64_t ReadBigEndian(const uint8_t* bytes, int count) {
    uint64_t value = 0;
    for (int i = 0; i < count; ++i) value = value << 8 | bytes[i];
    return value;
}

void WriteBigEndian(uint64_t value, int count, uint8_t* bytes) {
    for (int i = count - 1; i >= 0; --i, value >>= 8) bytes[i] = uint8_t(value);
}

clsString EntryNumber(size_t index) {
    return clsString(" at entry ") + clsString(int64_t(index + 1));
}

} // namespace

void WritePolyglotEntry(const clsPolyglotEntry& entry, uint8_t* bytes) {
    WriteBigEndian(entry.Key, 8, bytes);
    WriteBigEndian(entry.Move, 2, bytes + 8);
    WriteBigEndian(entry.Weight, 2, bytes + 10);
    WriteBigEndian(entry.Learn, 4, bytes + 12);
}

bool clsPolyglotBook::Parse(const uint8_t* bytes, size_t size, clsString& error) {
    Entries.clear();
    if (size % PolyglotEntrySize != 0) {
        error = clsString("size ") + clsString(int64_t(size)) + " is no multiple of 16";
        return false;
    }
    std::vector<clsPolyglotEntry> entries(size / PolyglotEntrySize);
    for (size_t i = 0; i < entries.size(); ++i) {
        const uint8_t* at = bytes + i * PolyglotEntrySize;
        clsPolyglotEntry& entry = entries[i];
        entry.Key = ReadBigEndian(at, 8);
        entry.Move = uint16_t(ReadBigEndian(at + 8, 2));
        entry.Weight = uint16_t(ReadBigEndian(at + 10, 2));
        entry.Learn = uint32_t(ReadBigEndian(at + 12, 4));
        if (i > 0 && entry.Key < entries[i - 1].Key) {
            error = clsString("keys out of order") + EntryNumber(i);
            return false;
        }
        if (!IsPolyglotMoveShape(entry.Move)) {
            error = clsString("no move") + EntryNumber(i);
            return false;
        }
    }
    Entries = std::move(entries);
    return true;
}

bool clsPolyglotBook::Load(const clsString& file, clsString& error) {
    Entries.clear();
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.Text(), "rb"), std::fclose);
    if (!stream) {
        error = "can't open the file";
        return false;
    }
    std::vector<uint8_t> bytes;
    uint8_t buffer[1 << 16];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, stream.get())) > 0;)
        bytes.insert(bytes.end(), buffer, buffer + got);
    return Parse(bytes.data(), bytes.size(), error);
}

std::span<const clsPolyglotEntry> clsPolyglotBook::Find(uint64_t key) const {
    const auto [first, last] = std::equal_range(
        Entries.begin(), Entries.end(), clsPolyglotEntry{key},
        [](const clsPolyglotEntry& left, const clsPolyglotEntry& right) { return left.Key < right.Key; });
    return {first, last};
}

int PickByWeight(std::span<const clsPolyglotEntry> entries, uint64_t draw) {
    uint64_t total = 0;
    for (const clsPolyglotEntry& entry : entries) total += entry.Weight;
    if (total == 0) return -1;
    uint64_t left = draw % total;
    for (size_t i = 0;; ++i) {
        if (left < entries[i].Weight) return int(i);
        left -= entries[i].Weight;
    }
}

} // namespace nvoChess
