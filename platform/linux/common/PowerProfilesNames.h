#pragma once

#include <QLatin1String>

#include <array>

/// The power-profiles service on the system bus.
namespace quorvane::powerprofiles {

/// One of its names is also that of its interface.
struct Place {
    QLatin1String name;
    QLatin1String path;
};

/// The service has moved. The newer name comes first: implementations of it keep the older one for
/// old clients.
inline constexpr std::array places{
    Place{QLatin1String("org.freedesktop.UPower.PowerProfiles"),
          QLatin1String("/org/freedesktop/UPower/PowerProfiles")},
    Place{QLatin1String("net.hadess.PowerProfiles"), QLatin1String("/net/hadess/PowerProfiles")},
};

} // namespace quorvane::powerprofiles
