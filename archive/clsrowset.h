// The rows a statement gave, read to the end when it ran, with a current row that moves forward.
#pragma once

#include <cstdint>
#include <vector>

#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace velmora {

using nuvobase::clsString;

class clsRowSet {
public:
    nuvobase::clsCStrings Columns;            // names as the statement gave them
    std::vector<std::vector<clsString>> Rows; // each column's text; an SQL NULL is empty text
    int64_t Bytes = 0;                        // the text held, to bound what one statement may bring in
    int Current = 0;                          // the row the field readers look at
    // Filled when the rows come from one table and can be written back: the table, the table's name of
    // each column and the rowid of each row (0 for a row the table did not take).
    clsString Table;
    nuvobase::clsCStrings TableColumns;
    std::vector<int64_t> RowIds;

    int RowCount() const { return int(Rows.size()); }
    bool AtEnd() const { return Current >= RowCount(); }
    bool Writable() const { return !Table.IsEmpty(); }
    // The column's index, ignoring ASCII case; -1 when there is none.
    int FieldIndex(const clsString& name) const;
    // The text of a column of the current row; empty past the end or for a bad index.
    clsString FieldText(int index) const;
};

} // namespace velmora
