#pragma once
// Measures milliseconds on the process clock and, when given a log file,
// leaves one line of its figures there when it is destroyed.

#include "nuvobase/clsstring.h"

#include <cstdint>

namespace nuvobase {

class clsTimer {
public:
    // Starts measuring; an empty logFile means no log line.
    explicit clsTimer(const clsString& logFile = EmptyString);
    // Appends "Id TAB Laps TAB Elapsed TAB Elapsed" and CR LF to LogFile.
    virtual ~clsTimer();

    // Adds the time since the last restart to Elapsed and returns Elapsed.
    // Start stays where it is, so call it once a measurement.
    std::uint64_t Lap();
    // Returns the time since the last restart plus Elapsed, then starts anew.
    std::uint64_t Restart();

    clsString Id;      // first column of the log line
    clsString LogFile; // empty: no log
    std::uint64_t Start;
    std::uint64_t Elapsed = 0;
    std::uint64_t Laps = 1;
};

} // namespace nuvobase
