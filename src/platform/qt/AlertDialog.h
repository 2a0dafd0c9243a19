#pragma once

#include "platform/Alerts.h"

#include <QDialog>

#include <optional>

namespace tallowbay::qt {

// A question or a piece of news with the program's icon: the message, what it means, and a row of
// buttons whose first stands at the right, as the default.
class AlertDialog final : public QDialog {
public:
    enum class Kind { news, warning };
    AlertDialog(Kind, const Alert&);

    // The button that was pressed; the last one if the dialog was closed in another way.
    std::size_t answer() const { return pressed; }

    // In front of other windows and with the keyboard, without stopping anything.
    void present();

private:
    QWidget* makeText(const Alert&);
    QWidget* makeButtons(const std::vector<std::string>& titles);

    std::size_t pressed;
};

} // namespace tallowbay::qt
