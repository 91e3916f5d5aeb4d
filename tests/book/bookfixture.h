#pragma once

// Shared helpers of the book tests: a scratch folder, raw file bytes, a plain
// model of a book's content, and a builder of .cbk bytes written straight from
// the file layout, independent of the code under test.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "book/clsbook.h"

namespace booktest {

using Bytes = std::vector<uint8_t>;
// key -> wins, losses, draws
using Counters = std::tuple<uint32_t, uint32_t, uint32_t>;
using Model = std::map<uint64_t, Counters>;

// The entries of a book in array order as (key, counters); the order matters.
std::vector<std::pair<uint64_t, Counters>> Contents(const nvoChess::clsBook& book);
std::vector<std::pair<uint64_t, Counters>> Contents(const Model& model);

void Fill(nvoChess::clsBook& book, const Model& model);
Model RandomModel(std::mt19937_64& random, int entries);

// .cbk bytes assembled by hand.
struct FileBuilder {
    Bytes Data;
    FileBuilder& Raw(std::initializer_list<uint8_t> bytes);
    FileBuilder& Word32(uint32_t value);
    FileBuilder& Word64(uint64_t value);
    FileBuilder& Number(uint64_t value);
    FileBuilder& Header(uint32_t version, uint32_t count);
    FileBuilder& Entry(uint64_t key, uint32_t wins, uint32_t losses, uint32_t draws);
    FileBuilder& Trailer();
};

class BookFiles : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    nuvobase::clsString PathTo(const std::string& name) const;
    Bytes ReadBytes(const std::string& name) const;
    void WriteBytes(const std::string& name, const Bytes& bytes) const;
    std::vector<std::string> FolderListing() const;

    std::filesystem::path Folder;
};

} // namespace booktest
