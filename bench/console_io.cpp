// Figures of the console layer: how long a line takes from the input pipe to
// ReadLine, and how many lines per second the line-safe output writes.

#include "nuvobase/clsstdinthread.h"
#include "nuvobase/clstsafeoutput.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <unistd.h>
#include <vector>

using namespace nuvobase;
using Clock = std::chrono::steady_clock;

namespace {

double Microseconds(Clock::duration span) {
    return std::chrono::duration<double, std::micro>(span).count();
}

void InputLatency(int lines) {
    int ends[2];
    if (pipe(ends) != 0) return;
    std::vector<double> spans;
    {
        clsStdInThread reader(ends[0]);
        reader.Start();
        for (int i = 0; i < lines; ++i) {
            Clock::time_point sent = Clock::now();
            if (write(ends[1], "isready\n", 8) != 8) break;
            reader.ReadLine(true);
            spans.push_back(Microseconds(Clock::now() - sent));
        }
    }
    close(ends[1]);
    close(ends[0]);
    std::sort(spans.begin(), spans.end());
    if (spans.empty()) return;
    std::printf("input line to ReadLine(true): median %.0f us, 95%% %.0f us, max %.0f us over %zu lines\n",
                spans[spans.size() / 2], spans[spans.size() * 95 / 100], spans.back(), spans.size());
}

void OutputRate(bool direct, int lines) {
    std::FILE* sink = std::fopen("/dev/null", "w");
    if (!sink) return;
    Clock::time_point start = Clock::now();
    {
        clsTSafeOutput output(direct, sink);
        clsString line("info depth 12 score cp 31 nodes 1234567 pv e2e4 e7e5");
        for (int i = 0; i < lines; ++i) output.Write(line, true);
    }
    double seconds = Microseconds(Clock::now() - start) / 1e6;
    std::fclose(sink);
    std::printf("%s output: %.0f lines/s\n", direct ? "direct" : "buffered", lines / seconds);
}

} // namespace

int main() {
    InputLatency(300);
    OutputRate(true, 500000);
    OutputRate(false, 500000);
    return 0;
}
