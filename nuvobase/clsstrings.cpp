#include "nuvobase/clsstrings.h"

namespace nuvobase {

clsStrings::~clsStrings() = default;

int clsStrings::Split(const clsString& text, char separator, int mode, bool trim, bool quoted) {
    const char* bytes = text.Text();
    const int size = text.Size();
    auto entryStart = [&](int at) {
        while (trim && at < size && bytes[at] == ' ') at++;
        return at;
    };
    bool inQuotes = false;
    int start = entryStart(0);
    for (int at = start;; at++) {
        if (at == size || (bytes[at] == separator && !(quoted && inQuotes))) {
            AddEntry(text.Mid(start, at - start), mode, trim);
            if (at == size) break;
            start = entryStart(at + 1);
            at = start - 1;
        } else if (bytes[at] == '\'') {
            inQuotes = !inQuotes;
        }
    }
    return Count;
}

void clsStrings::AddEntry(clsString entry, int mode, bool trim) {
    if (trim) entry.Trim(' ', true);
    clsString name;
    bool named = true;
    switch (mode) {
    case SplitNameIsValue:
        name = entry;
        break;
    case SplitNameValue:
        name = entry.BeforeChar('=');
        entry = entry.AfterChar('=');
        break;
    case SplitNamedLine: {
        const int mark = entry.FindOutsideQuotes("=", 0, '\'');
        named = mark >= 0;
        if (named) name = entry.Left(mark);
        break;
    }
    default:
        named = false;
        break;
    }
    if (trim) {
        name.Trim(' ', true);
        entry.Trim(' ', true);
    }
    if (named)
        Add(name, new clsString(entry));
    else
        AddLine(entry);
}

clsString clsStrings::Join(const clsString& separator, bool withNames) const {
    clsString text;
    bool first = true;
    for (int i = 0; i < Count; i++) {
        const Node* node = Nodes[i];
        if (!node || !node->Value) continue;
        if (!first) text.Append(separator);
        first = false;
        if (withNames && node->Key) {
            text.Append(node->Key->GetString());
            text.Append('=');
        }
        text.Append(*node->Value);
    }
    return text;
}

int clsStrings::AddLine(const clsString& text) {
    return AddValue(new clsString(text));
}

int clsStrings::SetValue(const clsString& name, const clsString& value, bool replace) {
    return replace ? Set(name, new clsString(value)) : Add(name, new clsString(value));
}

clsString clsStrings::GetValue(const clsString& name) const {
    return GetAt(Find(name));
}

clsString clsStrings::GetAt(int index) const {
    const clsString* value = ValueAt(index);
    return value ? *value : clsString();
}

clsString clsStrings::GetName(int index) const {
    const clsVariant* key = KeyAt(index);
    return key ? key->GetString() : clsString();
}

} // namespace nuvobase
