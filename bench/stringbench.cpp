// Times the text operations that other parts run in bulk: appending, replacing, word reading, number
// reading and comparing. Prints one line per operation with its time in milliseconds.
#include <chrono>
#include <cstdio>

#include "nuvobase/clsstring.h"

using nuvobase::clsString;

// Runs work once and prints how long it took; result keeps the work from being optimised away.
template <class Work> static void Time(const char* name, Work work) {
    auto start = std::chrono::steady_clock::now();
    long long result = work();
    auto elapsed =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    std::printf("%-40s %9.1f ms  (%lld)\n", name, elapsed, result);
}

int main() {
    const int bytes = 10 * 1000 * 1000;
    Time("Append one character, 10 MB", [&] {
        clsString text;
        for (int i = 0; i < bytes; i++) text += char('a' + i % 26);
        return (long long)text.Size();
    });
    Time("Append a 5-byte word, 10 MB", [&] {
        clsString text;
        for (int i = 0; i < bytes / 5; i++) text += "e2e4 ";
        return (long long)text.Size();
    });

    clsString moves;
    moves.Reserve(bytes + 1);
    for (int i = 0; i < bytes / 5; i++) moves += "e2e4 ";
    Time("ReplaceAll growing, 10 MB", [&] {
        clsString text(moves);
        return (long long)text.ReplaceAll("e4", "e4+").Size();
    });
    Time("ReplaceAll shrinking, 10 MB", [&] {
        clsString text(moves);
        return (long long)text.ReplaceAll("E2", "").Size();
    });
    Time("NextWord over 10 MB", [&] {
        long long words = 0;
        for (int position = 0; position >= 0; words++) moves.NextWord(' ', position);
        return words;
    });

    Time("ToDouble, 1M texts", [&] {
        const clsString numbers[] = {clsString("1,234.5"), clsString("-0.001"), clsString("42"),
                                     clsString("3.14159")};
        double sum = 0;
        for (int i = 0; i < 1000000; i++) sum += numbers[i % 4].ToDouble();
        return (long long)sum;
    });
    Time("Compare equal ignoring case, 10M", [&] {
        clsString left("SetOption"), right("setoption");
        long long equal = 0;
        for (int i = 0; i < bytes; i++) equal += left.Compare(right, clsString::CompareEqual);
        return equal;
    });
    return 0;
}
