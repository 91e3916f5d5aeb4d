#include "search/clssoul.h"

#include "chess/random.h"

namespace nvoChess {

const char* const clsSoul::Named[NamedCount] = {
    "Simple5=7 20 20 5 5 8 8 10 10 20 5 1 5 15 5 10",
    "GEN_26_12_1=7 70 20 5 5 8 8 10 10 20 5 1 5 10 5 10",
    "GEN_26_12_2=7 70 20 46 46 8 8 10 10 20 5 1 5 64 5 10",
    "GEN_26_12_3=33 80 20 5 88 8 32 10 10 20 5 1 5 10 5 10",
    "GEN_28_18_1=7 70 20 5 5 8 8 15 87 99 5 1 5 10 5 10",
};

void clsSoul::ReadNumbers(const char* text, char separator) {
    for (int i = 0; i < Count; ++i) {
        // The word is cut out first: reading in place would skip a blank
        // separator and take the next word for a missing one.
        char word[24];
        int length = 0;
        for (; text && *text && *text != separator; ++text)
            if (length < static_cast<int>(sizeof(word)) - 1) word[length++] = *text;
        word[length] = 0;
        P[i] = static_cast<int32_t>(nuvobase::clsString(word).ToDecimal());
        if (text && *text) ++text;
    }
}

nuvobase::clsString clsSoul::LoadText(const nuvobase::clsString& text) {
    const int equals = text.Find('=');
    ReadNumbers(equals < 0 ? "" : text.At(equals + 1), ' ');
    return equals < 0 ? text : text.Left(equals);
}

nuvobase::clsString clsSoul::Text() const {
    nuvobase::clsString text;
    for (int32_t parameter : P) {
        text += nuvobase::clsString(static_cast<int64_t>(parameter));
        text += '\t';
    }
    return text;
}

void clsSoul::LoadNumbers(const nuvobase::clsString& text) {
    ReadNumbers(text.Text(), '\t');
}

void clsSoul::Randomize() {
    for (int32_t& parameter : P) parameter = RandomBelow(105);
}

void clsSoul::Cross(const clsSoul& other) {
    for (int i = 0; i < Count; ++i) {
        int r = RandomBelow(100);
        if (r < 2)
            P[i] = RandomBelow(105);
        else if (r < 10)
            P[i] = (P[i] + other.P[i]) / 2;
        else if (r < 70)
            P[i] = other.P[i];
    }
}

} // namespace nvoChess
