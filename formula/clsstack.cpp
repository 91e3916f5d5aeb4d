#include "formula/clsstack.h"

namespace velmora {

void clsStack::Push(const clsValue& value) {
    if (Count >= MaxValues) return;
    Values[Count++] = value;
}

clsValue* clsStack::Pop() {
    if (Count > 0) return &Values[--Count];
    Missing.SetText(clsString("?"));
    return &Missing;
}

} // namespace velmora
