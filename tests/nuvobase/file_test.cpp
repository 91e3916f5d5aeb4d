// clsFile: typed fields through a real file, and folder listings.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include "nuvobase/clsfile.h"
#include "rows.h"

using nuvobase::clsCollection;
using nuvobase::clsFile;
using nuvobase::clsString;

namespace {

// A fresh folder under the test's temporary folder, removed at the end.
class FileTest : public testing::Test {
protected:
    void SetUp() override {
        folder = testing::TempDir() + "clsfile_" + std::to_string(getpid()) + "_" +
                 testing::UnitTest::GetInstance()->current_test_info()->name();
        std::filesystem::remove_all(folder);
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    std::string Path(const std::string& name) const { return folder + "/" + name; }
    void Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
    }
    std::string Read(const std::string& name) const {
        std::ifstream in(Path(name), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

    std::string folder;
};

} // namespace

TEST_F(FileTest, VarIntsAndTexts) {
    struct Case {
        uint64_t value;
        std::string bytes;
    };
    const Case cases[] = {{0, std::string(1, '\0')},
                          {127, "\x7F"},
                          {128, "\x80\x01"},
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
    EXPECT_EQ(file.WriteText("abc"), 4);
    EXPECT_EQ(file.Length(), 4);
    file.Close();
    EXPECT_EQ(Read("t"), "\x03"
                         "abc");
    EXPECT_EQ(file.WriteVarInt(1), 0); // closed
    EXPECT_EQ(file.Length(), -1);
}

TEST_F(FileTest, SizedFieldsAndSeeks) {
    Write("s", "\x34\x12\xFF\x01\x02\x03\x04\x05");
    clsFile file;
    ASSERT_TRUE(file.Open(Path("s").c_str(), "rb"));
    EXPECT_EQ(file.Length(), 8);
    nuvobase_test::CheckRows<int32_t>({
        ROW(file.ReadSized(2), 0x1234),
        ROW(file.ReadSized(1), -1), // a last byte of 255 fills the upper bytes
        ROW(file.ReadSized(5), 0), ROW(file.ReadSized(4), 0x04030201),
        ROW(file.ReadSized(2), 0), // short read at the end
    });
    EXPECT_TRUE(file.SeekStart());
    char first = 0;
    EXPECT_EQ(file.Read(&first, 1), 1);
    EXPECT_EQ(first, '\x34');
    EXPECT_TRUE(file.SeekEnd());
    EXPECT_EQ(file.Read(&first, 1), 0);

    // A new Open releases the old stream; a missing file fails and leaves the file closed.
    EXPECT_FALSE(file.Open(Path("missing").c_str(), "rb"));
    EXPECT_EQ(file.Stream, nullptr);
    EXPECT_EQ(file.Name, clsString(Path("missing").c_str()));
}

TEST_F(FileTest, ListFiles) {
    clsCollection<clsFile> list;
    EXPECT_EQ(clsFile::ListFiles(folder.c_str(), "", list), 0);
    Write("a.cbk", "12345");
    Write("B.CBK", "");
    Write("c.txt", "x");
    Write(".hidden.cbk", "x");
    std::filesystem::create_directories(Path("sub.cbk"));
    Write("sub.cbk/inner.cbk", "x");

    EXPECT_EQ(clsFile::ListFiles(folder.c_str(), "%.cbk", list), 2);
    ASSERT_GE(list.Find(clsString(Path("a.cbk").c_str())), 0);
    const clsFile* a = list.ValueAt(list.Find(clsString(Path("a.cbk").c_str())));
    EXPECT_EQ(a->Size, 5u);
    EXPECT_EQ(a->Folder, clsString(folder.c_str()));
    EXPECT_EQ(a->Name, clsString("a.cbk"));
    EXPECT_GE(list.Find(clsString(Path("B.CBK").c_str())), 0);

    // A second call adds to the list; a trailing separator is not doubled in the keys.
    EXPECT_EQ(clsFile::ListFiles((folder + "/").c_str(), nullptr, list), 5);
    EXPECT_GE(list.Find(clsString(Path("c.txt").c_str())), 0);
    EXPECT_EQ(clsFile::ListFiles(Path("no such folder").c_str(), nullptr, list), 5);
}
