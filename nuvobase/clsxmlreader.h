// clsXMLReader: the token walk behind clsXML::Parse, with the directives that read other files.
#pragma once

#include "nuvobase/clscollection.h"
#include "nuvobase/clsstrings.h"
#include "nuvobase/clsxml.h"

namespace nuvobase {

// Limits that keep hostile input finite. They are shared by a text and every file it pulls in.
struct clsXMLLimits {
    static constexpr int MaxLevels = 500;        // element nesting, counted through included files
    static constexpr int MaxIncludeDepth = 8;    // files pulled in by files pulled in ... (cycles end here)
    static constexpr int MaxIncludedFiles = 256; // files read by the directives of one text
    static constexpr int64_t MaxCopiedNodes = 1000000; // nodes cloned by nv:class, which can double a tree

    int IncludedFiles = 0;
    int64_t CopiedNodes = 0;
    bool LevelsReported = false;
};

class clsXMLReader {
public:
    // ParseChildren and ParseElement give Success, or the token position where reading stopped.
    static constexpr int Success = -1;

    // path: the file the text came from. level: the nesting of the node the text is read into.
    clsXMLReader(const clsString& path, int level, int includeDepth, clsXMLLimits& limits);

    // Reads text into root, keeping the children it has, and resolves the nv:class references when the
    // text was read to the end. Returns the tokens consumed or the failure position; failed tells which.
    int Read(clsXML& root, const clsString& text, bool& failed);

    // Reads tokens into node until its closing tag or the end of the tokens.
    int ParseChildren(clsXML* node);
    // Reads one tag into node, then its children. incomplete: the tag itself could not be read, so the
    // node holds nothing worth keeping.
    int ParseElement(clsXML* node, bool& incomplete);

private:
    clsCStrings Tokens;
    int Position = 0;
    clsString Path;
    int Level;
    int IncludeDepth;
    clsXMLLimits& Limits;
    clsPCollection<clsXML::clsMergeClass> Classes;

    const clsString& TokenAt(int index) const;
    void ReadAttributes(clsXML* node, const clsString& tag, clsStrings& directives);
    // Moves the children of node into parent and deletes node.
    void Dissolve(clsXML* node, clsXML* parent);
    // Forgets the nv:class references whose target lies in the subtree of node, before it is deleted.
    void ForgetTargets(const clsXML* node);
    void ResolveClasses(clsXML& root);

    // Directives (clsxmldirectives.cpp).
    void ApplyDirective(clsXML* node, const clsString& directive, const clsString& items);
    void AddClass(clsXML* node, const clsString& item);
    // Reads one "file|option" item into target: a table of a form description, or XML without its root.
    bool ReadItem(clsXML& target, const clsString& item);
};

// Adds a "field" child with the attributes id and type for each data field of the table named in option
// ("table=name") of a form description.
void ReadFormTable(clsXML& target, const clsString& text, const clsString& option);

} // namespace nuvobase
