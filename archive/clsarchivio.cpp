#include "archive/clsarchivio.h"

#include <sqlite3.h>

namespace velmora {

namespace {

// Work one statement may do, in steps of the database's virtual machine, before it is stopped.
constexpr int ProgressStep = 1000;
constexpr int ProgressBudget = 20000; // times ProgressStep
// Longest text or blob a statement may build.
constexpr int MaxValueBytes = 16 << 20;
// Memory the database layer may take in all.
constexpr sqlite3_int64 HeapLimit = 256 << 20;

int StopRunaway(void* counter) {
    return ++*static_cast<int*>(counter) > ProgressBudget;
}

// Statements may read and change the tables of this database, nothing beyond it.
int Authorise(void*, int action, const char*, const char*, const char*, const char*) {
    switch (action) {
    case SQLITE_ATTACH:
    case SQLITE_DETACH:
    case SQLITE_PRAGMA:
        return SQLITE_DENY;
    default:
        return SQLITE_OK;
    }
}

// Nothing but blanks and semicolons behind the first statement.
bool OnlyOneStatement(const char* tail) {
    while (tail && (*tail == ' ' || *tail == ';' || *tail == '\t' || *tail == '\r' || *tail == '\n')) tail++;
    return !tail || !*tail;
}

} // namespace

clsArchivio::clsArchivio() : RowSets(true) {
    sqlite3_hard_heap_limit64(HeapLimit);
    if (sqlite3_open_v2(":memory:", &Database,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_MEMORY,
                        nullptr) != SQLITE_OK) {
        sqlite3_close(Database);
        Database = nullptr;
        return;
    }
    sqlite3_limit(Database, SQLITE_LIMIT_ATTACHED, 0);
    sqlite3_limit(Database, SQLITE_LIMIT_LENGTH, MaxValueBytes);
    sqlite3_db_config(Database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    // A name in double quotes is always a name, never text, so that a missing column fails.
    sqlite3_db_config(Database, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
    sqlite3_db_config(Database, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
    Execute("pragma temp_store = memory");
    sqlite3_set_authorizer(Database, Authorise, nullptr);
    sqlite3_progress_handler(Database, ProgressStep, StopRunaway, &ProgressCount);
    CreateSystemTables();
}

clsArchivio::~clsArchivio() {
    RowSets.Clear();
    sqlite3_close(Database);
}

clsString clsArchivio::QuoteName(const clsString& name) {
    return name.Quote('"');
}

clsString clsArchivio::QuoteNames(const clsString& names) {
    clsString quoted;
    int position = 0;
    while (position >= 0) {
        if (!quoted.IsEmpty()) quoted += ',';
        quoted += QuoteName(names.NextWord(',', position));
    }
    return quoted;
}

sqlite3_stmt* clsArchivio::Prepare(const clsString& sql) const {
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    ProgressCount = 0;
    if (!Database || sqlite3_prepare_v2(Database, sql.Text(), -1, &statement, &tail) != SQLITE_OK ||
        !statement || !OnlyOneStatement(tail)) {
        sqlite3_finalize(statement);
        return nullptr;
    }
    return statement;
}

bool clsArchivio::ReadRows(sqlite3_stmt* statement, clsRowSet& rows, bool rowidFirst) const {
    const int first = rowidFirst ? 1 : 0;
    const int columns = sqlite3_column_count(statement);
    for (int i = first; i < columns; i++) rows.Columns.Add(clsString(sqlite3_column_name(statement, i)));
    int step;
    while ((step = sqlite3_step(statement)) == SQLITE_ROW) {
        if (rowidFirst) rows.RowIds.push_back(sqlite3_column_int64(statement, 0));
        std::vector<clsString>& row = rows.Rows.emplace_back(columns - first);
        for (int i = first; i < columns; i++) {
            clsString& cell = row[i - first];
            // Floats are written as the rest of the program writes numbers.
            if (sqlite3_column_type(statement, i) == SQLITE_FLOAT) {
                cell.FromDouble(sqlite3_column_double(statement, i), -1);
            } else {
                const char* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, i));
                cell.Assign(text, sqlite3_column_bytes(statement, i));
            }
            rows.Bytes += cell.Size() + int64_t(sizeof(clsString));
        }
        if (rows.Bytes > MaxRowSetBytes) break;
    }
    sqlite3_finalize(statement);
    return step == SQLITE_DONE;
}

bool clsArchivio::Query(const clsString& sql, clsRowSet& rows) const {
    sqlite3_stmt* statement = Prepare(sql);
    return statement && ReadRows(statement, rows, false);
}

bool clsArchivio::Execute(const clsString& sql) {
    clsRowSet rows;
    return Query(sql, rows);
}

bool clsArchivio::CreateTable(const clsTableDescriptor& table) {
    if (TableByName(table.Name)) return false;
    clsString sql = clsString("create table ") + QuoteName(table.Name) + " (";
    for (int i = 0, count = table.ColumnCount(); i < count; i++) {
        if (i > 0) sql += ", ";
        sql += QuoteName(table.Column(i)) + " " + clsTableDescriptor::SqlType(*table.Types.At(i));
    }
    if (!Execute(sql + ")")) return false;
    Tables.Add(new clsTableDescriptor(table));
    return true;
}

bool clsArchivio::InsertRow(const clsString& table, const clsString& columns,
                            std::initializer_list<clsSqlValue> values) {
    clsString sql = clsString("insert into ") + QuoteName(table) + " (" + QuoteNames(columns) + ") values(";
    bool first = true;
    for (const clsSqlValue& value : values) {
        if (!first) sql += ',';
        sql += value.Sql;
        first = false;
    }
    return Execute(sql + ")");
}

int clsArchivio::OpenRowSet(const clsString& sql, int mode) {
    int handle = 0;
    while (handle < RowSets.Count && RowSets.At(handle)) handle++;
    if (handle >= MaxRowSets) return -1;
    auto* rows = new clsRowSet;
    if (!(mode == ModeWritable && QueryWritable(sql, *rows))) {
        delete rows; // the writable attempt may have read part of the rows
        rows = new clsRowSet;
        if (!Query(sql, *rows)) {
            delete rows;
            return -1;
        }
    }
    if (handle < RowSets.Count)
        RowSets.Items[handle] = rows;
    else
        RowSets.Add(rows);
    return handle;
}

int clsArchivio::RowCount(int handle) const {
    const clsRowSet* rows = RowSetAt(handle);
    return rows ? rows->RowCount() : -1;
}

bool clsArchivio::AtEnd(int handle) const {
    const clsRowSet* rows = RowSetAt(handle);
    return !rows || rows->AtEnd();
}

int clsArchivio::MoveNext(int handle) {
    clsRowSet* rows = RowSetAt(handle);
    if (!rows || rows->AtEnd()) return -1;
    return ++rows->Current < rows->RowCount() ? rows->Current : -1;
}

int clsArchivio::FieldIndex(int handle, const clsString& name) const {
    const clsRowSet* rows = RowSetAt(handle);
    return rows ? rows->FieldIndex(name) : -1;
}

clsString clsArchivio::FieldText(int handle, const clsString& name) const {
    return FieldText(handle, FieldIndex(handle, name));
}

clsString clsArchivio::FieldText(int handle, int index) const {
    const clsRowSet* rows = RowSetAt(handle);
    return rows ? rows->FieldText(index) : clsString();
}

int64_t clsArchivio::FieldInteger(int handle, const clsString& name) const {
    return nuvobase::VariantText::ToInt64(FieldText(handle, name));
}

int clsArchivio::FindInRowSet(int handle, const clsString& column, const clsString& value) {
    clsRowSet* rows = RowSetAt(handle);
    const int index = FieldIndex(handle, column);
    if (!rows || index < 0) return -1;
    for (int row = 0; row < rows->RowCount(); row++) {
        if (rows->Rows[row][index] == value) {
            rows->Current = row;
            return row;
        }
    }
    return -1;
}

void clsArchivio::CloseRowSet(int handle) {
    if (!RowSetAt(handle)) return;
    delete RowSets.Items[handle];
    RowSets.Items[handle] = nullptr;
}

bool clsArchivio::SingleValue(const clsString& sql, clsString& value) {
    clsRowSet rows;
    value.Clear();
    if (!Query(sql, rows) || rows.AtEnd()) return false;
    value = rows.FieldText(0);
    return true;
}

const clsTableDescriptor* clsArchivio::TableByName(const clsString& name) const {
    for (int i = 0; i < Tables.Count; i++)
        if (Tables.At(i)->Name == name) return Tables.At(i);
    return nullptr;
}

void clsArchivio::TableList(nuvobase::clsCStrings& list) const {
    list.Clear();
    clsRowSet rows;
    if (!Query("select name from sqlite_master where type='table' order by rowid", rows)) return;
    for (const auto& row : rows.Rows) list.Add(row[0]);
}

clsString clsArchivio::TableDescription(const clsString& name) const {
    const clsTableDescriptor* table = TableByName(name);
    return table ? table->Describe() : clsString();
}

void clsArchivio::ValueSearch(const clsString& table, const clsString& column,
                              const nuvobase::clsCStrings& values, int flags, nuvobase::clsCStrings& keys) {
    keys.Clear();
    const clsTableDescriptor* descriptor = TableByName(table);
    if (!descriptor || values.Count == 0) return;
    const clsString key = descriptor->KeyFields.BeforeChar(',');
    clsString where;
    for (int c = 0, count = descriptor->ColumnCount(); c < count; c++) {
        const clsString name = descriptor->Column(c);
        if (!column.IsEmpty() && name != column) continue;
        for (int v = 0; v < values.Count; v++) {
            if (!where.IsEmpty()) where += " or ";
            const clsString value = values.GetAt(v);
            where +=
                QuoteName(name) + (flags == ValueSearchEqual
                                       ? clsString(" = ") + value.Quote('\'')
                                       : clsString(" like ") + (clsString("%") + value + "%").Quote('\''));
        }
    }
    clsRowSet rows;
    if (where.IsEmpty() ||
        !Query(clsString("select ") + QuoteName(key) + " from " + QuoteName(table) + " where " + where, rows))
        return;
    for (const auto& row : rows.Rows) keys.Add(row[0]);
}

} // namespace velmora
