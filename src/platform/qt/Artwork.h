#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

namespace tallowbay::qt {

// The pictures that are built into the program, each in several sizes.
class Artwork {
public:
    bool has(const QString& name) const;

    // Null if there is no such picture.
    QIcon icon(const QString& name) const;

    // A template picture: only its shape counts, the colour is given.
    QIcon tinted(const QString& name, const QColor&) const;
};

} // namespace tallowbay::qt
