// Row sets that scripts walk and change: a plain select from one table is read with the rowid of each row,
// so that a changed field or a new row reaches the table as well.
#include <sqlite3.h>

#include <algorithm>

#include "archive/clsarchivio.h"

namespace velmora {

namespace {

constexpr char SelectWord[] = "select";
constexpr int SelectLength = sizeof(SelectWord) - 1;

// A select whose rows stand one for one for rows of its table, as far as the text can tell: the words
// that merge or drop rows keep it read-only.
bool IsPlainSelect(const clsString& sql) {
    clsString text = sql;
    text.Trim(' ');
    if (text.Compare(SelectWord, clsString::CompareStartsWith) != 1) return false;
    const char after = *text.At(SelectLength);
    if (after != ' ' && after != '\t' && after != '\r' && after != '\n') return false;
    for (const char* word : {"distinct", "group", "union", "intersect", "except"})
        if (text.FindOutsideQuotes(word, 0, '\'', '"') >= 0) return false;
    return true;
}

} // namespace

bool clsArchivio::QueryWritable(const clsString& sql, clsRowSet& rows) const {
    if (!IsPlainSelect(sql)) return false;
    clsString text = sql;
    text.Trim(' ');
    sqlite3_stmt* statement = Prepare(clsString(SelectWord) + " rowid, " + text.From(SelectLength));
    if (!statement) return false;
    // Every column must come straight from the table of the rowid.
    const char* table = sqlite3_column_table_name(statement, 0);
    const int columns = sqlite3_column_count(statement);
    for (int i = 0; table && i < columns; i++) {
        const char* origin = sqlite3_column_table_name(statement, i);
        if (!origin || clsString(origin) != clsString(table)) table = nullptr;
    }
    if (!table) {
        sqlite3_finalize(statement);
        return false;
    }
    rows.Table = table;
    for (int i = 1; i < columns; i++)
        rows.TableColumns.Add(clsString(sqlite3_column_origin_name(statement, i)));
    return ReadRows(statement, rows, true);
}

int clsArchivio::RowIndex(int handle) const {
    const clsRowSet* rows = RowSetAt(handle);
    return rows && !rows->AtEnd() ? rows->Current : -1;
}

bool clsArchivio::MoveTo(int handle, int index) {
    clsRowSet* rows = RowSetAt(handle);
    if (!rows || index < 0) return false;
    rows->Current = std::min(index, rows->RowCount());
    return true;
}

int clsArchivio::AddRow(int handle, int copyOf) {
    clsRowSet* rows = RowSetAt(handle);
    if (!rows) return -1;
    const bool copy = copyOf >= 0 && copyOf < rows->RowCount();
    std::vector<clsString> row = copy ? rows->Rows[copyOf] : std::vector<clsString>(rows->Columns.Count);
    int64_t rowid = 0;
    if (rows->Writable()) {
        const clsString table = QuoteName(rows->Table);
        clsString columns;
        for (int i = 0; i < rows->TableColumns.Count; i++)
            columns += clsString(i ? "," : "") + QuoteName(rows->TableColumns.GetAt(i));
        const int64_t source = copy ? rows->RowIds[copyOf] : 0;
        const clsString sql = source > 0
                                  ? clsString("insert into ") + table + " (" + columns + ") select " +
                                        columns + " from " + table + " where rowid = " + clsString(source)
                                  : clsString("insert into ") + table + " default values";
        // A row the table refuses, a copied unique key for one, stays in the row set alone.
        if (Execute(sql)) rowid = sqlite3_last_insert_rowid(Database);
    }
    rows->Rows.push_back(std::move(row));
    if (rows->Writable()) rows->RowIds.push_back(rowid);
    rows->Current = rows->RowCount() - 1;
    return rows->Current;
}

bool clsArchivio::SetFieldText(int handle, const clsString& name, const clsString& text) {
    clsRowSet* rows = RowSetAt(handle);
    const int index = FieldIndex(handle, name);
    if (!rows || rows->AtEnd() || index < 0) return false;
    rows->Rows[rows->Current][index] = text;
    const int64_t rowid = rows->Writable() ? rows->RowIds[rows->Current] : 0;
    if (rowid <= 0) return true;
    return Execute(clsString("update ") + QuoteName(rows->Table) + " set " +
                   QuoteName(rows->TableColumns.GetAt(index)) + " = " + text.Quote('\'') +
                   " where rowid = " + clsString(rowid));
}

} // namespace velmora
