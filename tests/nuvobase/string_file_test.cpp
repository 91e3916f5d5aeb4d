// clsString: whole files and counted texts.
#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include <unistd.h>

#include "nuvobase/clsstring.h"
#include "rows.h"

using nuvobase::clsString;
using nuvobase_test::Bytes;

namespace {

// Runs ReadCounted on a stream holding bytes. The string is left in text.
bool ReadCounted(const std::string& bytes, clsString& text) {
    FILE* file = std::tmpfile();
    if (!file) throw std::runtime_error("no temporary file");
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::rewind(file);
    try {
        const bool read = text.ReadCounted(file);
        std::fclose(file);
        return read;
    } catch (...) {
        std::fclose(file);
        throw;
    }
}

} // namespace

TEST(StringFile, SaveAndLoad) {
    const std::string path = testing::TempDir() + "clsstring_" + std::to_string(getpid());
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
    std::remove(path.c_str());
    EXPECT_EQ(loaded.LoadFromFile(path.c_str()), 0); // missing
    EXPECT_EQ(loaded.LoadFromFile(nullptr), 0);
    EXPECT_EQ(loaded.LoadFromFile(testing::TempDir().c_str()), 0); // a folder
    EXPECT_FALSE(clsString("x").SaveToFile((path + "_no_folder/file").c_str()));
}

TEST(StringFile, ReadCountedText) {
    clsString text("old");
    EXPECT_TRUE(ReadCounted(std::string("\x05hello", 6), text));
    EXPECT_EQ(Bytes(text), "hello");
    EXPECT_FALSE(ReadCounted(std::string("\x05hel", 4), text)); // the file ends early
    EXPECT_EQ(text.Size(), 0);
    EXPECT_TRUE(ReadCounted(std::string("\x00", 1), text));
    EXPECT_FALSE(ReadCounted("", text));
    EXPECT_FALSE(ReadCounted("\x85", text));                 // the length itself is cut off
    EXPECT_FALSE(ReadCounted("\xFF\xFF\xFF\xFF\x0F", text)); // 0xFFFFFFFF reads as negative
    EXPECT_FALSE(text.ReadCounted(nullptr));

    // What AppendVarInt writes, ReadCounted reads.
    clsString record;
    record.AppendVarInt(200).Append(std::string(200, 'q').c_str());
    EXPECT_TRUE(ReadCounted(Bytes(record), text));
    EXPECT_EQ(Bytes(text), std::string(200, 'q'));

    // 10485760 = 5 * 2^21 (base-128 digits 0, 0, 0, 5) is the longest text; one more throws.
    EXPECT_TRUE(ReadCounted(std::string("\x80\x80\x80\x05", 4) + std::string(10485760, 'z'), text));
    EXPECT_EQ(text.Size(), 10485760);
    try {
        ReadCounted(std::string("\x81\x80\x80\x05", 4) + "abc", text);
        FAIL() << "a length of 10485761 must throw";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "clsString: length overflow!");
    }
    EXPECT_EQ(text.Size(), 0);
}
