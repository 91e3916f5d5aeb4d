// The reading loop: one pass over a working copy of the formula, cut into tokens with NUL bytes.
#include <cctype>
#include <cstring>
#include <stdexcept>

#include "formula/clsparser.h"

namespace velmora {

namespace {

// Each open parenthesis lifts the ranks of what stands inside it by this much.
constexpr int32_t LevelStep = 2048;
// Below this the level could no longer be counted in a rank; a formula with that many ")" too many is
// already unbalanced.
constexpr int32_t LowestLevel = -(LevelStep << 16);
// Stored ranks lose this bit, so that "(" arrives high enough to run nothing and then waits low.
constexpr int32_t ArrivalBit = 128;

// The ranks of the operators, lowest first: a higher rank binds tighter.
constexpr int32_t RankEnd = 1;
constexpr int32_t RankNeg = 1;
constexpr int32_t RankClose = 2;
constexpr int32_t RankComma = 3;
constexpr int32_t RankOr = 4;
constexpr int32_t RankAnd = 5;
constexpr int32_t RankNot = 6;
constexpr int32_t RankEqual = 8;
constexpr int32_t RankContains = 9; // "#" and the "#" pairs
constexpr int32_t RankCompare = 10; // "<", ">", their pairs, and a quote
constexpr int32_t RankJoin = 12;    // "&"
constexpr int32_t RankSum = 14;     // "+" "-"
constexpr int32_t RankProduct = 16; // "*" "/" "\\"
constexpr int32_t RankPower = 18;   // "^" "~"
constexpr int32_t RankSpace = 22;
constexpr int32_t RankOpen = 130;
// A minus that follows "(", "*", "+", ",", "-" or "/" negates the value behind it: it ranks above every
// binary operator, so the first operator after that value runs it. 2*(-3+1) gives -4, 1+-2*3+4 gives -1.
constexpr int32_t RankNegation = 20;

struct Operator {
    int32_t Code;
    int32_t Rank; // before the level is added
    int Length;   // characters it takes in the formula
};

bool IsOperatorChar(char c) {
    return c != 0 && std::strchr(")(,=#<>'\"&+-*/\\^~ ", c) != nullptr;
}

// The operator that starts at text, an operator character or the end of the text.
Operator ReadOperator(const char* text) {
    switch (text[0]) {
    case 0:
        return {CodeEnd, RankEnd, 0};
    case ')':
        return {')', RankClose, 1};
    case '(':
        return {'(', RankOpen, 1};
    case ',':
        return {',', RankComma, 1};
    case '=':
        return {'=', RankEqual, 1};
    case '#': {
        static const char Followers[] = "!<>%&|^";
        static const int32_t Codes[] = {CodeNotContains, CodeStartsWith, CodeEndsWith, CodeMatches,
                                        CodeBitAnd,      CodeBitOr,      CodeBitXor};
        const char* follower = text[1] ? std::strchr(Followers, text[1]) : nullptr;
        if (follower) return {Codes[follower - Followers], RankContains, 2};
        return {'#', RankContains, 1};
    }
    case '<':
        if (text[1] == '=') return {CodeLessEqual, RankCompare, 2};
        if (text[1] == '>') return {CodeNotEqual, RankCompare, 2};
        return {'<', RankCompare, 1};
    case '>':
        if (text[1] == '=') return {CodeGreaterEqual, RankCompare, 2};
        if (text[1] == '>') return {CodeShift, RankCompare, 2};
        return {'>', RankCompare, 1};
    case '\'':
    case '"':
        return {text[0], RankCompare, 1};
    case '&':
        return {'&', RankJoin, 1};
    case '+':
    case '-':
        return {text[0], RankSum, 1};
    case '*':
    case '/':
    case '\\':
        return {text[0], RankProduct, 1};
    case '^':
    case '~':
        return {text[0], RankPower, 1};
    default: // the space
        return {' ', RankSpace, 1};
    }
}

// The first operator character at or after at, or the end of the text.
int ScanToOperator(const char* work, int at) {
    while (work[at] && !IsOperatorChar(work[at])) at++;
    return at;
}

// The word operators, or null.
const Operator* ReadWord(const char* token) {
    static const struct {
        const char* Word;
        Operator Op;
    } Words[] = {{"NOT", {CodeNot, RankNot, 0}},
                 {"NEG", {CodeNeg, RankNeg, 0}},
                 {"AND", {CodeAnd, RankAnd, 0}},
                 {"OR", {CodeOr, RankOr, 0}}};
    for (const auto& word : Words)
        if (clsString(token) == word.Word) return &word.Op;
    return nullptr;
}

bool IsIdentifierStart(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) || c == '$' || c == '_';
}

} // namespace

int clsParser::Compute(const clsString& formula, clsString& result, bool translate) {
    if (&result == &formula) throw std::logic_error("clsParser::Compute: Return value overwrites formula!");
    result.Clear();
    clsExpressionState& state = *State;
    state.Error = ErrorNone;
    state.ErrorPos = 0;
    state.OperatorCount = 0;
    state.Values.Clear();
    state.Source = formula;
    state.Work = formula;
    while (!state.Work.IsEmpty() && std::strchr("\n\r ", *state.Work.At(state.Work.Size() - 1)))
        state.Work.SetLength(state.Work.Size() - 1);
    if (state.Work.IsEmpty()) return ErrorNone;

    const int code = Evaluate();
    if (code == ErrorNone) {
        const clsValue& value = state.Values.Values[0];
        result = value.ToText();
        if (translate && Translations.Count > 0) {
            const int index = Translations.Find(result);
            if (index >= 0) result = Translations.GetAt(index);
        }
    }
    state.Values.Clear();
    return code;
}

