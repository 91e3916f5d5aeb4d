// clsString: whole files and counted texts.
#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include <unistd.h>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

static std::string Bytes(const clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

// A file path in the test's temporary folder, removed again at the end of the test.
class StringFile : public testing::Test {
protected:
    std::string Path(const char* name) {
        std::string path = testing::TempDir() + "clsstring_" + std::to_string(getpid()) + "_" + name;
        paths.push_back(path);
        return path;
    }
    void TearDown() override {
        for (const std::string& path : paths) std::remove(path.c_str());
    }
    // Writes raw bytes to a new file.
    void Write(const std::string& path, const std::string& bytes) {
        FILE* file = std::fopen(path.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
        std::fclose(file);
    }
    // Runs ReadCounted on a file holding bytes. The string is left in text.
    bool ReadCounted(const std::string& bytes, clsString& text) {
        std::string path = Path("counted");
        Write(path, bytes);
        FILE* file = std::fopen(path.c_str(), "rb");
        bool read = false;
        try {
            read = text.ReadCounted(file);
        } catch (...) {
            std::fclose(file);
            throw;
        }
        std::fclose(file);
        return read;
    }
    std::vector<std::string> paths;
};

TEST_F(StringFile, SaveAndLoad) {
    std::string path = Path("save");
    clsString text;
    text.Assign("line\r\n\0binary\xFF", 14);
    EXPECT_TRUE(text.SaveToFile(path.c_str()));
    clsString loaded("old content");
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 14);
    EXPECT_EQ(Bytes(loaded), Bytes(text));

    EXPECT_TRUE(clsString("more").SaveToFile(path.c_str(), false)); // appends
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 18);
    EXPECT_EQ(Bytes(loaded), Bytes(text) + "more");
    EXPECT_TRUE(clsString("new").SaveToFile(path.c_str(), true)); // replaces
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 3);
    EXPECT_EQ(Bytes(loaded), "new");

    EXPECT_TRUE(clsString().SaveToFile(path.c_str()));
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 0);
    EXPECT_EQ(loaded.Size(), 0);
    EXPECT_EQ(loaded.LoadFromFile(Path("missing").c_str()), 0);
    EXPECT_EQ(loaded.LoadFromFile(nullptr), 0);
    EXPECT_EQ(loaded.LoadFromFile(testing::TempDir().c_str()), 0); // a folder
    EXPECT_FALSE(clsString("x").SaveToFile((Path("no_folder") + "/file").c_str()));
}

TEST_F(StringFile, ReadCountedText) {
    clsString text("old");
    EXPECT_TRUE(ReadCounted(std::string("\x05hello", 6), text));
    EXPECT_EQ(Bytes(text), "hello");
    EXPECT_TRUE(ReadCounted(std::string("\x00", 1), text));
    EXPECT_EQ(text.Size(), 0);
    EXPECT_FALSE(ReadCounted(std::string("\x05hel", 4), text)); // the file ends early
    EXPECT_EQ(text.Size(), 0);
    EXPECT_FALSE(ReadCounted("", text));
    EXPECT_FALSE(ReadCounted("\x85", text));                 // the length itself is cut off
    EXPECT_FALSE(ReadCounted("\xFF\xFF\xFF\xFF\x0F", text)); // 0xFFFFFFFF reads as negative
    EXPECT_FALSE(text.ReadCounted(nullptr));

    // What AppendVarInt writes, ReadCounted reads.
    std::string path = Path("roundtrip");
    clsString record;
    record.AppendVarInt(200).Append(std::string(200, 'q').c_str());
    ASSERT_TRUE(record.SaveToFile(path.c_str()));
    FILE* file = std::fopen(path.c_str(), "rb");
    EXPECT_TRUE(text.ReadCounted(file));
    std::fclose(file);
    EXPECT_EQ(Bytes(text), std::string(200, 'q'));
}

TEST_F(StringFile, ReadCountedLimit) {
    // 10485760 = 5 * 2^21: base-128 digits 0, 0, 0, 5.
    const std::string largest("\x80\x80\x80\x05", 4);
    clsString text;
    EXPECT_TRUE(ReadCounted(largest + std::string(10485760, 'z'), text));
    EXPECT_EQ(text.Size(), 10485760);
    try {
        ReadCounted(std::string("\x81\x80\x80\x05", 4) + "abc", text);
        FAIL() << "a length of 10485761 must throw";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "clsString: length overflow!");
    }
    EXPECT_EQ(text.Size(), 0);
}
