#include "platform/linux/helperclient/LoadedExtensions.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr std::size_t mostBytes = 65536;
constexpr std::size_t longestLine = 512;

std::string readAtMost(int descriptor, std::size_t limit) {
    std::string text;
    std::array<char, 4096> part{};
    while (text.size() < limit) {
        const ssize_t length =
            ::read(descriptor, part.data(), std::min(part.size(), limit - text.size()));
        if (length > 0) {
            text.append(part.data(), static_cast<std::size_t>(length));
        } else if (length == 0 || errno != EINTR) {
            break;
        }
    }
    return text;
}

std::string readRegularFile(const char* file) {
    const int descriptor = ::open(file, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return {};
    }

    struct stat status {};

    const bool isRegular = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
    std::string text = isRegular ? readAtMost(descriptor, mostBytes) : std::string();
    ::close(descriptor);
    return text;
}

/// The next word of the line, which loses it and the blanks around it.
std::string_view takeWord(std::string_view& line) {
    constexpr std::string_view blanks = " ";
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(word.size());
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    return word;
}

bool isNumber(std::string_view word) {
    const bool isHexadecimal = word.substr(0, 2) == "0x";
    const std::string_view digits = word.substr(isHexadecimal ? 2 : 0);
    return !digits.empty() && std::all_of(digits.begin(), digits.end(), [&](unsigned char each) {
        return isHexadecimal ? std::isxdigit(each) != 0 : std::isdigit(each) != 0;
    });
}

bool isName(std::string_view word) {
    return !word.empty() && std::all_of(word.begin(), word.end(), [](unsigned char each) {
        return std::isalnum(each) != 0 || each == '.' || each == '-' || each == '_';
    });
}

bool isVersion(std::string_view word) {
    return word.size() > 2 && word.front() == '(' && word.back() == ')' &&
           isName(word.substr(1, word.size() - 2));
}

bool tellsOf(std::string_view line, std::string_view identifier) {
    constexpr int numbers = 5; // index, references, address, size, wired
    for (int i = 0; i < numbers; ++i) {
        if (!isNumber(takeWord(line))) {
            return false;
        }
    }
    const std::string_view name = takeWord(line);
    return isName(name) && isVersion(takeWord(line)) && line.empty() &&
           (identifier.empty() || name == identifier);
}

} // namespace

std::string loadedExtensions(const char* file, std::string_view identifier) {
    const std::string text = readRegularFile(file);
    std::string found;
    std::string_view rest = text;
    // A line without an end may be the part of one.
    for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
        const std::string_view line = rest.substr(0, end);
        if (line.size() <= longestLine && tellsOf(line, identifier)) {
            found.append(line).append("\n");
        }
        rest.remove_prefix(end + 1);
    }
    return found;
}

} // namespace quorvane
