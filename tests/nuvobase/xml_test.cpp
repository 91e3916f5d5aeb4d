// clsXML: reading, writing, searching, and the directives through real files.
#include <gtest/gtest.h>

#include <string>

#include "nuvobase/clsxml.h"
#include "rows.h"
#include "temp_folder.h"

using nuvobase::clsString;
using nuvobase::clsXML;
using nuvobase::clsXMLCollection;
using nuvobase_test::Bytes;
using nuvobase_test::CheckRows;

namespace {

// The text of what the document makes of text.
std::string Written(const char* text) {
    clsXML document;
    document.Parse(text, "");
    return Bytes(document.ToText());
}

} // namespace

TEST(Xml, ReadWriteBackMismatchedTagsAndSearches) {
    // Text makes a text element, whose children are written behind its line; unclosed elements are kept,
    // an unfinished tag is not.
    CheckRows<std::string>(
        {ROW(Written("<a><b/></a>"), "<a>\r\n\t<b/>\r\n</a>\r\n"),
         ROW(Written("<a>x<b/>y</a>"), "<a>xy</a>\r\n\t<b/>\r\n"),
         ROW(Written("<r><a nv:null=\"true\"><b/><c/></a></r>"), "<r>\r\n\t<b/>\r\n\t<c/>\r\n</r>\r\n"),
         ROW(Written("<a><![CDATA[x<y & z]]></a>"), "<a>x&lt;y &amp; z</a>\r\n"),
         ROW(Written("<!-- a  note --><a/>"), "<!-- a note -->\r\n<a/>\r\n"),
         ROW(Written("<?xml version=\"1.0\"?><a k=\"x &amp; y\"/>"),
             "<?xml version=\"1.0\"?>\r\n<a k=\"x &amp;amp; y\"/>\r\n"),
         ROW(Written("\xEF\xBB\xBF<a\tk=v\r\nw='x  y' ? k=\"2\">"), "<a k=\"v\" w=\"x  y\" k=\"2\" />\r\n"),
         ROW(Written("<a k='it''s x'/>"), "<a k=\"it&apos;s x\"/>\r\n"),
         ROW(Written("<a><b>"), "<a>\r\n\t<b />\r\n</a>\r\n"), ROW(Written("<a"), "")});

    // A mismatched closing tag stops the reading and keeps the tree.
    clsXML document;
    bool failed = false;
    // Tokens: < r > < a > < b/ > < /c > ...; the mismatch is noticed behind the '>' of </c>.
    EXPECT_EQ(document.Parse("<r><a><b/></c><d/></r>", "", &failed), 12);
    EXPECT_TRUE(failed);
    EXPECT_EQ(Bytes(document.ToText()), "<r>\r\n\t<a>\r\n\t\t<b/>\r\n\t</a>\r\n</r>\r\n");
    EXPECT_EQ(document.Parse("<r><a/></r><s/>", "", &failed), 12); // every token
    EXPECT_FALSE(failed);

    // Searches.
    clsXML tree;
    tree.Parse("<T><Engines><E NAME='one' id='1'><Depth>4</Depth></E><e id='2'><b/></e></Engines>"
               "<settings><depth>7</depth></settings></T>",
               "");
    clsXML* engines = tree.FindDeep("engines");
    ASSERT_NE(engines, nullptr);
    EXPECT_EQ(engines->ChildAt(0)->GetAttribute("name"), clsString("one"));
    EXPECT_EQ(tree.FindDeep("B"), engines->ChildAt(1)->ChildAt(0));
    EXPECT_EQ(tree.FindByAttribute("ID", "2"), engines->ChildAt(1));
    CheckRows<std::string>({
        TEXT(tree.GetValue("t/settings/depth", "x"), "7"),
        TEXT(tree.GetValue("depth", "x"), "4"), // the first depth, depth first
        TEXT(tree.GetValue("settings/missing", "x"), "x"),
        TEXT(tree.FindPath("engines", "id", "2")->Name, "e"),
        TEXT(tree.FindPath("engines/", "", "")->Name, "Engines"), // an empty piece ends the walk
    });
    clsXMLCollection found;
    EXPECT_EQ(tree.FindAll("e", found), 2);
    EXPECT_EQ(tree.FindAll("depth", found), 4);

    clsXML copy;
    copy.CopyChildren(tree);
    EXPECT_EQ(Bytes(copy.ToText()), Bytes(tree.ToText()));
    EXPECT_EQ(copy.FindDeep("b")->Parent->Parent->Parent->Parent, &copy);
}

