#include "main/remote/SingleInstance.h"

#include "main/remote/BusNames.h"
#include "platform/posix/Environment.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>

#include <algorithm>
#include <optional>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tallowbay {

using Result = SingleInstance::Result;

namespace {

// Empty if the bus does not answer.
std::optional<Result> acquireBusName()
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus.interface()->registerService(
            busName::service, QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid())
        return std::nullopt;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Result::first
                                                                        : Result::another;
}

// Anyone may put a file of any name among the temporary ones.
bool isOurs(int descriptor)
{
    struct stat status { };
    return fstat(descriptor, &status) == 0 && status.st_uid == getuid();
}

} // namespace

SingleInstance::SingleInstance(std::filesystem::path lockFile)
    : lockFile(std::move(lockFile))
{
}

// The file stays: removing it would let two starts lock two different files.
SingleInstance::~SingleInstance()
{
    if (descriptor >= 0)
        close(descriptor);
}

Result SingleInstance::acquire(bool useBus)
{
    if (const auto result = useBus ? acquireBusName() : std::nullopt)
        return *result;
    return acquireLock();
}

Result SingleInstance::acquireLock()
{
    constexpr mode_t forUsOnly = 0600;
    descriptor = open(lockFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, forUsOnly);
    if (descriptor < 0 || !isOurs(descriptor))
        return Result::first;
    const bool locked = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    return locked || errno != EWOULDBLOCK ? Result::first : Result::another;
}

std::filesystem::path instanceLockFile()
{
    std::string display = posix::environmentText("DISPLAY").value_or("");
    std::replace(display.begin(), display.end(), '/', '_');
    const auto runtimeFolder = posix::environmentFolder("XDG_RUNTIME_DIR");
    if (runtimeFolder)
        return *runtimeFolder / ("tallowbay" + display + ".lock");
    return "/tmp/tallowbay-" + std::to_string(getuid()) + display + ".lock";
}

} // namespace tallowbay
