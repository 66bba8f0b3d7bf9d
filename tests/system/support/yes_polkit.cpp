// Stands for polkit on a private bus and says yes to everybody, as fast as it can: what the helper
// does under load is to show, not polkit.

#include <cstdint>
#include <cstdlib>
#include <systemd/sd-bus.h>

namespace {

int sayYes(sd_bus_message* question, void* /*data*/, sd_bus_error* /*error*/) {
    return sd_bus_reply_method_return(question, "(bba{ss})", 1, 0, 0);
}

const sd_bus_vtable authority[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("CheckAuthorization", "(sa{sv})sa{ss}us", "(bba{ss})", sayYes,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

bool serve(sd_bus* bus) {
    constexpr std::uint64_t forEver = UINT64_MAX;
    for (;;) {
        const int processed = sd_bus_process(bus, nullptr);
        if (processed < 0 || (processed == 0 && sd_bus_wait(bus, forEver) < 0)) {
            return false;
        }
    }
}

} // namespace

int main() {
    sd_bus* bus = nullptr;
    const bool isThere =
        sd_bus_open_system(&bus) >= 0 &&
        sd_bus_add_object_vtable(bus, nullptr, "/org/freedesktop/PolicyKit1/Authority",
                                 "org.freedesktop.PolicyKit1.Authority", authority, nullptr) >= 0 &&
        sd_bus_request_name(bus, "org.freedesktop.PolicyKit1", 0) >= 0;
    return isThere && serve(bus) ? EXIT_SUCCESS : EXIT_FAILURE;
}
