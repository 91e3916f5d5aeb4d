// How long a GUI waits from starting the program to its "uciok": the program is started over pipes,
// sent "uci" at once, and timed until the line arrives. Run for each engine the program can start with.
//
// uci-startup [program] [runs]; the program defaults to the corvane beside this one.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

std::string ProgramBesideThis() {
    char path[4096];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) return "corvane";
    std::string self(path, size_t(length));
    return self.substr(0, self.rfind('/') + 1) + "corvane";
}

// Milliseconds from the start of the process to its "uciok"; a negative value when it never came.
double TimeToUciOk(const std::string& program, const char* option) {
    int input[2], output[2];
    if (pipe(input) != 0 || pipe(output) != 0) return -1;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input[0], 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], 1);
    posix_spawn_file_actions_addclose(&actions, input[1]);
    posix_spawn_file_actions_addclose(&actions, output[0]);
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    if (option) argv.push_back(const_cast<char*>(option));
    argv.push_back(nullptr);

    const Clock::time_point started = Clock::now();
    pid_t child = 0;
    const bool spawned = posix_spawn(&child, program.c_str(), &actions, nullptr, argv.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(input[0]);
    close(output[1]);
    double ms = -1;
    if (spawned) {
        const char request[] = "uci\n";
        if (write(input[1], request, sizeof request - 1) == ssize_t(sizeof request - 1)) {
            std::string seen;
            char chunk[4096];
            for (ssize_t count; (count = read(output[0], chunk, sizeof chunk)) > 0;) {
                seen.append(chunk, size_t(count));
                if (seen.find("uciok\n") != std::string::npos) {
                    ms = std::chrono::duration<double, std::milli>(Clock::now() - started).count();
                    break;
                }
            }
        }
        const char quit[] = "quit\n";
        if (write(input[1], quit, sizeof quit - 1) < 0) kill(child, SIGTERM);
        waitpid(child, nullptr, 0);
    }
    close(input[1]);
    close(output[0]);
    return ms;
}

void Report(const std::string& program, const char* option, int runs) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        const double ms = TimeToUciOk(program, option);
        if (ms < 0) {
            std::printf("%-18s no uciok\n", option ? option : "(default engine)");
            return;
        }
        times.push_back(ms);
    }
    std::sort(times.begin(), times.end());
    std::printf("%-18s uci to uciok from process start: min %.2f ms, median %.2f ms, max %.2f ms (%d runs)\n",
                option ? option : "(default engine)", times.front(), times[times.size() / 2], times.back(),
                runs);
}

} // namespace

int main(int argc, char** argv) {
    const std::string program = argc > 1 ? argv[1] : ProgramBesideThis();
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 20;
    Report(program, nullptr, runs);
    Report(program, "-engine=corvane", runs);
    return 0;
}
