#pragma once
// Line-safe output for the many threads that talk to one console, and the
// per-engine queue of output text.

#include "nuvobase/clsmutex.h"
#include "nuvobase/clsprotected.h"
#include "nuvobase/clsstring.h"
#include "nuvobase/clsstrings.h"

#include <cstdio>

namespace nuvobase {

// Each Write is atomic: a caller who wants one line from several pieces
// builds the line first and writes it once with newline. A Write that cannot
// take the lock (a Write from within a Write on the same thread) drops its
// text.
class clsTSafeOutput {
public:
    // Direct: text goes straight to stream. Otherwise it collects in Lines
    // until Flush.
    explicit clsTSafeOutput(bool direct = true, std::FILE* stream = stdout);
    // Flushes what is pending.
    virtual ~clsTSafeOutput();
    clsTSafeOutput(const clsTSafeOutput&) = delete;
    clsTSafeOutput& operator=(const clsTSafeOutput&) = delete;

    // Writes text, with newline followed by a line feed; in direct mode a
    // newline also flushes the stream.
    clsTSafeOutput& Write(const char* text, bool newline);
    clsTSafeOutput& Write(const clsString& text, bool newline);
    // Writes the pending lines of buffered mode, each non-empty one with a line
    // feed, and forgets them. Does nothing while another thread writes.
    void Flush();

protected:
    clsCStrings Lines; // pending text of buffered mode; the last entry is the open line
    bool Direct;
    clsMutex Lock; // guards Lines and the stream

private:
    clsTSafeOutput& WriteBytes(const char* text, int length, bool newline);
    // Puts text and, with newline, a line feed on the stream. Call under Lock.
    void Put(const char* text, int length, bool newline);

    std::FILE* Stream;
};

// The program's standard output.
extern clsTSafeOutput StdOut;

// The queue of output text of one engine.
class clsOutBuffer {
public:
    virtual ~clsOutBuffer() = default;

    clsProtectedStrings Buffer;
};

} // namespace nuvobase
