#include "platform/qt/update/FeedDownload.h"

#include <QFileInfo>

namespace tallowbay::qt {

namespace {

constexpr int mostRedirects = 5;

// A pipe in the place of a file would hold up the reader.
bool isFetchable(const QUrl& url)
{
    if (url.isLocalFile())
        return QFileInfo(url.toLocalFile()).isFile();
    const QString scheme = url.scheme();
    const bool web = scheme == QLatin1String("https") || scheme == QLatin1String("http");
    return web && !url.host().isEmpty();
}

} // namespace

FeedDownload::FeedDownload(const QUrl& url, DownloadLimits limits, Done done)
    : limits(limits)
    , done(std::move(done))
{
    deadline.setSingleShot(true);
    deadline.callOnTimeout([this] { fail(QStringLiteral("The server did not answer in time.")); });
    deadline.start(limits.time);
    if (isFetchable(url))
        start(url);
    else
        fail(QStringLiteral("There is no such file or address."));
}

void FeedDownload::start(const QUrl& url)
{
    QNetworkRequest request(url);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    reply.reset(network.get(request));
    QObject::connect(reply.get(), &QIODevice::readyRead, &context, [this] { receive(); });
    QObject::connect(reply.get(), &QNetworkReply::finished, &context, [this] { finish(); });
}

void FeedDownload::receive()
{
    received += reply->read(limits.bytes + 1 - received.size());
    if (received.size() > limits.bytes)
        fail(QStringLiteral("The answer is too long to be an update feed."));
}

void FeedDownload::finish()
{
    receive();
    if (reply->error() == QNetworkReply::NoError)
        answer(received);
    else
        fail(reply->errorString());
}

void FeedDownload::fail(const QString& reason)
{
    answer(DownloadFailure{reason.toStdString()});
}

// The first answer counts. It waits for a turn of its own, since it ends us, and with us whatever
// is calling.
void FeedDownload::answer(DownloadResult result)
{
    if (!done)
        return;
    const auto answering = std::exchange(done, nullptr);
    QMetaObject::invokeMethod(
        &context, [answering, result = std::move(result)] { answering(result); },
        Qt::QueuedConnection);
}

} // namespace tallowbay::qt
