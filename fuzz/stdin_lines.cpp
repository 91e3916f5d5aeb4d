// Sends arbitrary bytes through a pipe to the standard-input reader and checks
// the lines it queues: every non-empty line, without its LF and one trailing
// CR, in order, and then the end of input.

#include "nuvobase/clsstdinthread.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

using namespace nuvobase;

namespace {

std::vector<std::string> ExpectedLines(const std::string& input) {
    std::vector<std::string> lines;
    size_t begin = 0;
    while (begin < input.size()) {
        size_t end = input.find('\n', begin);
        if (end == std::string::npos) end = input.size();
        std::string line = input.substr(begin, end - begin);
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty()) lines.push_back(line);
        begin = end + 1;
    }
    return lines;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > 60000) return 0; // the whole input must fit into the pipe at once
    int ends[2];
    if (pipe(ends) != 0) return 0;
    std::string input(reinterpret_cast<const char*>(data), size);
    if (write(ends[1], input.data(), input.size()) != static_cast<ssize_t>(input.size())) std::abort();
    close(ends[1]);
    {
        clsStdInThread reader(ends[0]);
        reader.Start(); // false when the reader has already met the end
        for (const std::string& expected : ExpectedLines(input)) {
            clsString line = reader.ReadLine(true);
            if (std::string(line.Text(), line.Size()) != expected) std::abort();
        }
        if (!reader.ReadLine(true).IsEmpty() || !reader.IsEndOfInput()) std::abort();
    }
    close(ends[0]);
    return 0;
}
