#include "platform/qt/portal/PortalFileTransfer.h"

#include "desktop/qt/StandInPortal.h"
#include "desktop/support/SessionBus.h"
#include "platform/contract/FileTransferContract.h"
#include "platform/headless/HeadlessFileTransfer.h"
#include "platform/headless/VirtualTime.h"
#include "platform/qt/QtDispatch.h"
#include "support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <fstream>

namespace tallowbay::test {
namespace {

using Files = FileTransfer::Files;

// A portal in this process on a bus of its own, where it has a connection for itself.
class PortalBackend {
public:
    PortalBackend() { setAvailable(true); }
    ~PortalBackend()
    {
        for (const QString& name : {portalName, clientName})
            QDBusConnection::disconnectFromBus(name);
    }

    FileTransfer& transfer() { return fileTransfer; }
    void setAvailable(bool available)
    {
        if (available)
            portalBus.registerService(StandInPortal::service);
        else
            portalBus.unregisterService(StandInPortal::service);
    }
    void setFailing() { portal.failing = true; }
    bool runUntil(const std::function<bool()>& condition) const
    {
        QElapsedTimer time;
        time.start();
        while (!condition() && time.elapsed() < 20'000)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        return condition();
    }
    Files files(std::size_t count) const
    {
        Files files;
        for (std::size_t i = 0; i < count; ++i) {
            files.push_back(folder.path / ("Screenshot " + std::to_string(i) + ".png"));
            std::ofstream(files.back()) << "picture";
        }
        return files;
    }
    Files filesOf(const std::string& key) const
    {
        Files files;
        for (const QString& path : portal.transfers.value(QString::fromStdString(key)))
            files.emplace_back(path.toStdString());
        return files;
    }

    StandInPortal portal;

private:
    QDBusConnection connect(const QString& name) const
    {
        return QDBusConnection::connectToBus(QString::fromStdString(bus.address()), name);
    }

    const QString portalName = QStringLiteral("portal");
    const QString clientName = QStringLiteral("client");
    int argumentCount = 1;
    char name[5] = "test";
    char* arguments[2] = {name, nullptr};
    QCoreApplication application{argumentCount, arguments};
    TemporaryFolder folder;
    SessionBus bus;
    qt::QtDispatch dispatch;
    QDBusConnection portalBus = connect(portalName);
    const bool isThere = portalBus.registerVirtualObject(StandInPortal::path, &portal);
    qt::PortalFileTransfer fileTransfer{dispatch, connect(clientName)};
};

class HeadlessBackend {
public:
    FileTransfer& transfer() { return fileTransfer; }
    void setAvailable(bool available) { fileTransfer.isAvailable = available; }
    void setFailing() { fileTransfer.failing = true; }
    bool runUntil(const std::function<bool()>& condition)
    {
        dispatch.runMain();
        return condition();
    }
    Files files(std::size_t count) const { return Files(count, "/picture"); }
    Files filesOf(const std::string& key) const
    {
        const auto found = fileTransfer.open.find(key);
        return found == fileTransfer.open.end() ? Files() : found->second;
    }

private:
    headless::VirtualClock clock;
    headless::VirtualDispatch dispatch{clock};
    headless::HeadlessFileTransfer fileTransfer{dispatch};
};

class PortalFileTransferTest : public testing::Test {
protected:
    std::optional<std::string> keyTo(const Files& files)
    {
        EXPECT_TRUE(backend.runUntil([this] { return backend.transfer().available(); }));
        std::vector<std::optional<std::string>> replies;
        backend.transfer().begin(files, [&](const auto& key) { replies.push_back(key); });
        EXPECT_TRUE(backend.runUntil([&] { return !replies.empty(); }));
        return replies.at(0);
    }

    PortalBackend backend;
};

TEST_F(PortalFileTransferTest, LeavesNothingBehindWhereAFileIsMissing)
{
    Files files = backend.files(20);
    files.push_back("/nowhere/at/all.png");
    EXPECT_EQ(keyTo(files), std::nullopt);
    EXPECT_TRUE(backend.runUntil([this] { return backend.portal.transfers.isEmpty(); }));
}

TEST_F(PortalFileTransferTest, RepliesWithoutAKeyAfterASecondWhereThePortalIsMute)
{
    EXPECT_TRUE(backend.runUntil([this] { return backend.transfer().available(); }));
    backend.portal.mute = true;
    QElapsedTimer time;
    time.start();
    EXPECT_EQ(keyTo(backend.files(1)), std::nullopt);
    EXPECT_GE(time.elapsed(), 900);
    EXPECT_LT(time.elapsed(), 10'000) << "the bus itself waits for 25 seconds";
}

// Each question waited for all before it to run out of time.
TEST_F(PortalFileTransferTest, RepliesToManyWithinASecondWhereThePortalIsMute)
{
    EXPECT_TRUE(backend.runUntil([this] { return backend.transfer().available(); }));
    backend.portal.mute = true;
    constexpr int count = 30;
    int replies = 0;
    for (int i = 0; i < count; ++i)
        backend.transfer().begin(backend.files(1), [&](const auto&) { ++replies; });
    QElapsedTimer time;
    time.start();
    EXPECT_TRUE(backend.runUntil([&] { return replies == count; }));
    EXPECT_LT(time.elapsed(), 10'000);
}

} // namespace
} // namespace tallowbay::test

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Portal, FileTransferContract, test::PortalBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Headless, FileTransferContract, test::HeadlessBackend);
} // namespace tallowbay::contract
