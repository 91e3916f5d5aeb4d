#pragma once

// Shared helpers of the book tests: a scratch folder, raw file bytes, a plain
// model of a book's content, and a builder of .cbk bytes written straight from
// the file layout, independent of the code under test.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "book/clsbook.h"
#include "nuvobase/temp_folder.h"

namespace booktest {

using Bytes = std::vector<uint8_t>;
// key -> wins, losses, draws
using Counters = std::tuple<uint32_t, uint32_t, uint32_t>;
using Model = std::map<uint64_t, Counters>;

// The entries of a book in array order as (key, counters); the order matters.
inline std::vector<std::pair<uint64_t, Counters>> Contents(const nvoChess::clsBook& book) {
    std::vector<std::pair<uint64_t, Counters>> entries;
    for (int i = 0; i < book.Count; ++i) {
        const nvoChess::clsBookEntry* entry = book.At(i);
        entries.push_back({entry->Key, {entry->Wins, entry->Losses, entry->Draws}});
    }
    return entries;
}

inline std::vector<std::pair<uint64_t, Counters>> Contents(const Model& model) {
    return {model.begin(), model.end()};
}

inline void Fill(nvoChess::clsBook& book, const Model& model) {
    std::vector<nvoChess::clsBookEntry> entries;
    for (const auto& [key, counters] : model) {
        const auto& [wins, losses, draws] = counters;
        entries.emplace_back(key, wins, losses, draws);
    }
    book.AddSorted(entries.data(), int(entries.size()));
}

// Keys over the whole unsigned range; counters mostly small, some of every size.
inline Model RandomModel(std::mt19937_64& random, int entries) {
    auto counter = [&random]() -> uint32_t {
        const int bits = int(random() % 33);
        return bits == 0 ? 0 : uint32_t(random() >> (64 - bits));
    };
    Model model;
    while (int(model.size()) < entries) model[random()] = {counter(), counter(), counter()};
    return model;
}

// .cbk bytes assembled by hand.
struct FileBuilder {
    Bytes Data;
    FileBuilder& Raw(std::initializer_list<uint8_t> bytes) {
        Data.insert(Data.end(), bytes);
        return *this;
    }
    // A little-endian word of the given bytes.
    FileBuilder& Word(uint64_t value, int bytes) {
        for (int i = 0; i < bytes; ++i) Data.push_back(uint8_t(value >> (8 * i)));
        return *this;
    }
    FileBuilder& Number(uint64_t value) {
        for (; value >= 128; value /= 128) Data.push_back(uint8_t(128 + value % 128));
        Data.push_back(uint8_t(value));
        return *this;
    }
    FileBuilder& Header(uint32_t version, uint32_t count) {
        Raw({'N', 'V', 'O', 'B', 'K', 0}).Word(version, 4).Word(count, 4);
        Data.insert(Data.end(), 32, 0);
        return *this;
    }
    FileBuilder& Entry(uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws) {
        return Number(wins).Number(losses).Number(draws).Word(key, 8);
    }
    FileBuilder& Trailer() { return Raw({'*', 'E', 'N', 'D', '*', 0}); }
};

// A fresh folder for each test, for the tests that work on real files.
class BookFiles : public nuvobase_test::TempFolder {
protected:
    nuvobase::clsString PathTo(const std::string& name) const {
        return nuvobase::clsString(Path(name).c_str());
    }
    Bytes ReadBytes(const std::string& name) const {
        const std::string text = Read(name);
        return {text.begin(), text.end()};
    }
    void WriteBytes(const std::string& name, const Bytes& bytes) const {
        Write(name, std::string(bytes.begin(), bytes.end()));
    }
    // Whether the folder holds this one file and nothing beside it.
    bool HoldsOnly(const std::string& name) const {
        return std::distance(std::filesystem::directory_iterator(folder), {}) == 1 &&
               std::filesystem::exists(Path(name));
    }
};

} // namespace booktest
