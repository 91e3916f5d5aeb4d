#include "nuvobase/clstsafeoutput.h"

#include <cstring>

namespace nuvobase {

clsTSafeOutput StdOut;

clsTSafeOutput::clsTSafeOutput(bool direct, std::FILE* stream) : Direct(direct), Stream(stream) {}

clsTSafeOutput::~clsTSafeOutput() {
    Flush();
}

clsTSafeOutput& clsTSafeOutput::Write(const char* text, bool newline) {
    return WriteBytes(text, text ? static_cast<int>(std::strlen(text)) : 0, newline);
}

clsTSafeOutput& clsTSafeOutput::Write(const clsString& text, bool newline) {
    return WriteBytes(text.Text(), text.Size(), newline);
}

clsTSafeOutput& clsTSafeOutput::WriteBytes(const char* text, int length, bool newline) {
    if (Lock.Lock() != 0) return *this;
    if (Direct) {
        Put(text, length, newline);
        if (newline) std::fflush(Stream);
    } else {
        if (Lines.Count == 0)
            Lines.Add(clsString().Assign(text, length));
        else
            Lines.At(Lines.Count - 1)->Append(text, length);
        // The next Write starts a new line.
        if (newline) Lines.Add(clsString());
    }
    Lock.Unlock();
    return *this;
}

void clsTSafeOutput::Put(const char* text, int length, bool newline) {
    if (length > 0) std::fwrite(text, 1, length, Stream);
    if (newline) std::fputc('\n', Stream);
}

void clsTSafeOutput::Flush() {
    if (Lock.TryLock() != 0) return;
    if (Lines.Count > 0) {
        for (int i = 0; i < Lines.Count; ++i) {
            const clsString* line = Lines.At(i);
            if (!line->IsEmpty()) Put(line->Text(), line->Size(), true);
        }
        std::fflush(Stream);
        Lines.Clear();
    }
    Lock.Unlock();
}

} // namespace nuvobase
