// Asks the helper over and over, and prints how often it replied, refused for want of room, and
// answered with another error.
//
//   load_caller COUNT WINDOW RATE METHOD [TEXT]
//
// WINDOW calls at most are unanswered at a time; RATE calls a second are sent, 0 for as many as
// possible. When its standard input ends it leaves at once, without waiting for answers.

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <poll.h>
#include <string>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

constexpr const char* name = "com.TarnwickStudios.quorvane.helper";
constexpr const char* path = "/com/TarnwickStudios/quorvane/helper";
constexpr const char* tooMany = "org.freedesktop.DBus.Error.LimitsExceeded";

struct Load {
    std::uint64_t count = 0;
    std::uint64_t window = 0;
    std::uint64_t rate = 0;
    const char* method = nullptr;
    const char* text = nullptr;

    std::uint64_t sent = 0;
    std::uint64_t replied = 0;
    std::uint64_t refused = 0;
    std::uint64_t failed = 0;

    [[nodiscard]] std::uint64_t answered() const { return replied + refused + failed; }
};

int count(sd_bus_message* answer, void* data, sd_bus_error* /*error*/) {
    auto& load = *static_cast<Load*>(data);
    if (sd_bus_message_is_method_error(answer, nullptr) == 0) {
        ++load.replied;
    } else if (sd_bus_message_is_method_error(answer, tooMany) != 0) {
        ++load.refused;
    } else {
        ++load.failed;
    }
    return 0;
}

bool send(sd_bus* bus, Load& load) {
    ++load.sent;
    return sd_bus_call_method_async(bus, nullptr, name, path, name, load.method, count, &load,
                                    load.text != nullptr ? "s" : "", load.text) >= 0;
}

// How many calls may have been sent by now.
std::uint64_t due(const Load& load, Clock::time_point start) {
    if (load.rate == 0) {
        return load.count;
    }
    const auto elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    return static_cast<std::uint64_t>(elapsed * static_cast<double>(load.rate)) + 1;
}

bool inputEnded() {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    return ::poll(&input, 1, 0) > 0;
}

bool run(sd_bus* bus, Load& load) {
    constexpr std::uint64_t patience = 10'000; // microseconds
    const auto start = Clock::now();
    while (load.answered() < load.count && !inputEnded()) {
        while (load.sent < load.count && load.sent - load.answered() < load.window &&
               load.sent < due(load, start)) {
            if (!send(bus, load)) {
                return false;
            }
        }
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0 || (processed == 0 && sd_bus_wait(bus, patience) < 0)) {
            return false;
        }
    }
    return true;
}

std::uint64_t number(const char* text) {
    return std::strtoull(text, nullptr, 10);
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fputs("usage: load_caller COUNT WINDOW RATE METHOD [TEXT]\n", stderr);
        return 2;
    }
    Load load{number(argv[1]), number(argv[2]), number(argv[3]), argv[4],
              argc > 5 ? argv[5] : nullptr};
    sd_bus* bus = nullptr;
    if (sd_bus_open_system(&bus) < 0 || !run(bus, load)) {
        std::fputs("the bus has ended the connection\n", stderr);
        return EXIT_FAILURE;
    }
    std::printf("%llu %llu %llu\n", static_cast<unsigned long long>(load.replied),
                static_cast<unsigned long long>(load.refused),
                static_cast<unsigned long long>(load.failed));
    sd_bus_flush_close_unref(bus);
    return EXIT_SUCCESS;
}
