#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace tallowbay::qt {

struct DownloadFailure {
    std::string reason; // for people
};
using DownloadResult = std::variant<QByteArray, DownloadFailure>;

struct DownloadLimits {
    std::chrono::milliseconds time = std::chrono::seconds(15);
    qint64 bytes = 4 << 20;
};

// One small file from a web server or this machine, read without ever blocking.
//
// Thread: main queue.
class FeedDownload {
public:
    // Called once, on a turn of the main loop of its own, unless this object goes before. It may go
    // inside the call.
    using Done = std::function<void(const DownloadResult&)>;

    // Follows redirections, but from https never to http. Fails for any scheme but http, https and
    // file.
    FeedDownload(const QUrl&, DownloadLimits, Done);

private:
    void start(const QUrl&);
    void receive();
    void finish();
    void fail(const QString& reason);
    void answer(DownloadResult);

    const DownloadLimits limits;
    Done done;
    QNetworkAccessManager network;
    QByteArray received;
    QTimer deadline;
    std::unique_ptr<QNetworkReply> reply;
    QObject context; // last: once it is gone, nothing reaches us any more
};

} // namespace tallowbay::qt
