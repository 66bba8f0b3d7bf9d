#include "apps/kextstat/LoadedExtensions.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage = "usage: kextstat [-l] [-b IDENTIFIER]\n"
                              "Lists the extensions that Quorvane's helper has loaded.\n"
                              "  -l             no header above the list\n"
                              "  -b IDENTIFIER  only the extension of this name\n"
                              "The exit status is 0 also when nothing is loaded.\n";

int refuse(const char* argument) {
    std::fprintf(stderr, "kextstat: unexpected argument \"%s\"; see kextstat --help.\n", argument);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    bool hasHeader = true;
    std::string_view identifier;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            std::fputs(usage, stdout);
            return 0;
        }
        if (argument == "-l") {
            hasHeader = false;
        } else if (argument == "-b" && i + 1 < argc && argv[i + 1][0] != '\0') {
            identifier = argv[++i];
        } else {
            return refuse(argv[i]);
        }
    }
    std::string list = quorvane::loadedExtensions(quorvane::loadedExtensionsFile, identifier);
    if (hasHeader) {
        list.insert(0, quorvane::loadedExtensionsHeader);
    }
    std::fputs(list.c_str(), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
