#include "platform/linux/helperclient/ExtensionLister.h"

#include "platform/linux/helperclient/LoadedExtensions.h"

namespace quorvane {

namespace {

constexpr const char* usage = "usage: kextstat [-l] [-b IDENTIFIER]\n"
                              "Lists the extensions that Quorvane's helper has loaded.\n"
                              "  -l             no header above the list\n"
                              "  -b IDENTIFIER  only the extension of this name\n"
                              "The exit status is 0 also when nothing is loaded.\n";

ListerAnswer refusal(const std::string& argument) {
    return {2, {}, "kextstat: unexpected argument \"" + argument + "\"; see kextstat --help.\n"};
}

} // namespace

ListerAnswer answerOfLister(const char* file, const std::vector<std::string>& arguments) {
    std::string output(loadedExtensionsHeader);
    std::string identifier;
    for (auto each = arguments.begin(); each != arguments.end(); ++each) {
        if (*each == "--help") {
            return {0, usage, {}};
        }
        if (*each == "-l") {
            output.clear();
        } else if (*each == "-b" && each + 1 != arguments.end() && !(each + 1)->empty()) {
            identifier = *++each;
        } else {
            return refusal(*each);
        }
    }
    return {0, output + loadedExtensions(file, identifier), {}};
}

} // namespace quorvane
