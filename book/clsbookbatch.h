// Building a book from many games at once. Inserting position by position moves the book's pointers on
// every insert; a batch gathers the positions of many games, sorts and folds them, and joins them to the
// book in one pass. The book comes out the same as by AddGame game after game.
#pragma once

#include <cstdint>
#include <vector>

#include "book/bookoutcome.h"
#include "book/clsbook.h"

namespace nvoChess {

class clsBookBatch {
public:
    explicit clsBookBatch(clsBook& book) : Book(book) {}
    ~clsBookBatch() { Flush(); }
    clsBookBatch(const clsBookBatch&) = delete;
    clsBookBatch& operator=(const clsBookBatch&) = delete;

    // Counts the keys of a game's positions, in the order played, as clsBook::AddGame counts the positions
    // of its moves; for the next Flush.
    void AddGame(const std::vector<uint64_t>& keys, int result, int drawCode);
    // Joins what was gathered to the book.
    void Flush();

private:
    // Room for one more position: a batch grows up to the book's size and is joined when it has reached it.
    void MakeRoom();

    clsBook& Book;
    std::vector<clsBookEntry> Tallies; // one entry per position counted; folded by key when joined
};

} // namespace nvoChess
