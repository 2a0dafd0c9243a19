#include "desktop/qt/QtDesktop.h"
#include "platform/headless/MemoryUserDefaults.h"
#include "platform/qt/update/AppcastUpdater.h"
#include "support/TemporaryFolder.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

#include <fstream>

#include <sys/stat.h>

using namespace std::chrono_literals;
using testing::HasSubstr;

namespace tallowbay::test {
namespace {

std::string feed(const std::string& version)
{
    return "<rss xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>"
           "<item><sparkle:version>"
        + version + "</sparkle:version><link>https://example.org/new</link></item></channel></rss>";
}

std::string okWith(const std::string& body)
{
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

// Says the same to everyone who asks, or nothing.
class WebServer {
public:
    explicit WebServer(std::string answer)
        : answer(std::move(answer))
    {
        server.listen(QHostAddress::LocalHost);
        QObject::connect(&server, &QTcpServer::newConnection, &server, [this] { serve(); });
    }

    std::string address() const
    {
        return "http://127.0.0.1:" + std::to_string(server.serverPort()) + "/appcast.xml";
    }

    std::string answer;
    int requests = 0;

private:
    void serve()
    {
        QTcpSocket* client = server.nextPendingConnection();
        QObject::connect(client, &QTcpSocket::readyRead, client, [this, client] {
            client->readAll();
            ++requests;
            client->write(QByteArray::fromStdString(answer));
        });
    }

    QTcpServer server;
};

class UpdaterTest : public testing::Test {
protected:
    void setFeed(const std::string& address)
    {
        defaults.standard().set("updateFeedURL", {address});
    }

    std::string writeFeed(const std::string& content)
    {
        const auto path = folder.path / "appcast.xml";
        std::ofstream(path) << content;
        return "file://" + path.native();
    }

    QDialog* dialog() const
    {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (widget->objectName() == QLatin1String("alert") && widget->isVisible())
                return qobject_cast<QDialog*>(widget);
        return nullptr;
    }

    std::string labelText(const char* name) const
    {
        return dialog()->findChild<QLabel*>(QLatin1String(name))->text().toStdString();
    }

    // What the user reads when the check is done.
    std::string message()
    {
        updater.checkForUpdates();
        return desktop.runUntil([this] { return dialog(); }) ? labelText("message") : "no result";
    }

    QtDesktop desktop;
    test::TemporaryFolder folder;
    headless::MemoryUserDefaultsStore defaults;
    std::vector<QUrl> opened;
    qt::AppcastUpdater updater{defaults, {"1.0.0", "", {400ms, 10'000}, [this](const QUrl& link) {
                                              opened.push_back(link);
                                          }}};
};

TEST_F(UpdaterTest, SaysPlainlyThatNoFeedIsSetUp)
{
    EXPECT_EQ(message(), "Updates are not set up");
}

TEST_F(UpdaterTest, SaysThatTheProgramIsUpToDate)
{
    setFeed(writeFeed(feed("1.0.0")));
    EXPECT_EQ(message(), "Tallowbay is up to date");
    EXPECT_THAT(labelText("informativeText"), HasSubstr("1.0.0"));
}

TEST_F(UpdaterTest, OffersANewerVersionAndItsPage)
{
    setFeed(writeFeed(feed("1.2.0")));
    EXPECT_EQ(message(), "Tallowbay 1.2.0 is available");
    for (auto* button : dialog()->findChildren<QPushButton*>())
        if (button->text() == QLatin1String("Open Download Page"))
            button->click();
    EXPECT_EQ(opened, std::vector<QUrl>{QUrl("https://example.org/new")});
}

TEST_F(UpdaterTest, OpensNothingWhenTheUserClosesTheOffer)
{
    setFeed(writeFeed(feed("1.2.0")));
    message();
    dialog()->close();
    EXPECT_TRUE(opened.empty());
}

TEST_F(UpdaterTest, ReadsAFeedFromTheWeb)
{
    WebServer server(okWith(feed("1.2.0")));
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay 1.2.0 is available");
}

TEST_F(UpdaterTest, FollowsARedirection)
{
    WebServer target(okWith(feed("1.2.0")));
    WebServer server(
        "HTTP/1.1 302 Found\r\nLocation: " + target.address() + "\r\nContent-Length: 0\r\n\r\n");
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay 1.2.0 is available");
}

TEST_F(UpdaterTest, GivesUpOnRedirectionsInACircle)
{
    WebServer server("");
    server.answer =
        "HTTP/1.1 302 Found\r\nLocation: " + server.address() + "\r\nContent-Length: 0\r\n\r\n";
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
    EXPECT_LT(server.requests, 10);
}

TEST_F(UpdaterTest, SaysThatTheServerRefuses)
{
    WebServer server("HTTP/1.1 404 Not Found\r\nContent-Length: 4\r\n\r\nnone");
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
}

TEST_F(UpdaterTest, SaysThatNobodyAnswers)
{
    setFeed("http://127.0.0.1:1/appcast.xml");
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
}

TEST_F(UpdaterTest, GivesUpOnASilentServer)
{
    WebServer server("");
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
    EXPECT_THAT(labelText("informativeText"), HasSubstr("in time"));
}

TEST_F(UpdaterTest, RefusesAHugeFeed)
{
    WebServer server(okWith(std::string(20'000, ' ') + feed("1.2.0")));
    setFeed(server.address());
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
    EXPECT_THAT(labelText("informativeText"), HasSubstr("too long"));
    setFeed(writeFeed(std::string(20'000, ' ')));
    dialog()->close();
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
}

TEST_F(UpdaterTest, SaysThatTheFeedIsNotUnderstood)
{
    setFeed(writeFeed("<html>Log in</html>"));
    EXPECT_EQ(message(), "Tallowbay could not look for updates");
    EXPECT_THAT(labelText("informativeText"), HasSubstr("understood"));
}

TEST_F(UpdaterTest, RefusesAddressesThatAreNone)
{
    const auto pipe = folder.path / "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::vector<std::string> addresses{
        "not an address",       "ftp://example.org/a.xml", "http://",
        "file:///no/such/file", "data:text/xml,<rss/>",    "file://" + pipe.native()};
    for (const std::string& address : addresses) {
        setFeed(address);
        EXPECT_EQ(message(), "Tallowbay could not look for updates") << address;
        dialog()->close();
    }
}

} // namespace
} // namespace tallowbay::test
