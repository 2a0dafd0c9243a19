#include "platform/qt/MainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <algorithm>

namespace tallowbay::qt {

namespace {

const auto wakeUpEvent = QEvent::Type(QEvent::registerEventType());

} // namespace

MainQueue::~MainQueue() = default;

void MainQueue::async(Task task)
{
    std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
    if (!std::exchange(wakeUpPosted, true))
        QCoreApplication::postEvent(this, new QEvent(wakeUpEvent)); // the event loop owns it
}

void MainQueue::after(std::chrono::milliseconds delay, Task task)
{
    const auto due = std::chrono::steady_clock::now() + delay;
    if (thread() == QThread::currentThread())
        startTimer(due, std::move(task));
    else
        async([this, due, task = std::move(task)] { startTimer(due, task); });
}

// Its own timer rather than QTimer::singleShot(), which would keep the task alive after this
// object.
void MainQueue::startTimer(std::chrono::steady_clock::time_point due, Task task)
{
    using namespace std::chrono;
    const auto left = ceil<milliseconds>(due - steady_clock::now());
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
    timer->callOnTimeout([timer, task = std::move(task)] {
        timer->deleteLater();
        task();
    });
    timer->start(std::max(left, 0ms));
}

Subscription MainQueue::repeatEvery(std::chrono::milliseconds interval, Task task)
{
    auto* timer = new QTimer(this);
    timer->setTimerType(Qt::PreciseTimer);
    timer->callOnTimeout(std::move(task));
    timer->start(interval);
    return Subscription([timer = QPointer<QTimer>(timer)] {
        if (!timer)
            return;
        timer->stop();
        timer->deleteLater(); // the task may be what ends it: it must outlive this call
    });
}

bool MainQueue::event(QEvent* event)
{
    if (event->type() != wakeUpEvent)
        return QObject::event(event);
    drain();
    return true;
}

// Runs what was waiting when it began, so that tasks that give tasks cannot starve the windows.
// Taking them singly keeps the order also when a task runs an event loop of its own.
void MainQueue::drain()
{
    std::size_t count = 0;
    {
        std::lock_guard lock(mutex);
        count = tasks.size();
        wakeUpPosted = false;
    }
    for (; count > 0; --count)
        if (const Task task = takeFirst())
            task();
}

Task MainQueue::takeFirst()
{
    std::lock_guard lock(mutex);
    if (tasks.empty())
        return {};
    Task first = std::move(tasks.front());
    tasks.pop_front();
    return first;
}

} // namespace tallowbay::qt
