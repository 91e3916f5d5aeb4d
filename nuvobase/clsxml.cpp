// clsXML: the tree, its searches and its text form.
#include "nuvobase/clsxml.h"

#include <stdexcept>

#include "nuvobase/clstsafeoutput.h"
#include "nuvobase/clsxmlreader.h"

namespace nuvobase {

namespace {

const char* const LineEnd = "\r\n";
const char* const CommentOpen = "!--";
const char* const CommentClose = "--";
const char* const DataOpen = "![CDATA[";

// How a tag of each type opens and ends.
struct TagForm {
    const char* open;
    const char* close;
};
const TagForm TagForms[clsXML::TypeCount] = {
    {"", ""}, {"<", " />"}, {"<", "/>"}, {"<", ">"}, {"<?", "?>"}, {"<!--", "-->"}, {"<![CDATA[", "]]>"},
};

// The name as written between the markers: a comment or data tag read from a file holds its markers in
// its name, which are dropped here so that it is written back as it was read.
clsString MarkedName(const clsXML& node) {
    clsString name(node.Name);
    if (node.Type == clsXML::TypeComment && name.Compare(CommentOpen, clsString::CompareStartsWith)) {
        name.DeleteLeft(3);
        if (name.Compare(CommentClose, clsString::CompareEndsWith)) name.SetLength(name.Size() - 2);
    } else if (node.Type == clsXML::TypeData && name.Compare(DataOpen, clsString::CompareStartsWith)) {
        name.DeleteLeft(8);
    }
    return name;
}

} // namespace

clsXML::clsXML(clsXML* parent, int type, const clsString& name) : Parent(parent), Type(type), Name(name) {
    if (type < TypeDocument || type >= TypeCount) throw std::invalid_argument("invalid xml type");
}

clsXML::~clsXML() = default;

bool clsXML::LoadFile(const clsString& path) {
    clsString text;
    const bool read = text.LoadFromFile(path.Text()) > 0;
    if (!read) StdOut.Write(clsString("# file not found: ") + path, true);
    bool failed = false;
    Parse(text, path.ToForwardSlashes(), &failed);
    return read && !failed;
}

bool clsXML::SaveFile(const clsString& path) const {
    return ToText().SaveToFile(path.Text(), true);
}

int clsXML::Parse(const clsString& text, const clsString& path, bool* failed) {
    Children.Clear();
    clsXMLLimits limits;
    clsXMLReader reader(path, 0, 0, limits);
    bool stopped = false;
    const int position = reader.Read(*this, text, stopped);
    if (failed) *failed = stopped;
    return position;
}

clsString clsXML::ToText() const {
    clsString out;
    WriteText(out, EmptyString);
    return out;
}

void clsXML::WriteText(clsString& out, const clsString& indent) const {
    clsString childIndent(indent);
    if (Type != TypeDocument) {
        const bool hasChildren = Children.Count > 0;
        out.Append(indent).Append(TagForms[Type].open).Append(MarkedName(*this).ToXml());
        for (int i = 0; i < Attributes.Count; i++)
            out.Append(' ')
                .Append(Attributes.GetName(i))
                .Append("=\"")
                .Append(Attributes.GetAt(i).ToXml())
                .Append('"');
        if (Type == TypeElement && hasChildren)
            out.Append('>');
        else if (Type == TypeText)
            out.Append('>').Append(Text.ToXml()).Append("</").Append(Name.ToXml()).Append('>');
        else
            out.Append(TagForms[Type].close);
        out.Append(LineEnd);
        childIndent.Append('\t');
    }
    for (int i = 0; i < Children.Count; i++)
        if (const clsXML* child = ChildAt(i)) child->WriteText(out, childIndent);
    if (Type == TypeElement && Children.Count > 0)
        out.Append(indent).Append("</").Append(Name.ToXml()).Append('>').Append(LineEnd);
}

clsString clsXML::GetAttribute(const clsString& name) const {
    return Attributes.GetValue(name);
}

clsXML* clsXML::AddChild(int type, const clsString& name) {
    clsXML* child = new clsXML(this, type, name);
    AdoptChild(child);
    return child;
}

void clsXML::AdoptChild(clsXML* node) {
    node->Parent = this;
    if (Children.Add(node->Name, node) < 0) delete node;
}

clsXML* clsXML::Clone(clsXML* parent) const {
    clsXML* copy = new clsXML(parent, Type, Name);
    copy->Attributes = Attributes;
    copy->Text = Text;
    copy->CopyChildren(*this);
    return copy;
}

void clsXML::CopyChildren(const clsXML& source) {
    // Clones first, so that copying a node's own children (or an ancestor's) ends.
    clsPCollection<clsXML> clones(false);
    for (int i = 0; i < source.Children.Count; i++)
        if (const clsXML* child = source.ChildAt(i)) clones.Add(child->Clone(this));
    for (int i = 0; i < clones.Count; i++) AdoptChild(clones.Items[i]);
}

void clsXML::Merge(const clsXML& source, const clsString& attribute, bool updateOnly) {
    for (int i = 0; i < source.Children.Count; i++) {
        const clsXML* child = source.ChildAt(i);
        if (!child) continue;
        clsXML* found = FindByAttribute(attribute, child->GetAttribute(attribute));
        if (found) {
            for (int a = 0; a < child->Attributes.Count; a++)
                found->Attributes.SetValue(child->Attributes.GetName(a), child->Attributes.GetAt(a), false);
            found->Text = child->Text;
            found->Merge(*child, attribute, false);
        } else if (!updateOnly) {
            AdoptChild(child->Clone(this));
        }
    }
}

clsXML* clsXML::FindDeep(const clsString& name) {
    if (Name == name) return this;
    for (int i = 0; i < Children.Count; i++)
        if (clsXML* child = ChildAt(i))
            if (clsXML* found = child->FindDeep(name)) return found;
    return nullptr;
}

clsXML* clsXML::FindPath(const clsString& path, const clsString& attribute, const clsString& value) {
    clsXML* current = this;
    for (int position = 0; position >= 0;) {
        const clsString piece = path.NextWord('/', position);
        if (piece.IsEmpty()) break;
        if (current->Name == piece) continue;
        clsXML* found = nullptr;
        for (int i = 0; i < current->Children.Count && !found; i++)
            if (clsXML* child = current->ChildAt(i)) found = child->FindDeep(piece);
        if (!found) return nullptr;
        current = found;
    }
    return attribute.IsEmpty() ? current : current->FindByAttribute(attribute, value);
}

clsString clsXML::GetValue(const clsString& path, const clsString& fallback) {
    const clsXML* found = FindPath(path, EmptyString, EmptyString);
    return found ? found->Text : fallback;
}

clsXML* clsXML::FindByAttribute(const clsString& attribute, const clsString& value) {
    if (GetAttribute(attribute) == value) return this;
    for (int i = 0; i < Children.Count; i++)
        if (clsXML* child = ChildAt(i))
            if (clsXML* found = child->FindByAttribute(attribute, value)) return found;
    return nullptr;
}

int clsXML::FindAll(const clsString& name, clsXMLCollection& list) {
    if (list.Owner) return list.Count;
    if (Name == name) list.Add(this);
    for (int i = 0; i < Children.Count; i++)
        if (clsXML* child = ChildAt(i)) child->FindAll(name, list);
    return list.Count;
}

} // namespace nuvobase