int clsParser::Evaluate() {
    clsExpressionState& state = *State;
    char* work = state.Work.Data();
    int32_t level = 0;
    for (int position = 0;;) {
        for (char c; (c = work[position]) == ' ' || c == '\t' || c == '\n' || c == '\r'; position++)
            work[position] = ' ';
        const int tokenStart = position;
        int at = ScanToOperator(work, position);
        Operator op = ReadOperator(work + at);
        const char* token = work + tokenStart;
        const bool isString = op.Code == '\'' || op.Code == '"';
        if (isString) {
            // The literal moves down over itself, a doubled quote standing for one; whatever lies between
            // the closing quote and the next operator is ignored. A quote there ends this step and opens the
            // next string.
            const char quote = work[at];
            const int quoteAt = at;
            int write = at + 1, read = at + 1;
            for (;; read++) {
                if (!work[read]) return SetError(ErrorUnclosedString, quoteAt);
                if (work[read] == quote) {
                    if (work[read + 1] != quote) break;
                    read++;
                }
                work[write++] = work[read];
            }
            work[write] = 0;
            token = work + quoteAt + 1;
            at = ScanToOperator(work, read + 1);
            op = ReadOperator(work + at);
            if (op.Code == '\'' || op.Code == '"') op = {' ', RankSpace, 0};
        }
        if (op.Length > 0) work[at] = 0;
        if (op.Code == '(') level += LevelStep;

        if (op.Code == '(' && *token && !isString) {
            const int index = Functions.Find(clsString(token));
            if (index < 0) return SetError(ErrorUnknownFunction, tokenStart);
            const int code =
                PushOperator(*Functions.ValueAt(index), ((RankOpen + level) - 1) & ~ArrivalBit, tokenStart);
            if (code) return code;
        } else if (*token || isString) {
            const Operator* word = isString ? nullptr : ReadWord(token);
            if (!word) {
                const int code = PushOperand(token, isString ? -1 : tokenStart);
                if (code) return code;
            } else {
                op = {word->Code, word->Rank, op.Length};
                if (op.Code == CodeAnd || op.Code == CodeOr) state.OperatorCount--;
            }
        }
        if (state.OperatorCount < 0) return SetError(ErrorParser, tokenStart);

        const int32_t rank = op.Code == CodeEnd ? RankEnd : op.Rank + level;
        if (op.Code == ')' && (level -= LevelStep) < LowestLevel) return SetError(ErrorParentheses, at);
        position = at + op.Length;

        if (op.Code == '-' && at - 1 > 0) {
            int before = at - 1;
            while (before > 0 && *state.Source.At(before) == ' ') before--;
            const char previous = *state.Source.At(before);
            if (previous && std::strchr("(*+,-/", previous)) {
                const int code = PushOperator(CodeNeg, RankNegation + level, at);
                if (code) return code;
                continue;
            }
        }
        const int code = PopOperators(rank);
        if (code) return code;
        if (op.Code == CodeEnd) break;
        if (op.Code != ' ') {
            const int pushed = PushOperator(op.Code, rank & ~ArrivalBit, at);
            if (pushed) return pushed;
        }
    }

    state.Error = ErrorNone;
    if (level != 0) return SetError(ErrorParentheses, 0);
    if (state.Values.Count != 1) return SetError(ErrorValueCount, 0);
    const clsValue& value = state.Values.Values[0];
    if (value.IsError()) return SetError(ErrorInFunction, value.ErrorPos);
    return ErrorNone;
}

int clsParser::PushOperator(int32_t code, int32_t rank, int32_t position) {
    clsExpressionState& state = *State;
    if (state.OperatorCount >= clsExpressionState::MaxOperators) return SetError(ErrorParser, position);
    state.Operators[state.OperatorCount++] = {code, rank, state.Values.Count, position};
    return ErrorNone;
}

int clsParser::PopOperators(int32_t rank) {
    clsExpressionState& state = *State;
    while (state.OperatorCount > 0 && state.Operators[state.OperatorCount - 1].Rank >= rank) {
        const clsOperatorEntry entry = state.Operators[--state.OperatorCount];
        const int code = Run(entry);
        if (code) return code;
    }
    return ErrorNone;
}

int clsParser::PushOperand(const char* token, int position) {
    clsValue value;
    if (position < 0) {
        value.SetText(clsString(token));
    } else if (IsIdentifierStart(*token)) {
        const clsString name(token);
        if (name.Find(':') >= 0)
            value.SetText(name, clsValue::TypeName);
        else if (!GetVariable(name, value))
            return SetError(ErrorUnknownVariable, position);
    } else {
        const clsString number(token);
        const auto isPrefix = [](char c) { return c == 'x' || c == 'b'; };
        if (isPrefix(token[1]) || (token[1] && isPrefix(token[2])))
            value.SetInteger(number.ToUInt64());
        else
            value.SetDouble(number.ToDouble(0));
    }
    State->Values.Push(value);
    return ErrorNone;
}

} // namespace velmora
