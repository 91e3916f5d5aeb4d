#include "app/bookcommands.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cstring>
#include <memory>

#include "app/clscommandwords.h"
#include "app/commandnumbers.h"
#include "book/clspgnfile.h"
#include "book/clspolyglotbuilder.h"
#include "nuvobase/clsfile.h"
#include "search/clsenginecorvane.h"

namespace nvoChess {

namespace {

// Plies read of each game when \buildbooks is given none.
constexpr int DefaultBuildPlies = 50;
// The type words of \buildbooks: 1 also writes the position table, 2 writes a polyglot book instead.
constexpr int BuildTypeExtractFen = 1, BuildTypePolyglot = 2;
// The folder \cvbooks works on, in the working folder.
constexpr const char* ConvertFolder = "pgn";

void Remark(clsChessApplication& app, const clsString& text) {
    app.Engine->Info(text);
}

// The files of folder and of all its sub-folders whose names fit pattern, as full paths; names that begin
// with "." are left out, and so are the folders under them.
void ListFilesBelow(const clsString& folder, const char* pattern, nuvobase::clsCStrings& paths) {
    nuvobase::clsCollection<nuvobase::clsFile> files;
    nuvobase::clsFile::ListFiles(folder.Text(), pattern, files);
    for (int i = 0; i < files.Count; ++i)
        if (const nuvobase::clsVariant* key = files.KeyAt(i)) paths.Add(key->GetString());
    DIR* directory = opendir(folder.IsEmpty() ? "." : folder.Text());
    if (directory == nullptr) return;
    while (const dirent* entry = readdir(directory)) {
        if (entry->d_name[0] == '.') continue;
        clsString path = folder;
        path.PathJoin(entry->d_name);
        struct stat status;
        if (stat(path.Text(), &status) == 0 && S_ISDIR(status.st_mode)) ListFilesBelow(path, pattern, paths);
    }
    closedir(directory);
}

// The same file by name, ignoring case, or by its place on the disk.
bool SameFile(const clsString& left, const clsString& right) {
    if (left == right) return true;
    struct stat leftStatus, rightStatus;
    return stat(left.Text(), &leftStatus) == 0 && stat(right.Text(), &rightStatus) == 0 &&
           leftStatus.st_dev == rightStatus.st_dev && leftStatus.st_ino == rightStatus.st_ino;
}

clsString Counted(int index, int count, const clsString& path) {
    return clsString(index) + " of " + clsString(count) + " : " + path.FileName(true);
}

} // namespace

void BuildBooks(clsChessApplication& app, const clsString& arguments) {
    if (arguments.IsEmpty()) {
        Remark(app, "buildbooks path_of_pgn_files moves_count [type]");
        Remark(app, "buildbooks d:\\games d:\\corvane\\corvane.cbk 10");
        Remark(app, "type: 0=book, 1=extract FEN");
        Remark(app, "NB: use \"path\" if you want to use path with embedded spaces");
        Remark(app, "type 2 [min_games]: polyglot book .bin of the moves played in min_games games (3)");
        return;
    }
    clsCommandWords words(arguments);
    const clsString folder = words.Next();
    const clsString plies = words.Next();
    const int maxPlies = plies.IsEmpty() ? DefaultBuildPlies : int(ReadBounded(plies, MaxCount));
    const int64_t type = words.NextNumber();
    const clsString minGamesWord = words.Next();
    const int minGames = minGamesWord.IsEmpty() ? clsPolyglotBuilder::DefaultMinGames
                                                : int(ReadBounded(minGamesWord, MaxCount));

    // The board of a Corvane engine is the reader's working space; the other engine lends none.
    app.HaltEngine();
    std::unique_ptr<clsEngineCorvane> ownEngine;
    auto* engine = dynamic_cast<clsEngineCorvane*>(app.Engine.get());
    if (engine == nullptr) {
        ownEngine = std::make_unique<clsEngineCorvane>(&app.Share, clsString("Corvane"), app.Output);
        engine = ownEngine.get();
    }

    nuvobase::clsCStrings files;
    ListFilesBelow(folder.ToForwardSlashes(), "%.pgn", files);
    int64_t games = 0;
    for (int i = 0; i < files.Count; ++i) {
        const clsString& file = *files.At(i);
        Remark(app, clsString("reading file ") + Counted(i + 1, files.Count, file));
        if (type == BuildTypePolyglot) {
            clsPolyglotBuilder builder;
            games += ReadPgnGames(file, *engine, maxPlies, nullptr, builder);
            const clsString book = clsString(file).ChangeExtension("bin");
            int64_t written = 0;
            if (!builder.Write(book, minGames, written))
                Remark(app, clsString("can't save ") + book);
            else
                Remark(app, clsString("saved book ") + book.Quote('\'') + " with " + clsString(written) +
                                " moves");
            continue;
        }
        clsPGNFile pgn;
        games += pgn.Load(file, *engine, maxPlies, type == BuildTypeExtractFen);
        const clsString book = clsString(file).ChangeExtension("cbk");
        Remark(app, clsString("saving book ") + book.Quote('\'') + " with " + clsString(pgn.Book.Count) +
                        " positions");
        pgn.Book.Save(book, 0);
    }
    Remark(app, clsString(games) + " games parsed!");
}

void MergeBooks(clsChessApplication& app, const clsString& arguments) {
    clsCommandWords words(arguments);
    const clsString folder = words.Next();
    const clsString newBook = words.Next();
    if (folder.IsEmpty() || newBook.IsEmpty()) {
        Remark(app, "mergebooks books_path new_book.cbk [limit]");
        Remark(app, "merge .cbk book files into new_book.cbk file");
        return;
    }
    const clsString target = newBook.ToForwardSlashes();
    nuvobase::clsCStrings files;
    ListFilesBelow(folder.ToForwardSlashes(), "%.cbk", files);
    clsBook merged;
    for (int i = 0; i < files.Count; ++i) {
        const clsString& file = *files.At(i);
        if (SameFile(file, target)) continue;
        clsBook scratch;
        scratch.Load(file, 0);
        Remark(app, clsString("merging ") + clsString(scratch.Count) + " positions from " + file);
        merged.AddSorted(scratch);
        Remark(app, clsString("total positions ") + clsString(merged.Count));
    }
    Remark(app, clsString("saving ") + clsString(merged.Count) + " positions in " + newBook);
    if (!merged.Save(target, 0)) Remark(app, clsString("can't save ") + newBook);
    Remark(app, "done");
}

void ConvertBooks(clsChessApplication& app, const clsString&) {
    nuvobase::clsCStrings files;
    ListFilesBelow(ConvertFolder, "%.cbk", files);
    for (int i = 0; i < files.Count; ++i) {
        const clsString& file = *files.At(i);
        Remark(app, clsString("reading book ") + Counted(i + 1, files.Count, file));
        const clsString second = clsString(file).ChangeExtension("cb2");
        const clsString third = clsString(file).ChangeExtension("cb3");
        clsBook first;
        first.Load(file, 0);
        first.Save(second, 0);
        app.Output->Write("\n# test", true);
        clsBook reloaded;
        reloaded.Load(second, 0);
        reloaded.Save(third, 0);
        clsString secondBytes, thirdBytes;
        secondBytes.LoadFromFile(second.Text());
        thirdBytes.LoadFromFile(third.Text());
        const bool same = secondBytes.Size() == thirdBytes.Size() &&
                          std::memcmp(secondBytes.Text(), thirdBytes.Text(), size_t(secondBytes.Size())) == 0;
        Remark(app, same ? "ok" : "bad saved book!");
    }
}

} // namespace nvoChess
