// What the archive keeps beside the rows of a table: its columns with their type letters, the columns that
// identify a row and give its default order, and the rules that say how its columns are shown.
#pragma once

#include "nuvobase/clsstring.h"

namespace velmora {

using nuvobase::clsString;

class clsTableDescriptor {
public:
    clsString Name;
    clsString Columns;      // column names, separated by commas
    clsString Types;        // one type letter per column
    clsString KeyFields;    // the columns that identify a row, separated by commas
    clsString OrderFields;  // the columns of the default order
    clsString DisplayRules; // "column=table.key:text" links and "column=|'value':'text'..." enumerations

    // The SQL type of a column of type letter: numbers keep their affinity, every other letter is text.
    static const char* SqlType(char letter);
    // The column names one by one.
    int ColumnCount() const;
    clsString Column(int index) const;
    // True when the name, columns, types, key, order or display rules contain text, ignoring ASCII case.
    bool Contains(const clsString& text) const;
    // One line: the name, each column with its letter, the key and the order.
    clsString Describe() const;
};

} // namespace velmora
