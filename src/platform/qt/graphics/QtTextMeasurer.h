#pragma once

#include "platform/TextMeasurer.h"

#include <QFont>

namespace tallowbay::qt {

// Measures with the font that the windows draw with.
class QtTextMeasurer final : public TextMeasurer {
public:
    Size measure(const std::string& text, const Font&) const override;
};

// The font of our windows: the one that they are drawn for, else the desktop's own.
QFont interfaceFont(const Font&);

} // namespace tallowbay::qt