// The directives, through files in a fresh folder.
class XmlFiles : public nuvobase_test::TempFolder {
protected:
    // Loads the file; returns the tree as text, and what went to the output in said.
    std::string Load(const std::string& name, std::string& said) const {
        clsXML document;
        testing::internal::CaptureStdout();
        document.LoadFile(Path(name).c_str());
        said = testing::internal::GetCapturedStdout();
        return Bytes(document.ToText());
    }
};

TEST_F(XmlFiles, IncludeMergeUpdateClassBadReferencesAndFormTables) {
    std::filesystem::create_directories(Path("sub"));
    Write("sub/engines.xml", "<root><e id='a' depth='3'/><e id='b'/></root>");
    Write("sub/extra.xml", "<root><e id='a' time='5'/><n id='new'/></root>");
    Write("main.xml", "<t><list nv:include='sub/engines.xml'/>"
                      "<m id='m'><e id='a'/></m>"
                      "<m2 id='m2' nv:merge='sub/extra.xml'/><u id='u' nv:update='sub/extra.xml'/>"
                      "<base><opt k='1'/></base><c own='2' nv:class='t/base'/></t>");
    std::string said;
    EXPECT_EQ(Load("main.xml", said),
              "<t>\r\n\t<list>\r\n\t\t<e id=\"a\" depth=\"3\"/>\r\n\t\t<e id=\"b\"/>\r\n\t</list>\r\n"
              "\t<m id=\"m\">\r\n\t\t<e id=\"a\"/>\r\n\t</m>\r\n"
              "\t<m2 id=\"m2\">\r\n\t\t<e id=\"a\" time=\"5\"/>\r\n\t\t<n id=\"new\"/>\r\n\t</m2>\r\n"
              "\t<u id=\"u\" />\r\n\t<base>\r\n\t\t<opt k=\"1\"/>\r\n\t</base>\r\n"
              "\t<c own=\"2\">\r\n\t\t<opt k=\"1\"/>\r\n\t</c>\r\n</t>\r\n");
    EXPECT_EQ(said, "");
    // An update changes only the element whose id matches, and adds its children.
    Write("update.xml", "<root><e id='a' time='5'><x/></e><n id='new'/></root>");
    Write("updated.xml", "<t><e id='a' nv:update='update.xml'/></t>");
    EXPECT_EQ(Load("updated.xml", said),
              "<t>\r\n\t<e id=\"a\" id=\"a\" time=\"5\">\r\n\t\t<x/>\r\n\t</e>\r\n</t>\r\n");

    // Bad references end the reading.
    Write("self.xml", "<r><s nv:include='self.xml,self.xml'/></r>");
    Write("missing.xml", "<r><s nv:merge='nothing.xml'/></r>");
    const std::string tree = Load("self.xml", said);
    EXPECT_NE(said.find("# xml files pulled in deeper than 8 levels, not read: " + Path("self.xml")),
              std::string::npos);
    EXPECT_EQ(tree.substr(0, 18), "<r>\r\n\t<s>\r\n\t\t<s>\r\n");
    EXPECT_EQ(Load("missing.xml", said), "<r>\r\n\t<s />\r\n</r>\r\n");
    EXPECT_EQ(said, "# file not found: " + Path("nothing.xml") + "\n");
    EXPECT_EQ(Load("none.xml", said), "");
    EXPECT_EQ(said, "# file not found: " + Path("none.xml") + "\n");

    std::string deep;
    for (int i = 0; i < 100000; i++) deep += "<a>";
    Write("deep.xml", deep);
    Load("deep.xml", said);
    EXPECT_EQ(said.rfind("# xml nested deeper than 500 levels", 0), 0u);

    // A table of a form file.
    Write("form.dfm",
          "object Form1: TForm1\r\n  object Players: TTable\r\n"
          "    object PlayersID: TAutoIncField\r\n      FieldName = 'ID'\r\n      FieldKind = fkData\r\n"
          "    end\r\n    object PlayersSum: TFloatField\r\n      FieldName = 'Sum'\r\n"
          "      FieldKind = fkCalculated\r\n    end\r\n    object PlayersName: TStringField\r\n"
          "      FieldName = 'Name'\r\n      FieldKind = fkData\r\n    end\r\n  end\r\n"
          "  object Games: TTable\r\n  end\r\nend\r\n");
    Write("form.xml", "<t><table nv:include='form.dfm|table=Players'/></t>");
    EXPECT_EQ(Load("form.xml", said), "<t>\r\n\t<table>\r\n\t\t<field id=\"ID\" type=\"integer\" />\r\n"
                                      "\t\t<field id=\"Name\" type=\"string\" />\r\n\t</table>\r\n</t>\r\n");
}
