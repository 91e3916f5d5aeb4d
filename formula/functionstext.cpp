// Text, lists and the displays of 64-bit values. List functions cut their list with NextWord, quotes
// respected, at the first character of the separator they are given.
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

#include <openssl/evp.h>
#include <sys/stat.h>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

constexpr int HexDigits = 16;
constexpr int BoardBits = 64;
constexpr int BoardRank = 8;
// FTEXT reads at most this much of a regular file; a longer one is refused with a code.
constexpr long MaxTextFileBytes = 16 << 20;
// FFILL pads to at most this width.
constexpr int MaxFillWidth = 1 << 20;

struct Token {
    clsString Text;
    int SeparatorAt; // the separator behind it, -1 for the last token
};

std::vector<Token> Tokens(const clsString& text, char separator) {
    std::vector<Token> tokens;
    int position = 0;
    while (position >= 0) {
        clsString word = text.NextWord(separator, position, true);
        tokens.push_back({word, position >= 0 ? position - 1 : -1});
    }
    return tokens;
}

int Sort(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    const char separator = call.FirstChar(1);
    std::vector<Token> tokens = Tokens(call.Text(0), separator);
    std::stable_sort(tokens.begin(), tokens.end(),
                     [](const Token& a, const Token& b) { return a.Text < b.Text; });
    clsString text;
    for (size_t i = 0; i < tokens.size(); i++) {
        if (i > 0) text += separator;
        text += tokens[i].Text;
    }
    return call.ResultText(text);
}

int Mid(clsFunctionCall& call) {
    if (call.CountOutside(2, 3)) return call.Fail(ErrorArgumentCount);
    const int start = call.Int(1) - 1;
    return call.ResultText(start < 0 ? clsString()
                                     : call.Text(0).Mid(start, call.Count == 3 ? call.Int(2) : -1));
}

int TrimText(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    if (!call.IsOneByte(1)) return call.Fail(ErrorParameter2);
    clsString text = call.Text(0);
    const char c = call.FirstChar(1);
    if (call.Code == FunctionFTRIM)
        text.Trim(c, true, false);
    else if (call.Code == FunctionFTRIML)
        text.Trim(c, false, false);
    else
        text.Trim(c, true, true);
    return call.ResultText(text);
}

int ChangeCase(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    clsString text = call.Text(0);
    switch (call.Int(1)) {
    case 0:
        return call.ResultText(text.Upper());
    case 1:
        return call.ResultText(text.Lower());
    case 2:
        return call.ResultText(text.UpperFirst());
    case 3:
        return call.ResultText(text.Capitalise());
    default:
        return call.Result(call.At(0));
    }
}

// Only a regular file is read: a folder, a device or a pipe could not be read, or not to an end.
int ReadTextFile(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    const clsString path = call.Text(0).ToForwardSlashes();
    struct stat status;
    if (stat(path.Text(), &status) != 0 || !S_ISREG(status.st_mode)) return call.Fail(ErrorFileNotFound);
    if (status.st_size > MaxTextFileBytes) return call.Fail(ErrorParameter1);
    const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.Text(), "rb"), std::fclose);
    if (!file) return call.Fail(ErrorFileNotFound);
    clsString text;
    char block[1 << 16];
    size_t read;
    while ((read = std::fread(block, 1, sizeof block, file.get())) > 0) {
        if (text.Size() + long(read) > MaxTextFileBytes) return call.Fail(ErrorParameter1);
        text.Append(block, int(read));
    }
    return call.ResultText(text);
}

int Digest(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    const clsString text = call.Text(0);
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (!EVP_Digest(text.Text(), size_t(text.Size()), digest, &length, EVP_md5(), nullptr))
        return call.Fail(ErrorInFunction);
    clsString hex, pair;
    for (unsigned int i = 0; i < length; i++) hex += pair.FromUInt(digest[i], false, 16, 2);
    return call.ResultText(hex);
}

int Display(clsFunctionCall& call) {
    if (call.Count != 1) return call.Fail(ErrorArgumentCount);
    const uint64_t bits = call.Whole(0);
    clsString text;
    if (call.Code == FunctionFHEX) {
        text.FromUInt(bits, false, 16, HexDigits);
    } else if (call.Code == FunctionFBIN) {
        text.FromUInt(bits, false, 2);
    } else {
        const clsString digits = clsString().FromUInt(bits, false, 2, BoardBits);
        for (int rank = 0; rank < BoardBits; rank += BoardRank) text += digits.Mid(rank, BoardRank) + "\n";
    }
    return call.ResultText(text);
}

int FindText(clsFunctionCall& call) {
    if (call.CountOutside(2, 3)) return call.Fail(ErrorArgumentCount);
    const int from = call.Count == 3 ? call.Int(2) : 0;
    return call.ResultNumber(from < 0 ? -1 : call.Text(1).FindOutsideQuotes(call.Text(0).Text(), from));
}

int FirstNotEmpty(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorArgumentCount);
    for (int i = 0; i < call.Count; i++)
        if (!call.Text(i).IsEmpty()) return call.Result(call.At(i));
    return call.ResultText(clsString());
}

