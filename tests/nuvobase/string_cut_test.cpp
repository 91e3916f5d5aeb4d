// clsString: substrings, deleting, trimming, replacing and reading words.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

static std::string Bytes(const clsString& s) {
    return std::string(s.Text(), size_t(s.Size()));
}

TEST(StringCut, Substrings) {
    clsString s("hello");
    EXPECT_EQ(Bytes(s.Left(2)), "he");
    EXPECT_EQ(Bytes(s.Left(10)), "hello");
    EXPECT_EQ(Bytes(s.Left(0)), "");
    EXPECT_EQ(Bytes(s.Left(-1)), "");
    EXPECT_EQ(Bytes(s.Right(3)), "llo");
    EXPECT_EQ(Bytes(s.Right(5)), "hello");
    EXPECT_EQ(Bytes(s.Right(6)), ""); // beyond the length: nothing
    EXPECT_EQ(Bytes(s.Right(0)), "");
    EXPECT_EQ(Bytes(s.Mid(1, 3)), "ell");
    EXPECT_EQ(Bytes(s.Mid(1, -1)), "ello");
    EXPECT_EQ(Bytes(s.Mid(3, 10)), "lo");
    EXPECT_EQ(Bytes(s.Mid(5, 1)), ""); // a start equal to the length
    EXPECT_EQ(Bytes(s.Mid(-1, 2)), "");
    EXPECT_EQ(Bytes(s.From(2)), "llo");
    EXPECT_EQ(Bytes(s.From(9)), "");
    EXPECT_EQ(Bytes(clsString().Mid(0, 3)), "");
}

TEST(StringCut, AroundCharacters) {
    clsString pair("key=value=x");
    EXPECT_EQ(Bytes(pair.BeforeChar('=')), "key");
    EXPECT_EQ(Bytes(pair.BeforeChar('#')), "key=value=x");
    EXPECT_EQ(Bytes(pair.BeforeChar('k')), "");
    EXPECT_EQ(Bytes(pair.AfterChar('=')), "value=x");
    EXPECT_EQ(Bytes(pair.AfterChar('#')), "");
    EXPECT_EQ(Bytes(pair.AfterLastChar('=')), "x");
    EXPECT_EQ(Bytes(pair.AfterLastChar('#')), "key=value=x");

    clsString tags("x[a]y[bc]");
    int position = 0;
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "a");
    EXPECT_EQ(position, 4);
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "bc");
    EXPECT_EQ(position, -1); // the close was the last character
    EXPECT_EQ(Bytes(tags.Between('[', ']', position)), "");
    position = 0;
    EXPECT_EQ(Bytes(clsString("[open").Between('[', ']', position)), "");
    EXPECT_EQ(position, -1);

    clsString dotted("a.b.c");
    EXPECT_EQ(dotted.CutLast('.'), 3);
    EXPECT_EQ(Bytes(dotted), "a.b");
    EXPECT_EQ(dotted.CutLast('#'), 3);
    EXPECT_EQ(dotted.CutLast('#', true), 0);
}

TEST(StringCut, DeleteRemoveTrim) {
    clsString s("hello");
    EXPECT_EQ(Bytes(clsString(s).Delete(1, 2)), "hlo");
    EXPECT_EQ(Bytes(clsString(s).Delete(3, 100)), "hel");
    EXPECT_EQ(Bytes(clsString(s).Delete(5, 1)), "hello");
    EXPECT_EQ(Bytes(clsString(s).Delete(-1, 1)), "hello");
    EXPECT_EQ(Bytes(clsString(s).Delete(1, -1)), "hello");
    EXPECT_EQ(Bytes(clsString(s).DeleteLeft(2)), "llo");
    EXPECT_EQ(Bytes(clsString(s).RemoveChar('l')), "heo");

    EXPECT_EQ(Bytes(clsString("  ab  ").Trim()), "ab");
    EXPECT_EQ(Bytes(clsString("  ab  ").Trim(' ', false)), "ab  ");
    EXPECT_EQ(Bytes(clsString("  ab  ").Trim(' ', false, true)), "  ab");
    EXPECT_EQ(Bytes(clsString("xxabxx").TrimRight('x')), "xxab");
    EXPECT_EQ(Bytes(clsString("    ").Trim()), "");
    EXPECT_EQ(Bytes(clsString("\xEF\xBB\xBFtext").StripUtf8Bom()), "text");
    EXPECT_EQ(Bytes(clsString("\xEF\xBB").StripUtf8Bom()), "\xEF\xBB");
}

