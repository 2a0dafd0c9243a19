#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace tallowbay::qt {

// Brings the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) to the main queue, as
// long as this object lives. One that was ignored before stays ignored. One object at a time.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> requested);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    void drain() const;

    int readEnd = -1;
    int writeEnd = -1;
    std::unique_ptr<QSocketNotifier> notifier;
};

} // namespace tallowbay::qt
