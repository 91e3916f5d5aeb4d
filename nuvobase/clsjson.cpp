// clsJSON: the token walk and the XML rendering.
#include "nuvobase/clsjson.h"

#include "nuvobase/asciichars.h"
#include "nuvobase/clstsafeoutput.h"

namespace nuvobase {

namespace {

const char* const UnnamedKey = "_object_";
const char* const Scalars[] = {"null", "true", "false"};
const char* const LineEnd = "\r\n";

bool IsScalar(const clsString& token) {
    if (IsAsciiDigit(token.Text()[0])) return true;
    for (const char* word : Scalars)
        if (token == word) return true;
    return false;
}

// Shows the tokens around a bad one, then the token itself.
void ReportBadToken(const clsCStrings& tokens, int bad) {
    for (int i = bad - clsJSON::ReportedContext; i <= bad + clsJSON::ReportedContext; i++)
        if (const clsString* token = tokens.At(i)) StdOut.Write(*token, true);
    StdOut.Write(clsString("# bad JSON token: ") + tokens.At(bad)->Quote('\''), true);
}

} // namespace

clsJSON::~clsJSON() = default;

bool clsJSON::Parse(const clsString& text) {
    clsCStrings tokens;
    text.Tokenise(":{[,]}", tokens, true, '"', '\\');
    // Line ends and tabs between tokens are blanks too, whichever line end the file has. Blank tokens go.
    int kept = 0;
    for (int i = 0; i < tokens.Count; i++) {
        clsString* token = tokens.Items[i];
        token->ReplaceAll("\r\n", " ");
        for (char* c = token->Data(); c && *c; c++)
            if (*c == '\t' || *c == '\r' || *c == '\n') *c = ' ';
        token->Trim();
        tokens.Items[i] = nullptr;
        if (token->IsEmpty())
            delete token;
        else
            tokens.Items[kept++] = token;
    }
    tokens.Count = kept;
    int position = 0;
    return ReadItems(tokens, position, 0);
}

clsJSON* clsJSON::AddItem(const clsString& key) {
    clsJSON* item = new clsJSON;
    if (Items.Add(key, item) < 0) {
        delete item;
        return nullptr;
    }
    return item;
}

bool clsJSON::ReadItems(const clsCStrings& tokens, int& position, int depth) {
    if (depth > MaxDepth) {
        StdOut.Write(clsString("# JSON nested deeper than ") + clsString(MaxDepth) + " levels, reading stops",
                     true);
        return false;
    }
    while (position < tokens.Count) {
        const int at = position++;
        const clsString& token = *tokens.Items[at];
        if (token == "{" || token == "[") {
            clsJSON* item = AddItem(EmptyString);
            if (!item || !item->ReadItems(tokens, position, depth + 1)) return false;
        } else if (token == "]" || token == "}") {
            return true; // closes whichever bracket opened this node
        } else if (token == ",") {
            continue;
        } else if (IsScalar(token)) {
            clsJSON* item = AddItem(UnnamedKey);
            if (item) item->Value = token;
        } else if (token.Text()[0] == '"') {
            clsJSON* item = AddItem(token);
            if (!item) return false;
            item->Name = token;
            const clsString* colon = tokens.At(position);
            if (!colon || !(*colon == ":")) return true;
            const clsString* value = tokens.At(++position);
            if (!value) return true;
            position++;
            if (*value == "[" || *value == "{") {
                if (!item->ReadItems(tokens, position, depth + 1)) return false;
            } else {
                item->Value = value->UnescapeC();
            }
        } else if (!token.IsEmpty()) {
            ReportBadToken(tokens, at);
            return false;
        }
    }
    return true;
}

clsString clsJSON::ToXmlText(clsString& indent) const {
    clsString out;
    WriteXml(out, indent);
    return out;
}

void clsJSON::WriteXml(clsString& out, clsString& indent) const {
    indent.Append('\t');
    clsString name(Name);
    name.Unquote('"');
    if (name.IsEmpty()) name = UnnamedKey;
    const clsString xmlName = name.ToXml();
    out.Append(LineEnd).Append(indent).Append('<').Append(xmlName);
    if (Value == "null") {
        out.Append(" />");
    } else {
        out.Append('>');
        if (Value.Text()[0] == '"') {
            clsString text = Value.Mid(1);
            if (text.Size() > 0 && text.Text()[text.Size() - 1] == '"') text.SetLength(text.Size() - 1);
            out.Append(text.ToXml());
        } else if (!Value.IsEmpty()) {
            out.Append(Value);
        } else {
            bool any = false;
            for (int i = 0; i < Items.Count; i++)
                if (const clsJSON* item = Items.ValueAt(i)) {
                    item->WriteXml(out, indent);
                    any = true;
                }
            if (any) out.Append(LineEnd).Append(indent);
        }
        out.Append("</").Append(xmlName).Append('>');
    }
    indent.SetLength(indent.Size() - 1);
}

} // namespace nuvobase
