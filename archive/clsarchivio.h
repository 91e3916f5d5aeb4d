// The archive under the formula language: named tables in a private in-memory SQLite database, the
// descriptors kept beside them, and the row sets that statements give. A new archive holds the nineteen
// system tables with their first rows. Nothing here touches a file: statements cannot attach databases,
// and each is bounded in work, memory and result size, so a typed statement fails instead of hanging.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "archive/clsrowset.h"
#include "archive/clstabledescriptor.h"
#include "nuvobase/clscollection.h"
#include "nuvobase/clsstrings.h"

struct sqlite3;
struct sqlite3_stmt;

namespace velmora {

// One value of an insert statement, written as it stands in SQL: text in single quotes with inner quotes
// doubled, numbers as they are.
class clsSqlValue {
public:
    clsSqlValue(const char* text) : Sql(clsString(text).Quote('\'')) {}
    clsSqlValue(int value) : Sql(value) {}
    clsString Sql;
};

class clsArchivio {
public:
    // Open row sets at once; a statement beyond them fails.
    static constexpr int MaxRowSets = 256;
    // Text one row set may hold, in bytes.
    static constexpr int64_t MaxRowSetBytes = 64 << 20;

    clsArchivio();
    virtual ~clsArchivio();
    clsArchivio(const clsArchivio&) = delete;
    clsArchivio& operator=(const clsArchivio&) = delete;

    // Creates the system tables in their order; the first rows go only into tables made now.
    void CreateSystemTables();
    // Makes the table with a column per name, typed by its letter, and keeps the descriptor. False, and
    // nothing done, when a table of that name exists or the statement fails.
    bool CreateTable(const clsTableDescriptor& table);
    // insert into table (columns) values(values). False when the statement fails.
    bool InsertRow(const clsString& table, const clsString& columns,
                   std::initializer_list<clsSqlValue> values);

    // Runs one statement and keeps its rows. Returns the handle (0 or more), or -1 when the statement fails.
    // Every mode gives every row; with ModeWritable the rows of a plain select from one table remember
    // where they came from, so that SetFieldText and AddRow change the table too.
    static constexpr int ModeWritable = 2;
    int OpenRowSet(const clsString& sql, int mode);
    // The rows of the set; -1 for a bad handle.
    int RowCount(int handle) const;
    // True past the last row, on an empty set and for a bad handle.
    bool AtEnd(int handle) const;
    // Steps to the next row; -1 once past the last one or for a bad handle.
    int MoveNext(int handle);
    // -1 when there is no such column or the handle is bad.
    int FieldIndex(int handle, const clsString& name) const;
    clsString FieldText(int handle, const clsString& name) const;
    clsString FieldText(int handle, int index) const;
    // The column's text read as a whole number.
    int64_t FieldInteger(int handle, const clsString& name) const;
    // Moves to the first row whose column holds value (ignoring ASCII case); its index, or -1 when none does.
    int FindInRowSet(int handle, const clsString& column, const clsString& value);
    void CloseRowSet(int handle);
    // The rows of a handle, or null.
    const clsRowSet* RowSet(int handle) const { return RowSetAt(handle); }
    // The index of the current row; -1 past the last one or for a bad handle.
    int RowIndex(int handle) const;
    // Makes the row at index current; an index past the last row leaves the set at its end. False for a
    // negative index or a bad handle.
    bool MoveTo(int handle, int index);
    // Appends a row, a copy of the row at copyOf or empty when there is no such row, and makes it current.
    // Its index, or -1 for a bad handle.
    int AddRow(int handle, int copyOf);
    // Gives the column of the current row the text. False when there is no current row or no such column, or
    // the table refused the value.
    bool SetFieldText(int handle, const clsString& name, const clsString& text);
    // Set when a script wrote into a row set.
    bool Changed = false;
    // The first column of the first row; false when the statement fails or gives no row.
    bool SingleValue(const clsString& sql, clsString& value);

    // The descriptor of a table made by CreateTable, or null.
    const clsTableDescriptor* TableByName(const clsString& name) const;
    // The names of all tables of the database, those made by statements too.
    void TableList(nuvobase::clsCStrings& list) const;
    // The descriptor's line for a known table, else empty text.
    clsString TableDescription(const clsString& name) const;
    // The texts of the first key column of the rows where column equals one of values (with ValueSearchEqual)
    // or contains one of them; an empty column searches every column of the table.
    static constexpr int ValueSearchEqual = 2;
    void ValueSearch(const clsString& table, const clsString& column, const nuvobase::clsCStrings& values,
                     int flags, nuvobase::clsCStrings& keys);

    // A name as an SQL identifier in double quotes, so that names such as @0, Order or Table work.
    static clsString QuoteName(const clsString& name);
    // Each name of a comma list quoted.
    static clsString QuoteNames(const clsString& names);

    // The file of commands that goes with the archive.
    clsString CommandFile;

private:
    sqlite3* Database = nullptr;
    mutable int ProgressCount = 0; // steps of the running statement, in units of the progress handler
    nuvobase::clsPCollection<clsTableDescriptor> Tables;
    nuvobase::clsPCollection<clsRowSet> RowSets; // a closed set leaves its slot null for the next one

    // Runs a statement that gives no rows.
    bool Execute(const clsString& sql);
    // Runs one statement into rows; false when it fails or its rows pass MaxRowSetBytes.
    bool Query(const clsString& sql, clsRowSet& rows) const;
    // Prepares one statement alone; null when it fails or more follow it.
    sqlite3_stmt* Prepare(const clsString& sql) const;
    // Steps the prepared statement to its end into rows and finalizes it. With a rowid first, column 0 goes
    // to RowIds.
    bool ReadRows(sqlite3_stmt* statement, clsRowSet& rows, bool rowidFirst) const;
    // Query for a plain select from one table, with the rowid of each row; false when the statement is no
    // such select.
    bool QueryWritable(const clsString& sql, clsRowSet& rows) const;
    clsRowSet* RowSetAt(int handle) const { return RowSets.At(handle); }
};

} // namespace velmora
