// clsXMLReader: the token walk of the XML reader.
#include "nuvobase/clsxmlreader.h"

#include "nuvobase/clstsafeoutput.h"

namespace nuvobase {

namespace {

const char* const TagOpen = "<";
const char* const TagClose = ">";
const char* const DataOpen = "<![CDATA[";
const char* const DataClose = "]]>";
const char* const DataMark = "![CDATA[";
const char* const NullDirective = "nv:null";
const char* const Directives[] = {"nv:include", "nv:merge", "nv:update", "nv:class"};

bool IsDirective(const clsString& name) {
    for (const char* directive : Directives)
        if (name == directive) return true;
    return false;
}

bool IsInside(const clsXML* node, const clsXML* ancestor) {
    for (; node; node = node->Parent)
        if (node == ancestor) return true;
    return false;
}

int64_t CountNodes(const clsXML& node) {
    int64_t count = 1;
    for (int i = 0; i < node.Children.Count; i++)
        if (const clsXML* child = node.ChildAt(i)) count += CountNodes(*child);
    return count;
}

} // namespace

clsXMLReader::clsXMLReader(const clsString& path, int level, int includeDepth, clsXMLLimits& limits)
    : Path(path), Level(level), IncludeDepth(includeDepth), Limits(limits) {}

const clsString& clsXMLReader::TokenAt(int index) const {
    const clsString* token = Tokens.At(index);
    return token ? *token : EmptyString;
}

int clsXMLReader::Read(clsXML& root, const clsString& text, bool& failed) {
    clsString prepared(text);
    prepared.StripUtf8Bom();
    // Line ends and tabs are blanks; Squeeze then folds runs of them outside quotes.
    for (char* c = prepared.Data(); c && *c; c++)
        if (*c == '\t' || *c == '\n' || *c == '\r') *c = ' ';
    prepared.Squeeze();
    prepared.Tokenise("<>", Tokens, false, '"', 0, DataOpen, DataClose);
    Position = 0;
    const int result = ParseChildren(&root);
    failed = result != Success;
    if (failed) return result;
    ResolveClasses(root);
    return Position;
}

int clsXMLReader::ParseChildren(clsXML* node) {
    while (Position < Tokens.Count) {
        const clsString& token = TokenAt(Position++);
        if (token.IsEmpty()) continue;
        // Text, and data sections, which arrive as plain tokens (one holding a '<' among them).
        if (!(token == TagOpen)) {
            node->Text.Append(token);
            if (node->Type != clsXML::TypeDocument) node->Type = clsXML::TypeText;
            continue;
        }
        const clsString& tag = TokenAt(Position);
        if (tag.Text()[0] == '/') {
            Position++;
            if (TokenAt(Position) == TagClose) Position++;
            clsString name = tag.From(1);
            name.Trim();
            if (name.IsEmpty() || name == node->Name) return Success;
            return Position;
        }
        Position--;
        clsXML* child = new clsXML(node, clsXML::TypeElement);
        bool incomplete = false;
        const int result = ParseElement(child, incomplete);
        if (child->Name.Text()[0] == '?') child->Name.DeleteLeft(1);
        if (incomplete) {
            ForgetTargets(child);
            delete child;
        } else if (child->GetAttribute(NullDirective) == "true") {
            Dissolve(child, node);
        } else {
            node->AdoptChild(child);
        }
        if (result != Success) return result;
    }
    return Success;
}

int clsXMLReader::ParseElement(clsXML* node, bool& incomplete) {
    incomplete = true;
    Position++; // the '<'
    clsString tag;
    if (Position < Tokens.Count && !(TokenAt(Position) == TagOpen) && !(TokenAt(Position) == TagClose))
        tag = TokenAt(Position++);
    if (!(TokenAt(Position) == TagClose)) return Position;
    Position++;

    if (tag.Text()[0] == '!') {
        node->Name = tag;
        node->Type = tag.Compare(DataMark, clsString::CompareExact) ? clsXML::TypeData : clsXML::TypeComment;
        incomplete = false;
        return Success;
    }
    bool hasChildren = true;
    const char last = tag.IsEmpty() ? 0 : tag.Text()[tag.Size() - 1];
    if (last == '?' || last == '/') {
        node->Type = last == '?' ? clsXML::TypeDeclaration : clsXML::TypeEmpty;
        tag.SetLength(tag.Size() - 1);
        hasChildren = false;
    }
    clsStrings directives;
    ReadAttributes(node, tag, directives);
    if (directives.Count > 0) {
        // What a directive brings comes from its files: the element itself has no children.
        node->Type = clsXML::TypeElement;
        incomplete = false;
        for (int i = 0; i < directives.Count; i++)
            ApplyDirective(node, directives.GetName(i), directives.GetAt(i));
        return Success;
    }
    if (!hasChildren) {
        incomplete = false;
        return Success;
    }
    if (Level >= clsXMLLimits::MaxLevels) {
        if (!Limits.LevelsReported)
            StdOut.Write(clsString("# xml nested deeper than ") + clsString(clsXMLLimits::MaxLevels) +
                             " levels, reading stops: " + Path,
                         true);
        Limits.LevelsReported = true;
        return Position;
    }
    incomplete = false;
    Level++;
    const int result = ParseChildren(node);
    Level--;
    return result;
}

void clsXMLReader::ReadAttributes(clsXML* node, const clsString& tag, clsStrings& directives) {
    clsCStrings words;
    tag.Tokenise(" ", words, false, '\'');
    bool named = false;
    for (int i = 0; i < words.Count; i++) {
        const clsString& word = *words.Items[i];
        if (word.IsEmpty() || word == " ") continue;
        if (!named) {
            node->Name = word;
            named = true;
            continue;
        }
        if (word == "?") continue;
        const clsString name = word.BeforeChar('=');
        clsString value = word.AfterChar('=');
        value.Unquote();
        if (IsDirective(name))
            directives.SetValue(name, value, false);
        else
            node->Attributes.SetValue(name, value, false);
    }
}

void clsXMLReader::Dissolve(clsXML* node, clsXML* parent) {
    for (int i = 0; i < node->Children.Count; i++)
        if (clsXML* child = node->ChildAt(i)) {
            node->Children.Remove(i, false, true); // the child leaves without being deleted
            parent->AdoptChild(child);
        }
    // Its own references go with it; those of its children moved with them.
    for (int i = 0; i < Classes.Count; i++)
        if (Classes.Items[i]->Target == node) Classes.Items[i]->Target = nullptr;
    delete node;
}

void clsXMLReader::ForgetTargets(const clsXML* node) {
    for (int i = 0; i < Classes.Count; i++)
        if (IsInside(Classes.Items[i]->Target, node)) Classes.Items[i]->Target = nullptr;
}

void clsXMLReader::ResolveClasses(clsXML& root) {
    for (int i = 0; i < Classes.Count; i++) {
        const clsXML::clsMergeClass& reference = *Classes.Items[i];
        clsXML* target = reference.Target;
        if (!target) continue;
        const clsXML* source = root.FindPath(reference.Path, reference.Attribute, reference.Value);
        if (!source) continue;
        Limits.CopiedNodes += CountNodes(*source);
        if (Limits.CopiedNodes > clsXMLLimits::MaxCopiedNodes) {
            StdOut.Write(clsString("# xml classes copy too many nodes, stopped at: ") + reference.Source,
                         true);
            return;
        }
        for (int a = 0; a < source->Attributes.Count; a++) {
            const clsString name = source->Attributes.GetName(a);
            if (target->Attributes.Find(name) < 0)
                target->Attributes.SetValue(name, source->Attributes.GetAt(a));
        }
        target->Text = source->Text;
        target->CopyChildren(*source);
    }
}

} // namespace nuvobase
