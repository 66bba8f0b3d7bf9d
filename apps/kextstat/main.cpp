#include "platform/linux/helperclient/ExtensionLister.h"
#include "platform/linux/helperclient/LoadedExtensions.h"

#include <cstdio>

int main(int argc, char** argv) {
    const quorvane::ListerAnswer answer = quorvane::answerOfLister(
        quorvane::loadedExtensionsFile, {argv + (argc > 0 ? 1 : 0), argv + argc});
    std::fputs(answer.complaint.c_str(), stderr);
    std::fputs(answer.output.c_str(), stdout);
    return std::fflush(stdout) == 0 ? answer.status : 1;
}
