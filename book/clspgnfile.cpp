#include "book/clspgnfile.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "book/clsbookbatch.h"
#include "book/clsgame.h"
#include "chess/keys.h"

namespace nvoChess {

namespace {

using nuvobase::clsString;

constexpr size_t ReadBufferSize = size_t(1) << 16;

// The lines of a file one by one, without holding the file whole. A line ends at LF, and a CR in front of
// the LF goes with it. NUL bytes read as blanks, so that no text is cut short by them.
class clsLineReader {
public:
    explicit clsLineReader(const clsString& file)
        : File(std::fopen(file.Text(), "rb")), Buffer(new char[ReadBufferSize]) {}
    ~clsLineReader() {
        if (File != nullptr) std::fclose(File);
    }
    clsLineReader(const clsLineReader&) = delete;
    clsLineReader& operator=(const clsLineReader&) = delete;

    bool IsOpen() const { return File != nullptr; }

    bool Next(clsString& line) {
        line.Clear();
        bool any = false;
        for (;;) {
            if (Taken == Filled && !Fill()) return any;
            any = true;
            const char* start = Buffer.get() + Taken;
            const size_t available = Filled - Taken;
            const char* end = static_cast<const char*>(std::memchr(start, '\n', available));
            const size_t taken = end ? size_t(end - start) : available;
            line.Append(start, int(taken));
            Taken += taken + (end ? 1 : 0);
            if (end) break;
        }
        if (line.Size() > 0 && line.Text()[line.Size() - 1] == '\r') line.SetLength(line.Size() - 1);
        return true;
    }

private:
    bool Fill() {
        Filled = std::fread(Buffer.get(), 1, ReadBufferSize, File);
        Taken = 0;
        for (size_t i = 0; i < Filled; ++i)
            if (Buffer[i] == '\0') Buffer[i] = ' ';
        return Filled > 0;
    }

    FILE* File;
    std::unique_ptr<char[]> Buffer;
    size_t Taken = 0;
    size_t Filled = 0;
};

// The two codes by which a game's positions count in the book.
struct clsBookResult {
    int Result;
    int DrawCode;
};

clsBookResult BookResultOf(uint32_t code) {
    if (code & CodeUndecided) return {0, 0};
    if (code & CodeDraw) return {1, 1};
    if ((code & CodeWhiteWins) == CodeWhiteWins) return {2, 0};
    if ((code & CodeBlackWins) == CodeBlackWins) return {0, 2};
    return {0, 0};
}

// Counts the positions each game reaches in a book, by the game's result.
class clsBookCounter : public clsPlyListener {
public:
    explicit clsBookCounter(clsBook& book) : Batch(book) {}

    void Played(const clsBoard&, const clsMove&, const clsBoard& after) override {
        Keys.push_back(BoardKey(after));
    }
    void GameEnded(uint32_t code) override {
        const clsBookResult result = BookResultOf(code);
        Batch.AddGame(Keys, result.Result, result.DrawCode);
        Keys.clear();
    }

private:
    clsBookBatch Batch;
    std::vector<uint64_t> Keys;
};

} // namespace

int ReadPgnGames(const clsString& file, clsChessCore& core, int maxPlies, clsFENTable* fens,
                 clsPlyListener& listener) {
    int games = 0;
    const bool read = clsPGNFile::ForEachGame(file, [&](const clsString& text) {
        clsGame game;
        game.ReadPgn(text, core, fens, maxPlies, &listener);
        listener.GameEnded(game.Code);
        ++games;
    });
    return read ? games : 0;
}

int clsPGNFile::Load(const clsString& file, clsChessCore& core, int maxPlies, bool extractFen) {
    Fens.Clear();
    int games = 0;
    {
        clsBookCounter counter(Book);
        games = ReadPgnGames(file, core, maxPlies, extractFen ? &Fens : nullptr, counter);
    }
    if (extractFen) Fens.Write(clsString(file).ChangeExtension("txt"));
    return games;
}

bool clsPGNFile::ForEachGame(const clsString& file, const std::function<void(const clsString&)>& onGame) {
    clsLineReader reader(file);
    if (!reader.IsOpen()) return false;
    clsString text;
    auto closeGame = [&]() {
        if (text.IsEmpty()) return;
        onGame(text);
        text.Clear();
    };
    bool inMoves = false;
    clsString line;
    // A byte order mark in front of the first tag would hide the tag.
    bool more = reader.Next(line);
    if (more) line.StripUtf8Bom();
    for (; more; more = reader.Next(line)) {
        int start = 0;
        while (start < line.Size() && line.Text()[start] == ' ') ++start;
        const bool tag = line.Text()[start] == '[';
        if (tag && inMoves) closeGame();
        inMoves = !tag;
        if (start < line.Size()) text.Append(line.Text() + start, line.Size() - start).Append('\n');
    }
    closeGame();
    return true;
}

} // namespace nvoChess
