#include "bookfixture.h"

#include <stdlib.h>

#include <algorithm>
#include <fstream>
#include <iterator>

namespace booktest {

std::vector<std::pair<uint64_t, Counters>> Contents(const nvoChess::clsBook& book) {
    std::vector<std::pair<uint64_t, Counters>> entries;
    for (int i = 0; i < book.Count; ++i) {
        const nvoChess::clsBookEntry* entry = book.At(i);
        entries.push_back({entry->Key, {entry->Wins, entry->Losses, entry->Draws}});
    }
    return entries;
}

std::vector<std::pair<uint64_t, Counters>> Contents(const Model& model) {
    return {model.begin(), model.end()};
}

void Fill(nvoChess::clsBook& book, const Model& model) {
    for (const auto& [key, counters] : model) {
        const auto& [wins, losses, draws] = counters;
        book.Add(new nvoChess::clsBookEntry(key, wins, losses, draws));
    }
}

// Keys over the whole unsigned range; counters mostly small, some of every size.
Model RandomModel(std::mt19937_64& random, int entries) {
    auto counter = [&random]() -> uint32_t {
        const int bits = int(random() % 33);
        return bits == 0 ? 0 : uint32_t(random() >> (64 - bits));
    };
    Model model;
    while (int(model.size()) < entries) model[random()] = {counter(), counter(), counter()};
    return model;
}

FileBuilder& FileBuilder::Raw(std::initializer_list<uint8_t> bytes) {
    Data.insert(Data.end(), bytes);
    return *this;
}

FileBuilder& FileBuilder::Word32(uint32_t value) {
    for (int i = 0; i < 4; ++i) Data.push_back(uint8_t(value >> (8 * i)));
    return *this;
}

FileBuilder& FileBuilder::Word64(uint64_t value) {
    for (int i = 0; i < 8; ++i) Data.push_back(uint8_t(value >> (8 * i)));
    return *this;
}

FileBuilder& FileBuilder::Number(uint64_t value) {
    for (; value >= 128; value /= 128) Data.push_back(uint8_t(128 + value % 128));
    Data.push_back(uint8_t(value));
    return *this;
}

FileBuilder& FileBuilder::Header(uint32_t version, uint32_t count) {
    Raw({'N', 'V', 'O', 'B', 'K', 0}).Word32(version).Word32(count);
    Data.insert(Data.end(), 32, 0);
    return *this;
}

FileBuilder& FileBuilder::Entry(uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws) {
    return Number(wins).Number(losses).Number(draws).Word64(key);
}

FileBuilder& FileBuilder::Trailer() {
    return Raw({'*', 'E', 'N', 'D', '*', 0});
}

void BookFiles::SetUp() {
    std::string pattern = (std::filesystem::temp_directory_path() / "booktest-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    Folder = pattern;
}

void BookFiles::TearDown() {
    std::filesystem::remove_all(Folder);
}

nuvobase::clsString BookFiles::PathTo(const std::string& name) const {
    return nuvobase::clsString((Folder / name).c_str());
}

Bytes BookFiles::ReadBytes(const std::string& name) const {
    std::ifstream in(Folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void BookFiles::WriteBytes(const std::string& name, const Bytes& bytes) const {
    std::ofstream out(Folder / name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

std::vector<std::string> BookFiles::FolderListing() const {
    std::vector<std::string> names;
    for (const auto& item : std::filesystem::directory_iterator(Folder))
        names.push_back(item.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace booktest
