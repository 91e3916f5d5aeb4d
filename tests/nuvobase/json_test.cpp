// clsJSON: the tree it reads, and the XML text of it.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsjson.h"
#include "nuvobase/clsxml.h"
#include "rows.h"
#include "temp_folder.h"

using nuvobase::clsJSON;
using nuvobase::clsString;
using nuvobase::clsXML;
using nuvobase_test::Bytes;

namespace {

struct Reading {
    bool parsed;
    std::string xml, said;
};

Reading ReadJson(const std::string& text) {
    clsJSON json;
    testing::internal::CaptureStdout();
    const bool parsed = json.Parse(clsString().Assign(text.data(), int(text.size())));
    std::string said = testing::internal::GetCapturedStdout();
    clsString indent;
    const std::string xml = Bytes(json.ToXmlText(indent));
    EXPECT_EQ(Bytes(indent), "");
    return {parsed, xml, said};
}

} // namespace

using JsonFile = nuvobase_test::TempFolder;

TEST_F(JsonFile, TreesAsXmlBadTokensDeepNestingAndFiles) {
    struct Case {
        const char* text;
        bool parsed;
        std::string xml; // inside the top element
    };
    const std::string root = "\r\n\t\t<_object_>";
    const std::string end = "\r\n\t</_object_>";
    const Case cases[] = {
        {"{\"a\":1}", true, root + "\r\n\t\t\t<a>1</a>\r\n\t\t</_object_>"},
        {"[1,2]", true,
         root + "\r\n\t\t\t<_object_>1</_object_>\r\n\t\t\t<_object_>2</_object_>\r\n\t\t</_object_>"},
        {"{\"a\":{\"b\":true}}\n", true,
         root + "\r\n\t\t\t<a>\r\n\t\t\t\t<b>true</b>\r\n\t\t\t</a>\r\n\t\t</_object_>"},
        {"[-1]", false, root + "</_object_>"},
        // A ']' closes the '{', and what follows the top level is not read.
        {"{\"a\":1] [2]", true,
         root + "\r\n\t\t\t<a>1</a>\r\n\t\t</_object_>\r\n\t\t<_object_>\r\n\t\t\t"
                "<_object_>2</_object_>\r\n\t\t</_object_>"},
        {"{\r\n\t\"s\" : \"q\\\"t\",\n \"n\": NULL}", true,
         root + "\r\n\t\t\t<s>q&quot;t</s>\r\n\t\t\t<n />\r\n\t\t</_object_>"},
        // Without a colon the key stays empty and closes its object; the 1 is read one level up.
        {"{\"a\" 1}", true, root + "\r\n\t\t\t<a></a>\r\n\t\t</_object_>\r\n\t\t<_object_>1</_object_>"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        const Reading read = ReadJson(c.text);
        EXPECT_EQ(read.parsed, c.parsed);
        EXPECT_EQ(read.xml, "\r\n\t<_object_>" + c.xml + end);
    }

    // A bad token shows its surroundings, and deep nesting stops the reading.
    std::string text = "[";
    for (int i = 0; i < 40; i++) text += std::to_string(i) + ",";
    text += "oops,1]";
    Reading read = ReadJson(text);
    EXPECT_FALSE(read.parsed);
    // 32 tokens before (16 numbers and 16 commas), the bad one, then 32 behind (only 3 are there).
    std::string want;
    for (int i = 24; i < 40; i++) want += std::to_string(i) + "\n,\n";
    want += "oops\n,\n1\n]\n# bad JSON token: 'oops'\n";
    EXPECT_EQ(read.said, want);

    read = ReadJson(std::string(100000, '[') + "1" + std::string(100000, ']'));
    EXPECT_FALSE(read.parsed);
    EXPECT_EQ(read.said, "# JSON nested deeper than 400 levels, reading stops\n");

    // A file of JSON.
    Write("engines.json", "{\"engine\": {\"name\": \"Vesko & co\", \"depth\": 3}}");
    clsXML document;
    EXPECT_TRUE(document.LoadJson(Path("engines.json").c_str()));
    EXPECT_EQ(document.GetValue("engine/name", ""), clsString("Vesko &amp; co"));
    EXPECT_EQ(document.GetValue("_object_/engine/depth", ""), clsString("3"));
    testing::internal::CaptureStdout();
    EXPECT_FALSE(document.LoadJson(Path("none.json").c_str()));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "# file not found: " + Path("none.json") + "\n");
    EXPECT_EQ(document.Children.Count, 1); // an empty root element
}