TEST(StringCut, Squeeze) {
    EXPECT_EQ(Bytes(clsString("a  \r\n b 'c   d' \"e  f\"  ").Squeeze()), "a b 'c   d' \"e  f\"");
    EXPECT_EQ(Bytes(clsString("\n\n a").Squeeze()), " a");       // a leading run stays as one space
    EXPECT_EQ(Bytes(clsString("'a\n  b").Squeeze()), "'a\n  b"); // an open quote runs to the end
    EXPECT_EQ(Bytes(clsString(" \r\n ").Squeeze()), "");
}

TEST(StringCut, ReplaceAll) {
    EXPECT_EQ(Bytes(clsString("aaaa").ReplaceAll("aa", "a")), "aa");
    EXPECT_EQ(Bytes(clsString("Hello hello").ReplaceAll("HELLO", "bye")), "bye bye");
    EXPECT_EQ(Bytes(clsString("abc").ReplaceAll("x", "yy")), "abc");
    EXPECT_EQ(Bytes(clsString("abc").ReplaceAll("", "yy")), "abc");
    EXPECT_EQ(Bytes(clsString("a-b-c").ReplaceAll("-", nullptr)), "abc");
    EXPECT_EQ(Bytes(clsString().ReplaceAll("a", "b")), "");

    clsString grown("a-b-c");
    grown.ReplaceAll("-", "--");
    EXPECT_EQ(Bytes(grown), "a--b--c");
    EXPECT_EQ(grown.GetCapacity(), 9); // the final length plus 2

    clsString shrunk("x--y--");
    shrunk.ReplaceAll("--", "+");
    EXPECT_EQ(Bytes(shrunk), "x+y+");
    EXPECT_EQ(shrunk.Data()[5], 0); // the byte behind the terminator is zeroed too

    clsString self("abab");
    self.ReplaceAll(self.Text() + 2, "X");
    EXPECT_EQ(Bytes(self), "XX");
}

// Collects the words NextWord returns, with the position after each.
static std::vector<std::pair<std::string, int>> Words(const char* text, char separator, bool quoted,
                                                      bool skipEmpty) {
    std::vector<std::pair<std::string, int>> words;
    clsString s(text);
    int position = 0;
    while (position >= 0) {
        clsString word = s.NextWord(separator, position, quoted, skipEmpty);
        words.emplace_back(Bytes(word), position);
    }
    return words;
}

TEST(StringCut, NextWord) {
    using List = std::vector<std::pair<std::string, int>>;
    EXPECT_EQ(Words("a b  c ", ' ', false, false), (List{{"a", 2}, {"b", 4}, {"", 5}, {"c", -1}}));
    EXPECT_EQ(Words("a b  c ", ' ', false, true), (List{{"a", 2}, {"b", 4}, {"c", -1}}));
    EXPECT_EQ(Words("x 'a b' \"c d\" e", ' ', true, false),
              (List{{"x", 2}, {"'a b'", 8}, {"\"c d\"", 14}, {"e", -1}}));
    EXPECT_EQ(Words("x 'a b'", ' ', false, false), (List{{"x", 2}, {"'a", 5}, {"b'", -1}}));
    EXPECT_EQ(Words("it\"s x", ' ', true, false), (List{{"it\"s", 5}, {"x", -1}}));
    EXPECT_EQ(Words(",,", ',', false, true), (List{{"", -1}}));
    EXPECT_EQ(Words("", ',', false, false), (List{{"", -1}}));

    clsString s("abc");
    int position = 7;
    EXPECT_EQ(Bytes(s.NextWord(' ', position)), "");
    EXPECT_EQ(position, -1);
}
