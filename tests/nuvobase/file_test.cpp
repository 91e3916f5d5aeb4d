// clsFile: typed fields through a real file, and folder listings.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "nuvobase/clsfile.h"
#include "rows.h"
#include "temp_folder.h"

using nuvobase::clsCollection;
using nuvobase::clsFile;
using nuvobase::clsString;
using nuvobase_test::CheckRows;

using FileTest = nuvobase_test::TempFolder;

TEST_F(FileTest, VarIntsAndTexts) {
    struct Case {
        uint64_t value;
        std::string bytes;
    };
    const Case cases[] = {{0, std::string(1, '\0')},
                          {127, "\x7F"},
                          {300, "\xAC\x02"},
                          {UINT64_MAX, std::string(9, '\xFF') + "\x01"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.value);
        clsFile file;
        ASSERT_TRUE(file.Open(Path("v").c_str(), "wb"));
        EXPECT_EQ(file.WriteVarInt(c.value), int(c.bytes.size()));
        file.Close();
        EXPECT_EQ(Read("v"), c.bytes);
        ASSERT_TRUE(file.Open(Path("v").c_str(), "rb"));
        EXPECT_EQ(file.ReadVarInt(), c.value);
        EXPECT_EQ(file.ReadVarInt(), 0u); // the end of the file
    }

    clsFile file;
    ASSERT_TRUE(file.Open(Path("t").c_str(), "wb"));
    CheckRows<int64_t>({ROW(file.WriteText("abc"), 4), ROW(file.Length(), 4)});
    file.Close();
    EXPECT_EQ(Read("t"), std::string("\x03") + "abc");
}

TEST_F(FileTest, SizedFieldsAndSeeks) {
    Write("s", "\x34\x12\xFF\x01\x02\x03\x04\x05");
    clsFile file;
    ASSERT_TRUE(file.Open(Path("s").c_str(), "rb"));
    EXPECT_EQ(file.Length(), 8);
    CheckRows<int32_t>({
        ROW(file.ReadSized(2), 0x1234),
        ROW(file.ReadSized(1), -1), // a last byte of 255 fills the upper bytes
        ROW(file.ReadSized(5), 0), ROW(file.ReadSized(4), 0x04030201),
        ROW(file.ReadSized(2), 0), // short read at the end
    });

    // A new Open releases the old stream; a missing file fails and leaves the file closed.
    EXPECT_FALSE(file.Open(Path("missing").c_str(), "rb"));
    EXPECT_EQ(file.Stream, nullptr);
}

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
