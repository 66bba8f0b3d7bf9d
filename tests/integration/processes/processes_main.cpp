// Runs the tests in a PID namespace of their own: whatever goes wrong in there, no signal reaches a
// process outside, and all that was started ends with the tests.

#include "tests/integration/processes/PidNamespace.h"

#include <QCoreApplication>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

using namespace quorvane::test;

namespace {

int runTests(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QCoreApplication application(argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace

int main(int argc, char** argv) {
    const bool isListing = std::any_of(argv, argv + argc, [](const char* argument) {
        return std::strcmp(argument, "--gtest_list_tests") == 0;
    });
    if (isListing) {
        return runTests(argc, argv);
    }
    if (PidNamespace::isFirstProcess()) {
        return PidNamespace::runBelow([&] { return runTests(argc, argv); });
    }
    PidNamespace::enter(argv);   // does not return when that is permitted
    return runTests(argc, argv); // each says that it is skipped
}
