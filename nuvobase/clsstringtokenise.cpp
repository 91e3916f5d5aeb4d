// clsString::Tokenise: cuts text into tokens for the XML and JSON readers and the formula language.
#include <cstring>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nuvobase {

// Index of the first occurrence of the n bytes of needle in text[from, length), else -1.
static int FindBytes(const char* text, int length, const char* needle, int n, int from) {
    for (int i = from; i + n <= length; i++)
        if (std::memcmp(text + i, needle, size_t(n)) == 0) return i;
    return -1;
}

int clsString::Tokenise(const char* delimiters, clsCStrings& list, bool quotedTokens, char quote, char escape,
                        const char* blockOpen, const char* blockClose) const {
    list.Clear();
    const char* text = Text();
    const int length = Size();
    const int openLength = blockOpen ? int(std::strlen(blockOpen)) : 0;
    const int closeLength = blockClose ? int(std::strlen(blockClose)) : 0;
    const bool blocks = openLength > 0 && closeLength > 0;
    int count = 0;
    auto add = [&](int from, int to) {
        list.Add(clsString().Assign(text + from, to - from), 1);
        count++;
    };

    int start = 0;      // where the current token began
    char openQuote = 0; // the quote that opened the current span; 0 outside quotes
    // The walk includes the end of the text, which ends the last token like a delimiter.
    for (int i = 0; i <= length; i++) {
        char c = i < length ? text[i] : 0;
        if (openQuote && i < length) {
            if (escape && c == escape) {
                i++; // the escaped character cannot close the span
            } else if (c == openQuote) {
                if (i + 1 < length && text[i + 1] == openQuote) {
                    i++; // a doubled quote stays inside
                } else {
                    openQuote = 0;
                    if (quotedTokens) {
                        add(start, i + 1);
                        start = i + 1;
                    }
                }
            }
            continue;
        }
        if (blocks && openLength <= length - i && std::memcmp(text + i, blockOpen, size_t(openLength)) == 0) {
            // The block is one token; what stood before its opening is dropped.
            int close = FindBytes(text, length, blockClose, closeLength, i + openLength);
            add(i + openLength, close < 0 ? length : close);
            i = close < 0 ? length : close + closeLength - 1;
            start = i + 1;
            continue;
        }
        if (!openQuote && i < length && (c == quote || c == '"') && c) {
            openQuote = c;
            continue;
        }
        if (i == length || (c && std::strchr(delimiters ? delimiters : "", c))) {
            openQuote = 0;
            if (i > start) {
                int from = start, to = i;
                while (from < to && text[from] == ' ') from++;
                while (to > from && text[to - 1] == ' ') to--;
                add(from, to);
            }
            if (i < length) add(i, i + 1);
            start = i + 1;
        }
    }
    return count;
}

} // namespace nuvobase
