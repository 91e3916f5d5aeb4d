#include "nuvobase/clsprotected.h"

#include <utility>

namespace nuvobase {

void clsProtectedStrings::Push(const clsString& text) {
    if (Lock.Lock() != 0) return;
    Value()->Add(text);
    Lock.Unlock();
}

clsString clsProtectedStrings::Pop() {
    clsString line;
    if (Lock.Lock() != 0) return line;
    if (Data && Data->Count > 0) {
        line = std::move(*Data->At(0));
        Data->Delete(0);
    }
    Lock.Unlock();
    return line;
}

int clsProtectedStrings::Count() {
    int count = 0;
    if (Lock.Lock() != 0) return count;
    if (Data) count = Data->Count;
    Lock.Unlock();
    return count;
}

} // namespace nuvobase
