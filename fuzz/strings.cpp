// Arbitrary bytes through the readers of clsString: number parsing, word reading, tokenising, squeezing,
// replacing and comparing. The first bytes choose separators and flags; the rest is split into a text, a
// search text and a replacement.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

using nuvobase::clsString;

// Stops the run when a rule of the string is broken.
static void Check(bool condition) {
    if (!condition) std::abort();
}

static void CheckTerminated(const clsString& s) {
    Check(s.Size() >= 0);
    Check(s.Text()[s.Size()] == 0);
}

static void ReadNumbers(const clsString& text) {
    (void)text.ToUInt64();
    (void)text.ToDouble(-1);
    (void)clsString::ParseDouble(text.Text());
    (void)text.ToSigned();
    (void)text.ToSeconds();
    int column, row;
    text.ParseCell(column, row);
}

static void ReadWords(const clsString& text, char separator, bool quoted, bool skipEmpty) {
    int position = 0, words = 0;
    while (position >= 0) {
        int before = position;
        clsString word = text.NextWord(separator, position, quoted, skipEmpty);
        CheckTerminated(word);
        Check(position == -1 || position > before);
        Check(++words <= text.Size() + 1);
    }
    position = 0;
    while (position >= 0) {
        int before = position;
        text.Between(separator, '\n', position);
        Check(position == -1 || position > before);
    }
}

static void Tokenise(const clsString& text, const clsString& delimiters, char quote, char escape,
                     bool quoted) {
    nuvobase::clsCStrings list;
    int count = text.Tokenise(delimiters.Text(), list, quoted, quote, escape, "<!", "!>");
    Check(count == list.Count && count <= 2 * text.Size() + 2);
}

static void Rewrite(const clsString& text, const clsString& from, const clsString& to, int flags) {
    clsString squeezed(text);
    squeezed.Squeeze();
    CheckTerminated(squeezed);
    Check(squeezed.Size() <= text.Size());

    clsString replaced(text);
    replaced.ReplaceAll(from.Text(), to.Text());
    CheckTerminated(replaced);

    clsString assigned;
    assigned.Assign(text.Text(), text.Size(), flags & 7);
    CheckTerminated(assigned);
    Check(assigned.Size() <= text.Size());

    CheckTerminated(clsString(text).Unquote());
    CheckTerminated(text.UnescapeC());
    (void)text.FindOutsideQuotes(from.Text(), 0, '\'', '"');
}

static void Compare(const clsString& text, const clsString& other) {
    static const int flags[] = {1, 2, 16, 32, 64, 128, 512, 1024};
    for (int flag : flags) {
        (void)text.Compare(other, flag);
        (void)text.Compare(other, flag | 256);
    }
    // Equality and order agree, and both forms of equality agree.
    Check(text.Compare(other, 2) == (text.Compare(other, 1) == 0));
    int half = text.Size() / 2;
    Check(text.Left(half) + text.From(half) == text);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 4) return 0;
    char separator = char(data[0]), quote = char(data[1]), escape = char(data[2]);
    int flags = data[3];
    const char* rest = reinterpret_cast<const char*>(data + 4);
    int length = int(size - 4);
    // The text, then a search text and a replacement, cut at the first two 0x01 bytes.
    const char* cut1 = static_cast<const char*>(std::memchr(rest, 1, size_t(length)));
    int textLength = cut1 ? int(cut1 - rest) : length;
    clsString text, from, to;
    text.Assign(rest, textLength);
    if (cut1) {
        const char* tail = cut1 + 1;
        int tailLength = length - textLength - 1;
        const char* cut2 = static_cast<const char*>(std::memchr(tail, 1, size_t(tailLength)));
        from.Assign(tail, cut2 ? int(cut2 - tail) : tailLength);
        if (cut2) to.Assign(cut2 + 1, int(tail + tailLength - cut2 - 1));
    }

    ReadNumbers(text);
    ReadWords(text, separator, flags & 8, flags & 16);
    Tokenise(text, from, quote, escape, flags & 32);
    Rewrite(text, from, to, flags);
    Compare(text, from);
    return 0;
}
