// Look-ups in the archive's tables. The statements that run quote the names of tables and of the value, X and
// Y columns, so that names such as @0 or Order work; the text a look-up shows instead of running writes them
// as the formula gives them. Values are quoted either way.
#include <climits>

#include "formula/clsfunctioncall.h"
#include "formula/functiontable.h"

namespace velmora {

namespace {

// FINTER refuses value texts longer than this.
constexpr int MaxInterpolatedText = 8191;

clsString Quoted(const clsString& value) {
    return value.Quote('\'');
}

// How a statement writes a name: clsArchivio::QuoteName in the statement that runs, AsGiven in the one shown.
using NameWriter = clsString (*)(const clsString&);

clsString AsGiven(const clsString& name) {
    return name;
}

// The argument counts each look-up allows; outside them it leaves an error value.
bool CountAllowed(const clsFunctionCall& call) {
    switch (call.Code) {
    case FunctionFT:
    case FunctionFMIN:
    case FunctionFMAX:
        return call.Count == 2 || call.Count == 3;
    case FunctionFTY:
        return call.Count == 3 || call.Count == 4;
    case FunctionFGET:
        return call.Count >= 1;
    case FunctionFGETV:
        return call.Count >= 2;
    case FunctionFLIST:
        return call.Count == 4 || call.Count == 7;
    default: // FGETX, FGETF
        return call.Count >= 3;
    }
}

// FT, FTY, FMIN and FMAX: the row at the keys X and Y, at or below them, or at or above them.
clsString KeyStatement(const clsFunctionCall& call, const clsString& table, NameWriter writeName) {
    const clsParser& parser = call.Parser;
    const int first = call.Code == FunctionFTY ? 2 : 1;
    const bool withY = call.Count > first + 1;
    const char* compare = call.Code == FunctionFMIN ? "<=" : (call.Code == FunctionFMAX ? ">=" : "=");
    clsString field = parser.ValueField;
    if (call.Code == FunctionFTY) field += clsString("[") + call.Text(1) + "]";
    const clsString x = writeName(clsString("X")), y = writeName(clsString("Y"));
    clsString sql = clsString("select ") + writeName(field) + "," + x +
                    (withY ? clsString(",") + y : clsString()) + " from " + writeName(table) + " where " + x +
                    compare + Quoted(call.Text(first));
    if (withY) sql += clsString(" and ") + y + compare + Quoted(call.Text(first + 1));
    const char* order = call.Code == FunctionFMIN ? " desc" : (call.Code == FunctionFMAX ? " asc" : nullptr);
    if (order)
        sql += clsString(" order by ") + x + order + (withY ? clsString(",") + y + order : clsString());
    return sql;
}

// The condition of FGETX, FGETF and FGETV from names and values; a name starting with "_" repeats the column
// of the name before it, and carries its own operator and value.
clsString Condition(const clsFunctionCall& call, const clsTableDescriptor* descriptor, NameWriter writeName) {
    clsString condition, column;
    int keyIndex = 0;
    for (int i = call.Code == FunctionFGETV ? 1 : 2; i < call.Count; i++) {
        if (!condition.IsEmpty()) condition += " and ";
        if (call.Code == FunctionFGETX) {
            const clsString name = call.Text(i);
            if (*name.At(0) == '_') {
                condition += column + name.From(1);
                continue;
            }
            column = name;
            while (!column.IsEmpty() && clsString("=<>!").Find(*column.At(column.Size() - 1)) >= 0)
                column.SetLength(column.Size() - 1);
            condition += name + (i + 1 < call.Count ? call.Text(++i) : clsString());
        } else {
            const clsString key =
                call.Code == FunctionFGETV
                    ? (descriptor ? descriptor->Column(keyIndex++) : clsString())
                    : (descriptor ? descriptor->KeyFields : clsString()).NextWord(',', keyIndex);
            condition += writeName(key) + "=" + Quoted(call.Text(i));
            if (keyIndex < 0) break;
        }
    }
    return condition;
}

clsString Statement(const clsFunctionCall& call, const clsString& table, NameWriter writeName) {
    const clsString from = clsString(" from ") + writeName(table);
    const clsTableDescriptor* descriptor = call.Parser.Archive->TableByName(table);
    switch (call.Code) {
    case FunctionFGET:
        if (call.Count == 1) return table;
        return clsString("select ") + call.Text(1) +
               (call.Count > 4 ? clsString(",") + call.Text(4) : clsString()) + from +
               (call.Count > 2 ? clsString(" where ") + call.Text(2) : clsString());
    case FunctionFLIST:
        return clsString("select ") + call.Text(1) +
               (call.Count > 4 ? clsString(",") + call.Text(4) : clsString()) + from + " where " +
               call.Text(2);
    case FunctionFGETX:
    case FunctionFGETF:
        return clsString("select ") + call.Text(1) + from + " where " +
               Condition(call, descriptor, writeName);
    case FunctionFGETV: {
        const clsString field = descriptor ? descriptor->Column(call.Count - 1) : clsString();
        return clsString("select ") + writeName(field) + from + " where " +
               Condition(call, descriptor, writeName);
    }
    default:
        return KeyStatement(call, table, writeName);
    }
}

// The column a look-up reads from its row.
int ValueColumn(const clsFunctionCall& call, clsArchivio& archive, int rows) {
    int column = 0;
    if (call.Code == FunctionFT || call.Code == FunctionFMIN || call.Code == FunctionFMAX)
        column = archive.FieldIndex(rows, call.Parser.ValueField);
    else if (call.Code == FunctionFGET && call.Count >= 3)
        column = archive.FieldIndex(rows, call.Text(1));
    return column < 0 ? 0 : column;
}

// FLIST: the named columns that exist, of every row, with the separator between them all. With a second
// table, a row with a key is kept only when the key is among the Y of that table's rows of the value.
bool List(clsFunctionCall& call, clsArchivio& archive, int rows, clsString& text) {
    int filter = -1;
    if (call.Count == 7) {
        const clsString field = clsArchivio::QuoteName(call.Parser.ValueField);
        filter = archive.OpenRowSet(clsString("select ") + field + ",\"X\",\"Y\" from " +
                                        clsArchivio::QuoteName(call.Text(5)) + " where " + field + "=" +
                                        Quoted(call.Text(6)) + " order by \"X\",\"Y\"",
                                    0);
    }
    nuvobase::clsCInts columns;
    const clsString fields = call.Text(1), separator = call.Text(3);
    for (int position = 0; position >= 0;) {
        const int column = archive.FieldIndex(rows, fields.NextWord(',', position).Trim());
        if (column >= 0) columns.Add(column);
    }
    bool any = false;
    for (; !archive.AtEnd(rows); archive.MoveNext(rows)) {
        const clsString key = call.Count == 7 ? archive.FieldText(rows, call.Text(4)) : clsString();
        if (!key.IsEmpty() && archive.FindInRowSet(filter, clsString("Y"), key) < 0) continue;
        for (int i = 0; i < columns.Count; i++) {
            if (any) text += separator;
            text += archive.FieldText(rows, columns.GetAt(i));
            any = true;
        }
    }
    archive.CloseRowSet(filter);
    return archive.RowCount(rows) > 0;
}

int LookUp(clsFunctionCall& call) {
    clsString table = call.Count > 0 ? call.Text(0) : clsString();
    const bool showOnly = table.Size() > 0 && *table.At(table.Size() - 1) == '?';
    if (showOnly) table.SetLength(table.Size() - 1);
    if (!CountAllowed(call) || table.IsEmpty() || (call.Count > 1 && call.At(1).IsError()) ||
        ((call.Count == 3 || call.Count == 4) && call.At(call.Count - 1).IsError()))
        return call.ResultError();
    if (showOnly) return call.ResultText(Statement(call, table, AsGiven));
    const clsString sql = Statement(call, table, clsArchivio::QuoteName);
    clsArchivio& archive = *call.Parser.Archive;
    const int rows = archive.OpenRowSet(sql, call.Code == FunctionFLIST ? 0 : 1);
    clsString value;
    const bool found = call.Code == FunctionFLIST ? List(call, archive, rows, value) : !archive.AtEnd(rows);
    if (call.Code != FunctionFLIST) value = archive.FieldText(rows, ValueColumn(call, archive, rows));
    archive.CloseRowSet(rows);
    return found ? call.ResultText(value) : call.ResultError();
}

// The first row of a statement as its X and value; false when there is none or the value is too long.
bool Point(clsArchivio& archive, const clsString& sql, const clsString& field, double& x, double& y) {
    const int rows = archive.OpenRowSet(sql, 0);
    const clsString value = archive.FieldText(rows, field);
    const bool found = !archive.AtEnd(rows) && value.Size() <= MaxInterpolatedText;
    x = archive.FieldText(rows, clsString("X")).ToDouble(0);
    y = value.ToDouble(0);
    archive.CloseRowSet(rows);
    return found;
}

// FINTER: the straight line between the rows at or below and at or above x.
int Interpolate(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    clsArchivio& archive = *call.Parser.Archive;
    const clsString field = call.Parser.ValueField, x = call.Text(1);
    const clsString select = clsString("select \"X\",") + clsArchivio::QuoteName(field) + " from " +
                             clsArchivio::QuoteName(call.Text(0)) + " where \"X\"";
    double x1, y1, x2, y2;
    if (!Point(archive, select + "<=" + Quoted(x) + " order by \"X\" desc", field, x1, y1) ||
        !Point(archive, select + ">=" + Quoted(x) + " order by \"X\" asc", field, x2, y2))
        return call.Fail(ErrorInFINTER);
    if (y2 == y1) return call.ResultNumber(y1);
    if (x2 == x1) return call.Fail(ErrorInFINTER);
    const double y = (y2 - y1) * (call.Number(1) - x1) / (x2 - x1) + y1;
    return call.ResultNumber(nuvobase::NumberCast<int32_t>(y));
}

int CountRows(clsFunctionCall& call) {
    if (call.Count != 2) return call.Fail(ErrorArgumentCount);
    clsString sql = clsString("select * from ") + clsArchivio::QuoteName(call.Text(0));
    if (!call.Text(1).IsEmpty()) sql += clsString(" where ") + call.Text(1);
    clsArchivio& archive = *call.Parser.Archive;
    const int rows = archive.OpenRowSet(sql, 0);
    if (rows < 0) return call.Fail(ErrorArgumentCount);
    const int count = archive.RowCount(rows);
    archive.CloseRowSet(rows);
    return call.ResultNumber(count);
}

clsString SearchValues(clsFunctionCall& call, const clsString& table, const clsString& column, int first) {
    nuvobase::clsCStrings values, keys;
    for (int i = first; i < call.Count; i++) values.Add(call.Text(i));
    call.Parser.Archive->ValueSearch(table, column, values, clsArchivio::ValueSearchEqual, keys);
    return keys.GetText(",");
}

int Search(clsFunctionCall& call) {
    if (call.Count < 1) return call.Fail(ErrorArgumentCount);
    clsArchivio& archive = *call.Parser.Archive;
    const clsString what = call.Text(0);
    nuvobase::clsCStrings tables;
    archive.TableList(tables);
    if (what == "table")
        return call.ResultText(archive.TableDescription(call.Count > 1 ? call.Text(1) : clsString()));
    if (what == "tables") return call.ResultText(tables.GetText(","));
    if (what == "folder") return call.ResultText(clsString("#folder#"));
    if (what == "value")
        return call.ResultText(SearchValues(call, call.Count > 1 ? call.Text(1) : clsString(), {}, 2));
    if (what != "tables formula") return call.Fail(ErrorArgumentCount);
    clsString names;
    for (int i = 0; i < tables.Count; i++) {
        const clsTableDescriptor* table = archive.TableByName(tables.GetAt(i));
        if (!table || !table->Contains(call.Count > 1 ? call.Text(1) : clsString())) continue;
        if (!names.IsEmpty()) names += ',';
        names += table->Name;
    }
    return call.ResultText(names);
}

// FTSEARCH: the value search over the value column of every table that has one.
int SearchValueColumns(clsFunctionCall& call) {
    nuvobase::clsCStrings tables;
    call.Parser.Archive->TableList(tables);
    clsString keys;
    for (int i = 0; i < tables.Count; i++) {
        const clsString found = SearchValues(call, tables.GetAt(i), call.Parser.ValueField, 0);
        if (found.IsEmpty()) continue;
        if (!keys.IsEmpty()) keys += ',';
        keys += found;
    }
    return call.ResultText(keys);
}

// SUM: numbers, and ranges such as Sheet.A1:B3 read from the cells of a sheet.
double SumOfRange(clsArchivio& archive, const clsString& range) {
    clsString sheet = range.Find('.') >= 0 ? range.BeforeChar('.') : clsString();
    sheet.RemoveChar('$');
    const clsString cells = range.Find('.') >= 0 ? range.AfterChar('.') : range;
    int firstColumn, firstRow, lastColumn, lastRow;
    cells.BeforeChar(':').ParseCell(firstColumn, firstRow);
    cells.AfterChar(':').ParseCell(lastColumn, lastRow);
    const int64_t size = (int64_t(lastColumn) - firstColumn + 1) * (int64_t(lastRow) - firstRow + 1);
    clsString id;
    if (size < 1 ||
        !archive.SingleValue(clsString("select idSheet from ZSYST_SHEETS where Code=") + Quoted(sheet), id))
        return 0;
    double sum = 0;
    int64_t added = 0;
    const int rows = archive.OpenRowSet(clsString("select idSheet,Row,\"Column\",Value from ZSYST_CELLS"), 0);
    for (; !archive.AtEnd(rows) && added < size; archive.MoveNext(rows)) {
        const int64_t row = archive.FieldInteger(rows, clsString("Row")),
                      column = archive.FieldInteger(rows, clsString("Column"));
        if (archive.FieldText(rows, clsString("idSheet")) != id || row < firstRow || row > lastRow ||
            column < firstColumn || column > lastColumn)
            continue;
        sum += archive.FieldText(rows, clsString("Value")).ToDouble(0);
        added++;
    }
    archive.CloseRowSet(rows);
    return sum;
}

int Sum(clsFunctionCall& call) {
    double sum = 0;
    for (int i = 0; i < call.Count; i++)
        sum += call.At(i).Type == clsValue::TypeName ? SumOfRange(*call.Parser.Archive, call.At(i).Text)
                                                     : call.Number(i);
    return call.ResultNumber(sum);
}

} // namespace

bool RunTableFunction(clsFunctionCall& call, int& code) {
    switch (call.Code) {
    case FunctionFT:
    case FunctionFTY:
    case FunctionFMIN:
    case FunctionFMAX:
    case FunctionFGET:
    case FunctionFGETX:
    case FunctionFGETF:
    case FunctionFGETV:
    case FunctionFLIST:
        code = LookUp(call);
        return true;
    case FunctionFINTER:
        code = Interpolate(call);
        return true;
    case FunctionFRCOUNT:
        code = CountRows(call);
        return true;
    case FunctionFSEARCH:
        code = Search(call);
        return true;
    case FunctionFTSEARCH:
        code = SearchValueColumns(call);
        return true;
    case FunctionSUM:
        code = Sum(call);
        return true;
    default:
        return false;
    }
}

} // namespace velmora
