#pragma once
// A value behind a lock, and the two kinds the program shares between
// threads: a queue of text lines and a single text.

#include "nuvobase/clsmutex.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

namespace nuvobase {

// The value is created on first use and lives until the destructor. Every
// access goes through Lock; a section whose Lock fails is skipped.
template <class T> class clsProtected {
public:
    clsProtected() = default;
    virtual ~clsProtected() { delete Data; }
    clsProtected(const clsProtected&) = delete;
    clsProtected& operator=(const clsProtected&) = delete;

    // A copy of the value; an empty value when none was ever stored or the
    // lock failed.
    T Get() {
        T copy;
        if (Lock.Lock() == 0) {
            if (Data) copy = *Data;
            Lock.Unlock();
        }
        return copy;
    }

    // Stores a copy of value; false when the lock failed.
    bool Set(const T& value) {
        if (Lock.Lock() != 0) return false;
        *Value() = value;
        Lock.Unlock();
        return true;
    }

protected:
    // The value, created if needed. Call with Lock held.
    T* Value() {
        if (!Data) Data = new T;
        return Data;
    }

    T* Data = nullptr;
    clsMutex Lock;
};

// A queue of text lines: lines leave in the order they arrived.
class clsProtectedStrings : public clsProtected<clsCStrings> {
public:
    // Appends a copy of text; the line is dropped when the lock fails.
    void Push(const clsString& text);
    // Removes and returns the first line; empty text when there is none or the
    // lock failed. Never creates the list.
    clsString Pop();
    // Lines waiting.
    int Count();
};

class clsProtectedString : public clsProtected<clsString> {};

} // namespace nuvobase
