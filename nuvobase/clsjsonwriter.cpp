// clsJSON: building a tree in code and writing it as JSON text.
#include "nuvobase/clsjson.h"

#include <cstdio>

namespace nuvobase {

namespace {
constexpr int IndentBlanks = 2;
constexpr unsigned char FirstPrintable = 0x20;
} // namespace

clsJSON& clsJSON::Add(const clsString& key, const clsString& value) {
    clsJSON* item = new clsJSON;
    item->Name = key.IsEmpty() ? clsString() : Quoted(key);
    item->Value = value;
    Items.Add(item->Name, item);
    return *item;
}

clsString clsJSON::Quoted(const clsString& text) {
    clsString out("\"");
    for (const char* c = text.Text(); *c; ++c) {
        const unsigned char byte = static_cast<unsigned char>(*c);
        if (*c == '"' || *c == '\\') {
            out.Append('\\').Append(*c);
        } else if (byte < FirstPrintable) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", byte);
            out.Append(escape);
        } else {
            out.Append(*c);
        }
    }
    return out.Append('"');
}

clsString clsJSON::ToJsonText() const {
    clsString out;
    WriteJson(out, 0);
    return out;
}

void clsJSON::WriteJson(clsString& out, int depth) const {
    if (!Value.IsEmpty()) {
        out.Append(Value);
        return;
    }
    const clsJSON* first = Items.Count > 0 ? Items.ValueAt(0) : nullptr;
    const bool object = first == nullptr || !first->Name.IsEmpty();
    out.Append(object ? '{' : '[');
    bool any = false;
    for (int i = 0; i < Items.Count; ++i) {
        const clsJSON* item = Items.ValueAt(i);
        if (item == nullptr) continue;
        out.Append(any ? ",\n" : "\n");
        for (int blank = 0; blank < (depth + 1) * IndentBlanks; ++blank) out.Append(' ');
        if (object) out.Append(item->Name).Append(": ");
        item->WriteJson(out, depth + 1);
        any = true;
    }
    if (any) {
        out.Append('\n');
        for (int blank = 0; blank < depth * IndentBlanks; ++blank) out.Append(' ');
    }
    out.Append(object ? '}' : ']');
}

} // namespace nuvobase