int Select(clsFunctionCall& call) {
    if (call.Count < 4) return call.Fail(ErrorArgumentCount);
    const clsString key = call.Text(0);
    for (int i = 1; i + 1 < call.Count; i += 2)
        if (call.Text(i) == key) return call.Result(call.At(i + 1));
    return call.ResultText(clsString());
}

int EqualsAny(clsFunctionCall& call) {
    if (call.Count < 2) return call.Fail(ErrorArgumentCount);
    const clsString key = call.Text(0);
    for (int i = 1; i < call.Count; i++)
        if (call.Text(i) == key) return call.ResultText(clsString("1"));
    return call.ResultText(clsString());
}

// FTOKEN, FTOKENLW and FTOKENRW: the token at an index, or the text before or behind the separator that
// ends it; an empty answer falls back to a lower default index.
int TokenAt(clsFunctionCall& call) {
    if (call.Count < 3) return call.Fail(ErrorArgumentCount);
    const int index = call.Int(2), fallback = call.Count > 3 ? call.Int(3) : index;
    if (fallback > index) return call.Fail(ErrorTokenIndex);
    const clsString text = call.Text(0);
    const std::vector<Token> tokens = Tokens(text, call.FirstChar(1));
    const auto answer = [&](int at) {
        if (at < 0 || at >= int(tokens.size())) return clsString();
        const int separator = tokens[size_t(at)].SeparatorAt;
        if (call.Code == FunctionFTOKEN) return tokens[size_t(at)].Text;
        if (separator < 0) return clsString();
        return call.Code == FunctionFTOKENLW ? text.Left(separator) : text.From(separator + 1);
    };
    clsString result = answer(index);
    if (result.IsEmpty() && fallback < index) result = answer(fallback);
    return call.ResultText(result);
}

int Fill(clsFunctionCall& call) {
    if (call.Count != 3) return call.Fail(ErrorArgumentCount);
    const int width = call.Int(1);
    if (width > MaxFillWidth || width < -MaxFillWidth) return call.Fail(ErrorParameter2);
    clsString text = call.Text(0);
    const char c = call.FirstChar(2);
    return call.ResultText(width >= 1 ? text.PadLeft(c, width) : text.PadRight(c, -width));
}

int OnlyOne(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    clsString text = call.Text(0);
    const clsString unit = call.Text(1), twice = unit + unit;
    for (int length = -1; !unit.IsEmpty() && length != text.Size();) {
        length = text.Size();
        text.ReplaceAll(twice.Text(), unit.Text());
    }
    return call.ResultText(text);
}

} // namespace

bool RunTextFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFSORT:
        code = Sort(call);
        return true;
    case FunctionFSUBST:
        code = call.Count != 3
                   ? call.Fail(ErrorArgumentCount)
                   : call.ResultText(call.Text(0).ReplaceAll(call.Text(1).Text(), call.Text(2).Text()));
        return true;
    case FunctionFMID:
        code = Mid(call);
        return true;
    case FunctionFTRIM:
    case FunctionFTRIML:
    case FunctionFTRIMR:
        code = TrimText(call);
        return true;
    case FunctionFLEN:
        code = call.Count != 1 ? call.Fail(ErrorArgumentCount)
                               : call.ResultInteger(call.At(0).IsError() ? 0 : uint64_t(call.Text(0).Size()));
        return true;
    case FunctionFCASE:
        code = ChangeCase(call);
        return true;
    case FunctionFTEXT:
        code = ReadTextFile(call);
        return true;
    case FunctionFCHAR:
        code = call.Count != 1
                   ? call.Fail(ErrorArgumentCount)
                   : call.ResultText(call.Int(0) & 0xFF ? clsString(char(call.Int(0))) : clsString());
        return true;
    case FunctionFMD5:
        code = Digest(call);
        return true;
    case FunctionFHEX:
    case FunctionFBIN:
    case FunctionF64:
        code = Display(call);
        return true;
    case FunctionFREVERSE:
        code = call.Count != 2 ? call.Fail(ErrorArgumentCount)
                               : call.ResultText(call.Text(0).Reverse(call.Int(1)));
        return true;
    case FunctionFINSTR:
        code = FindText(call);
        return true;
    case FunctionFNE:
        code = FirstNotEmpty(call);
        return true;
    case FunctionFSELECT:
        code = Select(call);
        return true;
    case FunctionFEQ:
        code = EqualsAny(call);
        return true;
    case FunctionFTOKEN:
    case FunctionFTOKENLW:
    case FunctionFTOKENRW:
        code = TokenAt(call);
        return true;
    case FunctionFTOKENL:
    case FunctionFTOKENR:
        code = call.Count != 2                ? call.Fail(ErrorArgumentCount)
               : call.Code == FunctionFTOKENL ? call.ResultText(call.Text(0).BeforeChar(call.FirstChar(1)))
                                              : call.ResultText(call.Text(0).AfterChar(call.FirstChar(1)));
        return true;
    case FunctionFFILL:
        code = Fill(call);
        return true;
    case FunctionFONLYONE:
        code = OnlyOne(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
