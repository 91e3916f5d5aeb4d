// Running a function: its arguments are the values from the entry's depth to the top of the stack, and its
// result takes the place of the first one.
#include "formula/clsparser.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// Digits of the 64-bit displays.
constexpr int HexDigits = 16;
constexpr int BoardBits = 64;
constexpr int BoardRank = 8;

// The statement of FGET: the text itself, or built from table, fields, a condition and an extra column.
clsString GetStatement(const clsValue* arguments, int count, const clsString& table) {
    if (count == 1) return table;
    clsString sql = clsString("select ") + arguments[1].ToText();
    if (count > 4) sql += clsString(",") + arguments[4].ToText();
    sql += clsString(" from ") + clsArchivio::QuoteName(table);
    if (count > 2) sql += clsString(" where ") + arguments[2].ToText();
    return sql;
}

} // namespace

int clsParser::RunFunction(const clsOperatorEntry& entry) {
    switch (entry.Code) {
    case FunctionFSET:
        return FunctionSet(entry);
    case FunctionFGET:
        return FunctionGet(entry);
    case FunctionFHEX:
    case FunctionFBIN:
    case FunctionF64:
        return FunctionDisplay(entry);
    default:
        // Every name of the table is known, but not every function is built yet.
        return SetError(ErrorInFunction, entry.Pos);
    }
}

int clsParser::FunctionSet(const clsOperatorEntry& entry) {
    clsStack& values = State->Values;
    const int count = values.Count - entry.Depth;
    if (count < 2 || count % 2) return SetError(ErrorArgumentCount, entry.Pos);
    const clsValue* arguments = values.Values + entry.Depth;
    for (int i = 0; i < count; i += 2) {
        const clsString name = arguments[i].ToText();
        if (!name.IsEmpty()) SetVariable(name, arguments[i + 1]);
    }
    values.Values[entry.Depth] = arguments[count - 1];
    values.Count = entry.Depth + 1;
    return ErrorNone;
}

int clsParser::FunctionDisplay(const clsOperatorEntry& entry) {
    clsStack& values = State->Values;
    if (values.Count - entry.Depth != 1) return SetError(ErrorArgumentCount, entry.Pos);
    clsValue& value = values.Values[entry.Depth];
    const uint64_t bits = value.ToWhole();
    clsString text;
    if (entry.Code == FunctionFHEX) {
        text.FromUInt(bits, false, 16, HexDigits);
    } else if (entry.Code == FunctionFBIN) {
        text.FromUInt(bits, false, 2);
    } else {
        const clsString digits = clsString().FromUInt(bits, false, 2, BoardBits);
        for (int rank = 0; rank < BoardBits; rank += BoardRank) text += digits.Mid(rank, BoardRank) + "\n";
    }
    value.SetText(text);
    return ErrorNone;
}

// A wrong number of arguments, a failing statement or one without rows leave an error value rather than a
// code; "table?" gives the statement instead of running it.
int clsParser::FunctionGet(const clsOperatorEntry& entry) {
    clsStack& values = State->Values;
    const int count = values.Count - entry.Depth;
    const clsValue* arguments = values.Values + entry.Depth;
    clsValue& result = values.Values[entry.Depth];
    values.Count = entry.Depth + 1;
    clsString table = count > 0 ? arguments[0].ToText() : clsString();
    const bool showOnly = table.Size() > 0 && *table.At(table.Size() - 1) == '?';
    if (showOnly) table.SetLength(table.Size() - 1);
    if (table.IsEmpty() || (count > 1 && arguments[1].IsError()) ||
        ((count == 3 || count == 4) && arguments[count - 1].IsError())) {
        result.SetError(entry.Pos);
        return ErrorNone;
    }
    const clsString sql = GetStatement(arguments, count, table);
    if (showOnly) {
        result.SetText(sql);
        return ErrorNone;
    }
    const int rows = Archive->OpenRowSet(sql, 1);
    const int named = count >= 3 ? Archive->FieldIndex(rows, arguments[1].ToText()) : 0;
    if (Archive->AtEnd(rows))
        result.SetError(entry.Pos);
    else
        result.SetText(Archive->FieldText(rows, named < 0 ? 0 : named));
    Archive->CloseRowSet(rows);
    return ErrorNone;
}

} // namespace velmora
