// One scope of variables: names to values, kept in name order ignoring ASCII case.
#pragma once

#include "formula/clsvalue.h"
#include "nuvobase/clscollection.h"
#include "nuvobase/clsstrings.h"

namespace velmora {

class clsVariabili {
public:
    // The position of name in name order, or -1.
    int IndexOf(const clsString& name) const;
    // The value at a position of IndexOf, or null.
    const clsValue* At(int index) const { return Values.ValueAt(index); }
    clsString NameAt(int index) const;
    int Count() const { return Values.Count; }
    // Adds the name at its place in the order, or replaces its value.
    void Set(const clsString& name, const clsValue& value);

private:
    nuvobase::clsCollection<clsValue> Values;

    // The first position whose name does not come before name.
    int LowerBound(const clsString& name) const;
};

} // namespace velmora
