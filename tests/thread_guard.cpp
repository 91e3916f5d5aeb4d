// Linked into every test program. A test that starts a thread runs once more
// under ThreadSanitizer, which picks it by the label "threaded"; that label
// goes to the suites named Threaded*. So that no test starts a thread under
// another name and escapes that run, every thread start passes through here
// and fails a test of any other suite.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <string_view>

namespace {

using CreateThread = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
constexpr std::string_view ThreadedSuitePrefix = "Threaded";

} // namespace

// Takes the place of the C library's function for the whole test program,
// the standard library's threads included, and hands on to it (or to a
// sanitizer's wrapper of it).
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*entry)(void*),
                              void* argument) noexcept {
    static const auto create = reinterpret_cast<CreateThread>(dlsym(RTLD_NEXT, "pthread_create"));
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    if (test != nullptr && !std::string_view(test->test_suite_name()).starts_with(ThreadedSuitePrefix))
        ADD_FAILURE() << "this test starts a thread: its suite's name must begin with \""
                      << ThreadedSuitePrefix << "\", so that it runs under ThreadSanitizer too";
    return create(thread, attributes, entry, argument);
}
