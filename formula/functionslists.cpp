// Lists: sums and products of items, lists without repeats, a formula over every item, two lists woven
// together, and the first of several checks that holds. Lists are cut with NextWord, quotes respected.
#include <cmath>
#include <vector>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

std::vector<clsString> Items(const clsString& list, char separator) {
    std::vector<clsString> items;
    for (int position = 0; position >= 0;) items.push_back(list.NextWord(separator, position, true));
    return items;
}

clsString Joined(const std::vector<clsString>& items, const clsString& separator) {
    clsString text;
    for (size_t i = 0; i < items.size(); i++) {
        if (i > 0) text += separator;
        text += items[i];
    }
    return text;
}

clsString Number(double value) {
    return clsString().FromDouble(value, -1);
}

// FSUM and FMUL: one list folded to a number, or several combined item by item.
int Fold(clsFunctionCall& call) {
    if (call.Count < 2) return call.Fail(ErrorArgumentCount);
    const bool product = call.Code == FunctionFMUL;
    const char separator = call.FirstChar(0);
    const auto combine = [product](double a, double b) { return product ? a * b : a + b; };
    if (call.Count == 2) {
        double result = product ? 1 : 0;
        for (const clsString& item : Items(call.Text(1), separator)) {
            if (item.IsEmpty()) return call.ResultText(Number(0));
            result = combine(result, item.ToDouble(0));
        }
        return call.ResultText(Number(result));
    }
    std::vector<clsString> result;
    std::vector<bool> cleared;
    for (int list = 2; list < call.Count; list++) {
        clsString text = call.Text(list);
        if (text.TrimRight(' ').IsEmpty()) return call.Fail(ErrorEmptyList);
        const std::vector<clsString> items = Items(call.Text(list), separator);
        if (list == 2) {
            result = items;
            for (const clsString& item : items) cleared.push_back(item.IsEmpty());
            continue;
        }
        for (size_t i = 0; i < result.size(); i++) {
            if (i >= items.size() || items[i].IsEmpty()) cleared[i] = true;
            if (!cleared[i]) result[i] = Number(combine(result[i].ToDouble(0), items[i].ToDouble(0)));
        }
    }
    for (size_t i = 0; i < result.size(); i++)
        result[i] = cleared[i] ? clsString() : Number(result[i].ToDouble(0));
    return call.ResultText(Joined(result, call.Text(1)));
}

// FNOREP: the first of each item; with a second separator, items "n<sep2>name" keyed by name whose repeats
// add their n to the first.
int NoRepeats(clsFunctionCall& call) {
    if (call.CountOutside(2, 3)) return call.Fail(ErrorArgumentCount);
    if (!call.IsOneByte(1)) return call.Fail(ErrorParameter2);
    if (call.Count == 3 && !call.IsOneByte(2)) return call.Fail(ErrorParameter3);
    const char separator = call.FirstChar(1), inner = call.Count == 3 ? call.FirstChar(2) : 0;
    std::vector<clsString> kept, keys;
    std::vector<double> counts;
    for (const clsString& item : Items(call.Text(0), separator)) {
        const clsString key = inner ? item.AfterChar(inner) : item;
        size_t at = 0;
        while (at < keys.size() && keys[at] != key) at++;
        if (at == keys.size()) {
            kept.push_back(item);
            keys.push_back(key);
            counts.push_back(inner ? item.BeforeChar(inner).ToDouble(0) : 0);
        } else if (inner) {
            counts[at] += item.BeforeChar(inner).ToDouble(0);
            kept[at] = Number(counts[at]) + clsString(inner) + key;
        }
    }
    return call.ResultText(Joined(kept, clsString(separator)));
}

// FANY: the formula evaluated once for every item, which stands in for #ANY#.
int Any(clsFunctionCall& call) {
    if (call.Count != 4 || !call.IsOneByte(1)) return call.Fail(ErrorArgumentCount);
    clsString formula = call.Text(2);
    const int bar = formula.Find('|');
    if (bar >= 0) formula.SetAt(bar, '"');
    std::vector<clsString> results;
    for (const clsString& item : Items(call.Text(0), call.FirstChar(1))) {
        clsString text = formula, result;
        text.ReplaceAll("#ANY#", item.Text());
        const int code = call.Parser.ComputeNested(text, result, false, true);
        if (code) return call.Fail(code);
        results.push_back(result);
    }
    return call.ResultText(Joined(results, call.Text(3)));
}

int Mix(clsFunctionCall& call) {
    if (call.Count != 6 || !call.IsOneByte(1) || !call.IsOneByte(3)) return call.Fail(ErrorArgumentCount);
    const std::vector<clsString> first = Items(call.Text(0), call.FirstChar(1)),
                                 second = Items(call.Text(2), call.FirstChar(3));
    std::vector<clsString> pairs;
    const clsString middle = call.Text(4);
    for (size_t i = 0; i < first.size() || i < second.size(); i++)
        pairs.push_back((i < first.size() ? first[i] : clsString()) + middle +
                        (i < second.size() ? second[i] : clsString()));
    return call.ResultText(Joined(pairs, call.Text(5)));
}

// FVALIDATE: the message of the first check that holds, with $ standing for that message.
int Validate(clsFunctionCall& call) {
    if (call.Count < 2 || call.Count % 2) return call.Fail(ErrorArgumentCount);
    clsParser& parser = call.Parser;
    if (parser.StateIndex + 1 >= clsParser::MaxNestedStates) return call.Fail(ErrorInMacro);
    parser.PushState();
    int found = -1;
    for (int i = 0; i < call.Count && found < 0; i += 2) {
        parser.SetVariable(clsString("$"), clsValue(call.Text(i + 1)));
        clsString result;
        if (parser.Compute(call.Text(i), result) == ErrorNone && result.ToDouble(0) != 0) found = i + 1;
    }
    parser.PopState();
    return call.ResultText(found < 0 ? clsString() : call.Text(found));
}

} // namespace

bool RunListFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFMUL:
    case FunctionFSUM:
        code = Fold(call);
        return true;
    case FunctionFNOREP:
        code = NoRepeats(call);
        return true;
    case FunctionFANY:
        code = Any(call);
        return true;
    case FunctionFMIX:
        code = Mix(call);
        return true;
    case FunctionFVALIDATE:
        code = Validate(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
