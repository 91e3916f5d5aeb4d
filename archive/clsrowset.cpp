#include "archive/clsrowset.h"

namespace velmora {

int clsRowSet::FieldIndex(const clsString& name) const {
    for (int i = 0; i < Columns.Count; i++)
        if (Columns.GetAt(i) == name) return i;
    return -1;
}

clsString clsRowSet::FieldText(int index) const {
    if (AtEnd() || index < 0 || index >= int(Rows[Current].size())) return clsString();
    return Rows[Current][index];
}

} // namespace velmora
