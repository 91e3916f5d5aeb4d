// clsString::Tokenise: delimiters, quotes, escapes and blocks.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

using nuvobase::clsCStrings;
using nuvobase::clsString;

using Tokens = std::vector<std::string>;

// The tokens of text as a list of std::string; checks that the count returned matches the list.
static Tokens Tokenise(const char* text, const char* delimiters, bool quotedTokens = false, char quote = '"',
                       char escape = 0, const char* blockOpen = nullptr, const char* blockClose = nullptr) {
    clsCStrings list;
    list.Add(clsString("left over"), 1);
    int count =
        clsString(text).Tokenise(delimiters, list, quotedTokens, quote, escape, blockOpen, blockClose);
    EXPECT_EQ(count, list.Count);
    Tokens tokens;
    for (int i = 0; i < list.Count; i++) {
        clsString token = list.GetAt(i);
        tokens.emplace_back(token.Text(), size_t(token.Size()));
    }
    return tokens;
}

TEST(StringTokenise, DelimitersQuotesAndEscapes) {
    EXPECT_EQ(Tokenise("a, b ,c", ","), (Tokens{"a", ",", "b", ",", "c"}));
    EXPECT_EQ(Tokenise(",,", ","), (Tokens{",", ","}));
    EXPECT_EQ(Tokenise(" , ", ","), (Tokens{"", ",", ""})); // blank spans give empty tokens
    EXPECT_EQ(Tokenise("plain", nullptr), (Tokens{"plain"}));
    EXPECT_EQ(Tokenise("", ","), Tokens{}); // the list is emptied even when nothing is found

    EXPECT_EQ(Tokenise("a \"b,c\" d,e", ","), (Tokens{"a \"b,c\" d", ",", "e"}));
    // The quote character given and the double quote both open spans.
    EXPECT_EQ(Tokenise("x='a,b',y=\"c,d\"", ",", false, '\''), (Tokens{"x='a,b'", ",", "y=\"c,d\""}));
    EXPECT_EQ(Tokenise("'it''s',x", ",", false, '\''), (Tokens{"'it''s'", ",", "x"}));
    EXPECT_EQ(Tokenise("a \"b,c", ","), (Tokens{"a \"b,c"})); // an open quote runs to the end
    // The escape works inside quotes only.
    EXPECT_EQ(Tokenise("\"a\\\",b\",c", ",", false, '"', '\\'), (Tokens{"\"a\\\",b\"", ",", "c"}));
    EXPECT_EQ(Tokenise("a\\,b", ",", false, '"', '\\'), (Tokens{"a\\", ",", "b"}));
    // Strings come back with their quotes, from the start of the token: blanks before them included.
    EXPECT_EQ(Tokenise("{\"a b\": \"x\\\"y\", \"n\": 1}", ":{[,]}", true, '"', '\\'),
              (Tokens{"{", "\"a b\"", ":", " \"x\\\"y\"", ",", " \"n\"", ":", "1", "}"}));
}

TEST(StringTokenise, BlocksForXml) {
    const char* open = "<![CDATA[";
    const char* close = "]]>";
    EXPECT_EQ(Tokenise("<a><![CDATA[x<y>]]></a>", "<>", false, '"', 0, open, close),
              (Tokens{"<", "a", ">", "x<y>", "<", "/a", ">"}));
    EXPECT_EQ(Tokenise(">text<![CDATA[x]]>", "<>", false, '"', 0, open, close), (Tokens{">", "x"}));
    EXPECT_EQ(Tokenise("<![CDATA[a\"b", "<>", false, '"', 0, open, close), (Tokens{"a\"b"}));
    EXPECT_EQ(Tokenise("\"<![CDATA[\"", "<>", false, '"', 0, open, close), (Tokens{"\"<![CDATA[\""}));
    EXPECT_EQ(Tokenise("<![CDATA[x]]>", "<>", false, '"', 0, open, nullptr),
              (Tokens{"<", "![CDATA[x]]", ">"})); // without a close marker there are no blocks
}
