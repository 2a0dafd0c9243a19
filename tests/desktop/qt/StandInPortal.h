#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusUnixFileDescriptor>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QFile>
#include <QMap>
#include <QStringList>

namespace tallowbay::test {

// What of the document portal hands files over, for programs that may see all of the disk: they get
// the files' own paths.
class StandInPortal : public QDBusVirtualObject {
public:
    static inline const QString service = QStringLiteral("org.freedesktop.portal.Documents");
    static inline const QString path = QStringLiteral("/org/freedesktop/portal/documents");

    StandInPortal() { qDBusRegisterMetaType<Descriptors>(); }

    QString introspect(const QString&) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& bus) override
    {
        if (mute)
            return true;
        const QVariantList arguments = message.arguments();
        const QString key = arguments.value(0).toString();
        QVariant answer;
        if (message.member() == QLatin1String("Get"))
            answer = QVariant::fromValue(QDBusVariant(1u));
        else if (message.member() == QLatin1String("StartTransfer"))
            answer = start();
        else if (message.member() == QLatin1String("RetrieveFiles") && transfers.contains(key))
            answer = transfers.value(key);
        else if (message.member() == QLatin1String("StopTransfer"))
            transfers.remove(key);
        else if (message.member() != QLatin1String("AddFiles") || !add(key, arguments.value(1)))
            return bus.send(message.createErrorReply(QDBusError::AccessDenied, "refused"));
        return bus.send(answer.isValid() ? message.createReply(answer) : message.createReply());
    }

    bool failing = false; // takes no files
    bool mute = false; // answers nobody
    QMap<QString, QStringList> transfers;

private:
    using Descriptors = QList<QDBusUnixFileDescriptor>;

    QString start()
    {
        const QString key = QString::number(++started);
        transfers[key] = {};
        return key;
    }

    bool add(const QString& key, const QVariant& files)
    {
        if (failing || !transfers.contains(key))
            return false;
        for (const auto& file : qdbus_cast<Descriptors>(files))
            transfers[key].append(
                QFile::symLinkTarget("/proc/self/fd/" + QString::number(file.fileDescriptor())));
        return true;
    }

    int started = 0;
};

} // namespace tallowbay::test
