#include "desktop/support/SessionBus.h"

#include "desktop/support/Wait.h"

#include <stdexcept>

namespace tallowbay::test {

namespace {

Environment withoutBus(Environment environment)
{
    environment["DBUS_SESSION_BUS_ADDRESS"] = std::nullopt;
    return environment;
}

} // namespace

SessionBus::SessionBus(const Environment& environment)
    : daemon({"dbus-daemon", "--session", "--nofork", "--print-address=1"}, withoutBus(environment))
{
    const auto told = [this] { return daemon.output().find('\n') != std::string::npos; };
    if (!waitUntil(told))
        throw std::runtime_error("dbus-daemon did not start: " + daemon.errors());
    busAddress = daemon.output().substr(0, daemon.output().find('\n'));
}

} // namespace tallowbay::test
