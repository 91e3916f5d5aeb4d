// clsJSON: a tolerant reader of JSON into a tree, which it renders as XML text for clsXML::LoadJson.
// Arrays and objects are alike in the tree: a node with children. A value in a list must start with a
// digit (or be null, true or false); the value behind a colon is taken as it stands.
#pragma once

#include "nuvobase/clscollection.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nuvobase {

class clsJSON {
public:
    // Deeper nesting stops the reading (with a "# " remark), so that the recursion stays on the stack.
    static constexpr int MaxDepth = 400;
    // Tokens shown on either side of a bad one.
    static constexpr int ReportedContext = 32;

    clsString Name;               // the key with its quotes; empty for an unnamed node
    clsString Value;              // the scalar text, a string with its quotes; empty for an object or array
    clsCollection<clsJSON> Items; // the children in input order, owned

    clsJSON() = default;
    clsJSON(const clsJSON&) = delete;
    clsJSON& operator=(const clsJSON&) = delete;
    virtual ~clsJSON();

    // Builds the tree of text under this node. False after a bad token (shown on the output with the
    // tokens around it) or too deep a nesting; the tree then holds what was read before.
    bool Parse(const clsString& text);
    // Adds a child and returns it: a member named key (its quotes are added), or an element of an array
    // for an empty key. value is the child's JSON text as it stands: a number, true, false, null, or a
    // text made by Quoted; empty for a child that gets items of its own.
    clsJSON& Add(const clsString& key, const clsString& value = clsString());
    // JSON text of this node: its value, or its items as an object when they have names, else as an
    // array; nested items are indented by two blanks a level, lines end in LF.
    clsString ToJsonText() const;
    // text as a JSON string, in double quotes with its quotes, backslashes and control bytes escaped.
    static clsString Quoted(const clsString& text);

    // XML text of this node and all below it, each line begun by CR LF and indent plus one TAB per level.
    // indent is given back as it came.
    clsString ToXmlText(clsString& indent) const;

private:
    // Reads tokens from position into this node until its closing bracket or the end.
    bool ReadItems(const clsCStrings& tokens, int& position, int depth);
    clsJSON* AddItem(const clsString& key);
    void WriteXml(clsString& out, clsString& indent) const;
    void WriteJson(clsString& out, int depth) const;
};

} // namespace nuvobase
