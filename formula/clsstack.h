// The value stack of one evaluation: a fixed array, filled from the bottom.
#pragma once

#include <cstdint>

#include "formula/clsvalue.h"

namespace velmora {

class clsStack {
public:
    static constexpr int Size = 512;
    // Values accepted; a push beyond them is dropped.
    static constexpr int MaxValues = Size - 1;

    virtual ~clsStack() = default;

    int32_t Count = 0;
    clsValue Values[Size];

    // Stores a copy; dropped silently once MaxValues are held.
    void Push(const clsValue& value);
    // The top entry, which is then no longer counted; on an empty stack a value holding "?".
    clsValue* Pop();
    void Clear() { Count = 0; }

private:
    clsValue Missing;
};

} // namespace velmora
