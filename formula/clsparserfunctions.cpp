// Running a function: its arguments are the values from the entry's depth to the top of the stack, and its
// result takes the place of the first one.
#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// The statement of FGET: the text itself, or built from table, fields, a condition and an extra column.
clsString GetStatement(const clsFunctionCall& call, const clsString& table) {
    if (call.Count == 1) return table;
    clsString sql = clsString("select ") + call.Text(1);
    if (call.Count > 4) sql += clsString(",") + call.Text(4);
    sql += clsString(" from ") + clsArchivio::QuoteName(table);
    if (call.Count > 2) sql += clsString(" where ") + call.Text(2);
    return sql;
}

// A wrong number of arguments, a failing statement or one without rows leave an error value rather than a
// code; "table?" gives the statement instead of running it.
int Get(clsFunctionCall& call) {
    clsString table = call.Count > 0 ? call.Text(0) : clsString();
    const bool showOnly = table.Size() > 0 && *table.At(table.Size() - 1) == '?';
    if (showOnly) table.SetLength(table.Size() - 1);
    if (table.IsEmpty() || (call.Count > 1 && call.At(1).IsError()) ||
        ((call.Count == 3 || call.Count == 4) && call.At(call.Count - 1).IsError()))
        return call.ResultError();
    const clsString sql = GetStatement(call, table);
    if (showOnly) return call.ResultText(sql);
    clsArchivio& archive = *call.Parser.Archive;
    const int rows = archive.OpenRowSet(sql, 1);
    const int named = call.Count >= 3 ? archive.FieldIndex(rows, call.Text(1)) : 0;
    const clsString value = archive.FieldText(rows, named < 0 ? 0 : named);
    const bool found = !archive.AtEnd(rows);
    archive.CloseRowSet(rows);
    return found ? call.ResultText(value) : call.ResultError();
}

// Row functions that do nothing here: their first argument stays as the result.
bool KeepsFirstArgument(int32_t code) {
    return (code >= FunctionFRADD && code <= FunctionFRMED) || code == FunctionFRNOZERO ||
           code == FunctionFRZERO;
}

} // namespace

int clsParser::RunFunction(const clsOperatorEntry& entry) {
    clsFunctionCall call(*this, entry);
    if (call.Count < 0) return call.Fail(ErrorArgumentCount);
    int code = ErrorNone;
    if (RunValueFunction(call, code) || RunTextFunction(call, code) || RunLogicFunction(call, code) ||
        RunMathFunction(call, code) || RunVariableFunction(call, code))
        return code;
    if (entry.Code == FunctionFGET) return Get(call);
    if (KeepsFirstArgument(entry.Code)) return call.Count > 0 ? call.Result(call.At(0)) : ErrorNone;
    // Every name of the table is known, but not every function is built yet.
    return call.Fail(ErrorInFunction);
}

} // namespace velmora
