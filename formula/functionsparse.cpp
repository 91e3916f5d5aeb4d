// FPARSE: the names a formula needs, found without evaluating it.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <vector>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// The lexical pieces of a formula as FPARSE sees them: names and numbers, quoted spans, and operators.
struct Piece {
    clsString Text;
    bool Operand; // a name, number or quoted span
};

bool IsNameChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) || (c && std::strchr("$.:[]_", c));
}

std::vector<Piece> Pieces(const clsString& formula) {
    std::vector<Piece> pieces;
    const char* text = formula.Text();
    for (int at = 0; text[at];) {
        const char c = text[at];
        int end = at + 1;
        if (static_cast<unsigned char>(c) < 33) {
            at++;
            continue;
        }
        if (c == '\'' || c == '"') {
            while (text[end] && text[end] != c) end++;
            if (text[end]) end++;
        } else if (IsNameChar(c)) {
            while (IsNameChar(text[end])) end++;
        }
        clsString piece;
        piece.Assign(text + at, end - at);
        const bool word = piece == "AND" || piece == "OR";
        pieces.push_back({piece, !word && (IsNameChar(c) || c == '\'' || c == '"')});
        at = end;
    }
    return pieces;
}

// What a function that names a variable by a literal contributes, or empty text for any other function.
clsString NamedByLiteral(const clsString& function, const clsString& literal) {
    const clsString name = clsString(literal).Unquote();
    if (function == "FE") return clsString("FE_") + name;
    if (function == "FNOTA") return clsString("NOTA_") + name;
    if (function == "FVAR" || function == "FVAROK") return name;
    return clsString();
}

// The index behind the ")" that closes the "(" at open.
size_t BehindClose(const std::vector<Piece>& pieces, size_t open) {
    int depth = 0;
    for (size_t i = open; i < pieces.size(); i++) {
        if (pieces[i].Text == "(") depth++;
        if (pieces[i].Text == ")" && --depth == 0) return i + 1;
    }
    return pieces.size();
}

} // namespace

int RunParse(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    const clsString mode = call.Text(0);
    if (mode != "P" && mode != "PARAMETERS") return call.Fail(ErrorArgumentCount);
    const std::vector<Piece> pieces = Pieces(call.Text(1));
    clsString contributed;
    for (size_t i = 0; i < pieces.size(); i++) {
        const bool function = i + 1 < pieces.size() && pieces[i + 1].Text == "(";
        if (function && i + 2 < pieces.size() && *pieces[i + 2].Text.At(0) == '\'') {
            const clsString name = NamedByLiteral(pieces[i].Text, pieces[i + 2].Text);
            if (!name.IsEmpty()) {
                contributed += clsString(" ") + name;
                i = BehindClose(pieces, i + 1) - 1;
                continue;
            }
        }
        if (!function && pieces[i].Operand) contributed += clsString(" ") + pieces[i].Text;
    }
    contributed.ReplaceAll(",", " ");
    std::vector<clsString> names;
    for (int position = 0; position >= 0;) {
        const clsString word = contributed.NextWord(' ', position);
        const char first = *word.At(0);
        if (!(std::isalpha(static_cast<unsigned char>(first)) || (first && std::strchr("$.:[]_", first))))
            continue;
        if (std::find(names.begin(), names.end(), word) == names.end()) names.push_back(word);
    }
    std::stable_sort(names.begin(), names.end());
    clsString list;
    for (size_t i = 0; i < names.size(); i++) list += (i ? clsString(",") : clsString()) + names[i];
    return call.ResultText(list);
}

} // namespace velmora
