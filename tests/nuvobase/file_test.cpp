// clsFile: folder listings and replacing a file whole.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "nuvobase/clsfile.h"
#include "temp_folder.h"

using nuvobase::clsCollection;
using nuvobase::clsFile;
using nuvobase::clsString;

using FileTest = nuvobase_test::TempFolder;

TEST_F(FileTest, ListFiles) {
    clsCollection<clsFile> list;
    const std::string top = folder.substr(0, folder.size() - 1); // without the trailing separator
    EXPECT_EQ(clsFile::ListFiles(top.c_str(), "", list), 0);
    Write("a.cbk", "12345");
    Write("B.CBK", "");
    Write("c.txt", "x");
    Write(".hidden.cbk", "x");
    std::filesystem::create_directories(Path("sub.cbk"));
    Write("sub.cbk/inner.cbk", "x");

    EXPECT_EQ(clsFile::ListFiles(top.c_str(), "%.cbk", list), 2);
    ASSERT_GE(list.Find(clsString(Path("a.cbk").c_str())), 0);
    const clsFile* a = list.ValueAt(list.Find(clsString(Path("a.cbk").c_str())));
    EXPECT_EQ(a->Size, 5u);
    EXPECT_EQ(a->Name, clsString("a.cbk"));

    // A second call adds to the list; a trailing separator is not doubled in the keys.
    EXPECT_EQ(clsFile::ListFiles(folder.c_str(), nullptr, list), 5);
    EXPECT_GE(list.Find(clsString(Path("c.txt").c_str())), 0);
    EXPECT_EQ(clsFile::ListFiles(Path("no such folder").c_str(), nullptr, list), 5);
}

TEST_F(FileTest, SaveReplacingLeavesTheOldContentOrTheNew) {
    Write("old.txt", "old\r\n");
    std::filesystem::create_directories(Path("folder.txt"));
    struct Case {
        std::string Name;
        bool Append;
        bool Saved;
        std::string After; // the file's content behind the call
    } cases[] = {
        {"new.txt", true, true, "new\r\n"}, // nothing to append to
        {"old.txt", true, true, "old\r\nnew\r\n"},
        {"old.txt", false, true, "new\r\n"},
        {"none/x.txt", false, false, ""}, // no folder to write beside
    };
    for (const Case& c : cases) {
        EXPECT_EQ(clsFile::SaveReplacing(clsString(Path(c.Name).c_str()), clsString("new\r\n"), c.Append),
                  c.Saved)
            << c.Name;
        EXPECT_EQ(Read(c.Name), c.After) << c.Name;
    }
    // A folder cannot be read to append to, nor replaced.
    EXPECT_FALSE(clsFile::SaveReplacing(clsString(Path("folder.txt").c_str()), clsString("new\r\n"), true));
    EXPECT_TRUE(std::filesystem::is_directory(Path("folder.txt")));
    // Nothing is left beside the files.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 3);
}
