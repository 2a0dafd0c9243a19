#include "platform/qt/update/AppcastUpdater.h"

#include "platform/contract/UpdaterContract.h"
#include "platform/headless/MemoryUserDefaults.h"
#include "support/OffscreenProgram.h"

#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <deque>
#include <optional>

namespace tallowbay::qt {

namespace {

using test::OffscreenProgram;

QByteArray feedReply(const QByteArray& version)
{
    const QByteArray body =
        "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel><item>"
        "<sparkle:version>"
        + version + "</sparkle:version></item></channel></rss>";
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n"
        + body;
}

QByteArray reply(contract::UpdateOutcome outcome)
{
    switch (outcome) {
    case contract::UpdateOutcome::newer:
        return feedReply("2.0.0");
    case contract::UpdateOutcome::upToDate:
        return feedReply("1.0.0");
    case contract::UpdateOutcome::failure:
        return "HTTP/1.1 500 Broken\r\nContent-Length: 0\r\n\r\n";
    }
    return {};
}

// Lets everyone wait who asks, until it is given an answer.
class PatientServer {
public:
    PatientServer()
    {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] { accept(); });
    }

    std::string address() const
    {
        return "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/appcast.xml";
    }
    void giveAnswer(const QByteArray& answer)
    {
        answers.push_back(answer);
        serve();
    }

    int requests = 0;

private:
    void accept()
    {
        QTcpSocket* client = server.nextPendingConnection();
        QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
            client->readAll();
            ++requests;
            waiting.push_back(client);
            serve();
        });
    }
    void serve()
    {
        for (; !waiting.empty() && !answers.empty(); answers.pop_front(), waiting.pop_front())
            if (waiting.front())
                waiting.front()->write(answers.front());
    }

    std::deque<QPointer<QTcpSocket>> waiting;
    std::deque<QByteArray> answers;
    QTcpServer server;
};

// Counts how often a dialog with news comes up.
class DialogCounter : public QObject {
public:
    DialogCounter() { qApp->installEventFilter(this); }
    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Show && object->objectName() == QLatin1String("alert"))
            ++count;
        return false;
    }

    std::size_t count = 0;
};

class AppcastUpdaterBackend {
public:
    AppcastUpdaterBackend() { defaults.standard().set("updateFeedURL", {server.address()}); }

    Updater& updater() { return *appcast; }
    void endUpdater() { appcast.reset(); }
    void answer(contract::UpdateOutcome outcome) { server.giveAnswer(reply(outcome)); }
    bool showsResults(std::size_t count)
    {
        OffscreenProgram::runUntil([&] { return shown.count >= count; });
        return shown.count == count;
    }
    void settle()
    {
        bool over = false;
        QTimer::singleShot(std::chrono::milliseconds(50), &shown, [&] { over = true; });
        OffscreenProgram::runUntil([&] { return over; });
    }
    int checks() { return server.requests; }

private:
    OffscreenProgram program;
    PatientServer server;
    DialogCounter shown;
    headless::MemoryUserDefaultsStore defaults;
    std::optional<AppcastUpdater> appcast{
        std::in_place, defaults, AppcastUpdater::Setup{"1.0.0", {}, {}, [](const QUrl&) {}}};
};

} // namespace

} // namespace tallowbay::qt

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Appcast, UpdaterContract, qt::AppcastUpdaterBackend);
} // namespace tallowbay::contract
