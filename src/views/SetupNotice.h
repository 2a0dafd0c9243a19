#pragma once

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class QVBoxLayout;

namespace tallowbay::views {

// The window of the first start: what the program needs, whether it has it, and one button that
// starts it.
class SetupNotice final : public QWidget {
public:
    struct Check {
        std::string title;
        std::string explanation;
        bool passed = false;
    };

    // The callback runs once, on the main queue, when the button is pressed; closing the window
    // calls nothing.
    SetupNotice(const std::vector<Check>&, std::function<void()> started);

    // In front of other windows and with the keyboard.
    void present();

private:
    void addHeader(QVBoxLayout&);
    void addChecks(QVBoxLayout&, const std::vector<Check>&);
    void addButton(QVBoxLayout&, std::function<void()> started);
};

} // namespace tallowbay::views
