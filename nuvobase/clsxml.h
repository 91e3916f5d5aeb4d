// clsXML: a small in-memory XML tree with its own tolerant reader and writer.
//
// The reader is a token walk over text cut at '<' and '>'; it decodes no entities, accepts unclosed
// elements and stops at a mismatched closing tag, keeping what it built. Elements and attributes named
// "nv:..." are directives that pull in other files:
//   nv:include="a.xml,b.xml"   the content of the files (without their root tag) becomes children here
//   nv:merge="a.xml"           the files' nodes are merged into this one by their "id" attribute
//   nv:update="a.xml"          the same, but top-level nodes without a match are not added
//   nv:class="path:attr=value" this node inherits from the node found by FindPath once the text is read
//   nv:null="true"             the element dissolves: its children join its parent
// A "file.dfm|table=name" item reads the fields of a table from a form description instead.
// Values are written with ToXml on output only, so an ampersand read and written again is encoded twice.
#pragma once

#include <cstdint>

#include "nuvobase/clscollection.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nuvobase {

class clsXML;

// A result list of nodes that does not own them.
class clsXMLCollection : public clsPCollection<clsXML> {
public:
    clsXMLCollection() : clsPCollection<clsXML>(false) {}
};

class clsXML {
public:
    enum NodeTypes : int32_t {
        TypeDocument = 0,    // no tag of its own, only children
        TypeElement = 1,     // <name> children </name>, or <name /> without children
        TypeEmpty = 2,       // <name/>
        TypeText = 3,        // <name>text</name> on one line
        TypeDeclaration = 4, // <?name?>
        TypeComment = 5,     // <!--name-->
        TypeData = 6,        // <![CDATA[name]]>
        TypeCount = 7,
    };

    // One pending nv:class reference, resolved when the text has been read.
    struct clsMergeClass {
        clsXML* Target = nullptr; // the node that inherits; null once that node is gone
        clsString Source;         // the reference as written
        clsString Path;           // before the first ':'
        clsString Attribute;      // up to the '=' behind it
        clsString Value;          // the rest
    };

    clsXML* Parent = nullptr; // not owned; null at the root
    int32_t Type = TypeDocument;
    clsString Name;                 // the element name; for a comment the whole tag text
    clsStrings Attributes;          // in file order, duplicates kept
    clsString Text;                 // text content
    clsCollection<clsXML> Children; // owned, keyed by Name

    // Throws std::invalid_argument("invalid xml type") for a type outside TypeDocument..TypeData.
    explicit clsXML(clsXML* parent = nullptr, int type = TypeDocument, const clsString& name = EmptyString);
    clsXML(const clsXML&) = delete;
    clsXML& operator=(const clsXML&) = delete;
    virtual ~clsXML();

    // Reads and parses a file. When nothing could be read, "# file not found: " and the path go to the
    // output and the tree ends up empty. True when the file was read and its text parsed to the end.
    virtual bool LoadFile(const clsString& path);
    // Writes ToText(), replacing the file. False if it cannot be written.
    virtual bool SaveFile(const clsString& path) const;

    // Replaces the children by the nodes of text; path names the file the text came from, for the
    // directives' relative names. Returns the number of tokens consumed, or the token index of a closing
    // tag that did not match (the nodes built before it stay). failed, when given, tells the two apart.
    int Parse(const clsString& text, const clsString& path, bool* failed = nullptr);
    // The subtree as text: one tag per line, a TAB per level, every line ended by CR LF.
    clsString ToText() const;

    // The value of the first attribute of that name, ignoring case; else empty.
    clsString GetAttribute(const clsString& name) const;
    // Creates a child under its name and returns it.
    clsXML* AddChild(int type, const clsString& name);
    // A deep copy (type, name, attributes, text, children) whose Parent is parent. It is not added to
    // parent's children.
    clsXML* Clone(clsXML* parent) const;
    // Appends clones of the children of source.
    void CopyChildren(const clsXML& source);
    // For each child c of source: the node FindByAttribute(attribute, c's value) takes c's attributes
    // (appended) and text, and c's children are merged into it the same way. A child without a match is
    // cloned in, unless updateOnly (which holds for this level only).
    void Merge(const clsXML& source, const clsString& attribute, bool updateOnly);

    // This node or the first descendant, depth first, named name (ignoring case); else null.
    clsXML* FindDeep(const clsString& name);
    // Walks the pieces of path ("a/b/c"): a piece naming the current node keeps it, otherwise the first
    // child subtree holding it moves there. Null when a piece is not found; an empty piece ends the walk.
    // With an attribute, the result is FindByAttribute(attribute, value) from the node reached.
    clsXML* FindPath(const clsString& path, const clsString& attribute, const clsString& value);
    // Text of FindPath(path), else fallback.
    clsString GetValue(const clsString& path, const clsString& fallback);
    // This node or the first descendant, depth first, whose attribute equals value (ignoring case).
    clsXML* FindByAttribute(const clsString& attribute, const clsString& value);
    // Appends this node and every descendant named name. An owning list is left untouched, as it would
    // delete nodes of the tree. Returns the count of list.
    int FindAll(const clsString& name, clsXMLCollection& list);

    // The child at index, null for a hole or an index out of range.
    clsXML* ChildAt(int index) const { return Children.ValueAt(index); }
    // Adds node (whose Parent becomes this) to the children under its name.
    void AdoptChild(clsXML* node);

private:
    void WriteText(clsString& out, const clsString& indent) const;
};

} // namespace nuvobase
