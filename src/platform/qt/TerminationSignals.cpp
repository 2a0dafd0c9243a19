#include "platform/qt/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace tallowbay::qt {

namespace {

constexpr int endingSignals[] = {SIGTERM, SIGINT, SIGHUP};

// All that a signal handler may touch.
std::atomic<int> wakeUpDescriptor = -1;

void wakeUp(int)
{
    const int before = errno;
    const char byte = 0;
    // A pipe that is full has woken the main queue already.
    static_cast<void>(!write(wakeUpDescriptor, &byte, 1));
    errno = before;
}

bool isIgnored(int signal)
{
    struct sigaction current { };
    return sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_IGN;
}

// Who started us with a signal ignored, as nohup does, wants us to outlive it.
void handleWith(void (*handler)(int))
{
    struct sigaction action { };
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (int signal : endingSignals) {
        if (!isIgnored(signal))
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> requested)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    readEnd = ends[0];
    writeEnd = ends[1];
    notifier = std::make_unique<QSocketNotifier>(readEnd, QSocketNotifier::Read);
    QObject::connect(
        notifier.get(), &QSocketNotifier::activated, notifier.get(),
        [this, requested = std::move(requested)] {
            drain();
            requested();
        });
    wakeUpDescriptor = writeEnd;
    handleWith(wakeUp);
}

TerminationSignals::~TerminationSignals()
{
    handleWith(SIG_DFL);
    wakeUpDescriptor = -1;
    notifier.reset();
    close(readEnd);
    close(writeEnd);
}

void TerminationSignals::drain() const
{
    char bytes[64];
    while (read(readEnd, bytes, sizeof bytes) > 0) { }
}

} // namespace tallowbay::qt
