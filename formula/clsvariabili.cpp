#include "formula/clsvariabili.h"

namespace velmora {

int clsVariabili::LowerBound(const clsString& name) const {
    const nuvobase::clsVariantString key(name);
    int low = 0, high = Values.Count;
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (Values.KeyAt(middle)->Compare(key) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

int clsVariabili::IndexOf(const clsString& name) const {
    const int index = LowerBound(name);
    return index < Values.Count && NameAt(index) == name ? index : -1;
}

clsString clsVariabili::NameAt(int index) const {
    const nuvobase::clsVariant* key = Values.KeyAt(index);
    return key ? key->GetString() : clsString();
}

void clsVariabili::Set(const clsString& name, const clsValue& value) {
    const int index = LowerBound(name);
    if (index < Values.Count && NameAt(index) == name) {
        *Values.ValueAt(index) = value;
        return;
    }
    const int added = Values.Add(name, new clsValue(value));
    if (added >= 0) Values.Move(added, index);
}

} // namespace velmora
