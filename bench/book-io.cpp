// Builds a book of one million random positions from sorted runs joined pairwise, the way
// book files are made and joined, then times Save, Load and lookups.
//   book-io [entries] [file]

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "book/clsbook.h"

using nvoChess::clsBook;
using nvoChess::clsBookEntry;

namespace {

double MillisecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

// Books of a thousand positions each, as from one PGN file.
std::vector<std::unique_ptr<clsBook>> AddRandomEntries(std::mt19937_64& random, int entries) {
    const int perBook = 1000;
    std::vector<std::unique_ptr<clsBook>> books;
    for (int made = 0; made < entries; made += perBook) {
        std::vector<clsBookEntry> run;
        for (int i = 0; i < perBook && made + i < entries; ++i)
            run.emplace_back(random(), uint32_t(random() % 300), uint32_t(random() % 300),
                             uint32_t(random() % 300));
        std::sort(run.begin(), run.end(),
                  [](const clsBookEntry& a, const clsBookEntry& b) { return a.Key < b.Key; });
        // A run holds each key once, as a book does.
        run.erase(std::unique(run.begin(), run.end(),
                              [](const clsBookEntry& a, const clsBookEntry& b) { return a.Key == b.Key; }),
                  run.end());
        auto book = std::make_unique<clsBook>();
        book->AddSorted(run.data(), int(run.size()));
        books.push_back(std::move(book));
    }
    return books;
}

// Pairwise rounds, as a merge sort joins its runs.
std::unique_ptr<clsBook> MergeAll(std::vector<std::unique_ptr<clsBook>> books) {
    while (books.size() > 1) {
        std::vector<std::unique_ptr<clsBook>> joined;
        for (size_t i = 0; i < books.size(); i += 2) {
            if (i + 1 < books.size()) books[i]->AddSorted(*books[i + 1]);
            joined.push_back(std::move(books[i]));
        }
        books = std::move(joined);
    }
    return books.empty() ? std::make_unique<clsBook>() : std::move(books.front());
}

} // namespace

int main(int argc, char** argv) {
    const int entries = argc > 1 ? std::atoi(argv[1]) : 1000000;
    const std::string file =
        argc > 2 ? argv[2]
                 : (std::filesystem::temp_directory_path() / ("book-io-" + std::to_string(getpid()) + ".cbk"))
                       .string();
    const nuvobase::clsString path(file.c_str());
    std::mt19937_64 random(20240601);

    auto start = std::chrono::steady_clock::now();
    auto books = AddRandomEntries(random, entries);
    const double addMs = MillisecondsSince(start);

    start = std::chrono::steady_clock::now();
    const auto book = MergeAll(std::move(books));
    const double mergeMs = MillisecondsSince(start);

    start = std::chrono::steady_clock::now();
    const bool saved = book->Save(path, 0);
    const double saveMs = MillisecondsSince(start);
    std::error_code error;
    const auto bytes = std::filesystem::file_size(file, error);

    clsBook loaded;
    start = std::chrono::steady_clock::now();
    const bool complete = loaded.Load(path, 0);
    const double loadMs = MillisecondsSince(start);

    start = std::chrono::steady_clock::now();
    int found = 0;
    for (int i = 0; i < book->Count; ++i) found += loaded.Find(book->At(i)->Key) != nullptr;
    const double findMs = MillisecondsSince(start);
    if (argc <= 2) std::remove(file.c_str());

    std::printf("entries %d, file %llu bytes\n", loaded.Count,
                static_cast<unsigned long long>(error ? 0 : bytes));
    std::printf("add   %9.1f ms (books of 1000)\n", addMs);
    std::printf("merge %9.1f ms (pairwise rounds)\n", mergeMs);
    std::printf("save  %9.1f ms %s\n", saveMs, saved ? "" : "FAILED");
    std::printf("load  %9.1f ms %s\n", loadMs, complete ? "" : "FAILED");
    std::printf("find  %9.1f ms for %d lookups\n", findMs, found);
    return saved && complete && found == book->Count ? 0 : 1;
}
