// clsXMLReader: the nv: directives, which pull other files into the tree being read.
#include <sys/stat.h>

#include "nuvobase/clstsafeoutput.h"
#include "nuvobase/clsxmlreader.h"

namespace nuvobase {

namespace {

const char* const IncludeDirective = "nv:include";
const char* const UpdateDirective = "nv:update";
const char* const ClassDirective = "nv:class";
const char* const MergeAttribute = "id";
const char* const TableExtension = "dfm";

// The folder part of path, with its separator; empty for a bare name.
clsString FolderOf(const clsString& path) {
    const int slash = path.FindLast('/');
    return slash < 0 ? clsString() : path.Left(slash + 1);
}

bool IsTableFile(const clsString& file) {
    const int dot = file.FindLast('.');
    return dot > file.FindLast('/') && file.From(dot + 1) == TableExtension;
}

// Cuts the first tag (up to the first '>') and the last tag (from the last '<'): the root element of an
// included file does not appear.
void CutRootTags(clsString& text) {
    const int first = text.Find('>');
    if (first >= 0) text.DeleteLeft(first + 1);
    const int last = text.FindLast('<');
    if (last >= 0) text.SetLength(last);
}

} // namespace

void clsXMLReader::ApplyDirective(clsXML* node, const clsString& directive, const clsString& items) {
    clsStrings list;
    list.Split(items, ',', clsStrings::SplitPlain, true);
    for (int i = 0; i < list.Count; i++) {
        const clsString item = list.GetAt(i);
        if (directive == ClassDirective) {
            AddClass(node, item);
        } else if (directive == IncludeDirective) {
            ReadItem(*node, item);
        } else {
            clsXML source;
            if (ReadItem(source, item)) node->Merge(source, MergeAttribute, directive == UpdateDirective);
        }
    }
}

void clsXMLReader::AddClass(clsXML* node, const clsString& item) {
    auto* reference = new clsXML::clsMergeClass;
    reference->Target = node;
    reference->Source = item;
    reference->Path = item.BeforeChar(':');
    const clsString rest = item.AfterChar(':');
    reference->Attribute = rest.BeforeChar('=');
    reference->Value = rest.AfterChar('=');
    Classes.Add(reference);
}

bool clsXMLReader::ReadItem(clsXML& target, const clsString& item) {
    const clsString file = item.BeforeChar('|');
    const clsString option = item.AfterChar('|');
    const clsString path = FolderOf(Path).PathJoin(file.Text());
    if (IncludeDepth >= clsXMLLimits::MaxIncludeDepth) {
        StdOut.Write(clsString("# xml files pulled in deeper than ") +
                         clsString(clsXMLLimits::MaxIncludeDepth) + " levels, not read: " + path,
                     true);
        return false;
    }
    if (++Limits.IncludedFiles > clsXMLLimits::MaxIncludedFiles) {
        StdOut.Write(clsString("# xml pulls in more than ") + clsString(clsXMLLimits::MaxIncludedFiles) +
                         " files, not read: " + path,
                     true);
        return false;
    }
    // Only plain files: a device or a pipe named here could be read without end.
    struct stat status;
    clsString text;
    if (stat(path.Text(), &status) != 0 || !S_ISREG(status.st_mode) || text.LoadFromFile(path.Text()) <= 0) {
        StdOut.Write(clsString("# file not found: ") + path, true);
        return false;
    }
    text.StripUtf8Bom();
    if (IsTableFile(path)) {
        ReadFormTable(target, text, option);
        return true;
    }
    CutRootTags(text);
    clsXMLReader reader(path, Level, IncludeDepth + 1, Limits);
    bool failed = false;
    reader.Read(target, text, failed);
    return true;
}

void ReadFormTable(clsXML& target, const clsString& text, const clsString& option) {
    constexpr int FieldSuffixLength = 5; // the "Field" that ends a field class name
    const clsString wanted = clsString("object ") + option.AfterChar('=').Trim() + ": TTable";
    clsStrings lines;
    lines.Split(text, '\n');
    bool inTable = false, inField = false;
    clsStrings properties;
    for (int i = 0; i < lines.Count; i++) {
        clsString line = lines.GetAt(i);
        line.TrimRight('\r');
        line.Trim();
        if (!inTable) {
            inTable = line == wanted;
            continue;
        }
        if (!inField) {
            if (line == "end") return;
            if (!line.Compare("object", clsString::CompareStartsWith)) continue;
            // "object Table1Name: TStringField" is a field of type "string".
            clsString type = line.AfterChar(':').Trim();
            type = type.Size() > FieldSuffixLength ? type.Mid(1, type.Size() - 1 - FieldSuffixLength)
                                                   : clsString();
            type.Lower();
            if (type == "autoinc") type = "integer";
            if (type == "bcd") type = "currency";
            properties.Clear();
            properties.SetValue("FieldType", type);
            inField = true;
            continue;
        }
        if (line == "end") {
            if (properties.GetValue("FieldKind") == "fkData") {
                clsXML* field = target.AddChild(clsXML::TypeElement, "field");
                field->Attributes.SetValue("id", properties.GetValue("FieldName"));
                field->Attributes.SetValue("type", properties.GetValue("FieldType"));
            }
            inField = false;
            continue;
        }
        clsString value = line.AfterChar('=').Trim();
        properties.SetValue(line.BeforeChar('=').Trim(), value.Unquote());
    }
}

} // namespace nuvobase
