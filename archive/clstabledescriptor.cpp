#include "archive/clstabledescriptor.h"

#include <initializer_list>

namespace velmora {

const char* clsTableDescriptor::SqlType(char letter) {
    switch (letter) {
    case 'B': // boolean
    case 'H': // 8, 16, 32 and 64-bit whole numbers
    case 'I':
    case 'L':
    case 'U':
        return "INTEGER";
    case 'F': // 64 and 32-bit floats
    case 'S':
        return "REAL";
    case 'C': // currency keeps its decimals exactly where it can
        return "NUMERIC";
    default: // text, formulas, dates and the lower-case list columns
        return "TEXT";
    }
}

int clsTableDescriptor::ColumnCount() const {
    if (Columns.IsEmpty()) return 0;
    int count = 1;
    for (int at = Columns.Find(','); at >= 0; at = Columns.Find(',', at + 1)) count++;
    return count;
}

clsString clsTableDescriptor::Column(int index) const {
    int position = 0;
    clsString column;
    for (int i = 0; i <= index && position >= 0; i++) column = Columns.NextWord(',', position);
    return column;
}

bool clsTableDescriptor::Contains(const clsString& text) const {
    for (const clsString* part : {&Name, &Columns, &Types, &KeyFields, &OrderFields, &DisplayRules})
        if (part->Compare(text, clsString::CompareContains)) return true;
    return false;
}

clsString clsTableDescriptor::Describe() const {
    clsString text = Name + " (";
    for (int i = 0, count = ColumnCount(); i < count; i++) {
        if (i > 0) text += ", ";
        text += Column(i) + " " + clsString(*Types.At(i) ? *Types.At(i) : 'T');
    }
    return text + ") key " + KeyFields + " order " + OrderFields;
}

} // namespace velmora
