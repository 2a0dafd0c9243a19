#pragma once

#include <QString>

// What the program is called on the session's message bus.
namespace tallowbay::busName {

inline const QString service = QStringLiteral("com.quarnel.tallowbay");
inline const QString path = QStringLiteral("/com/quarnel/tallowbay");
inline const QString notAvailable = QStringLiteral("com.quarnel.tallowbay.Error.NotAvailable");

// The desktop's standard interface of programs.
inline const QString application = QStringLiteral("org.freedesktop.Application");

// What only this program has.
inline const QString ownInterface = QStringLiteral("com.quarnel.tallowbay.Status");

} // namespace tallowbay::busName
