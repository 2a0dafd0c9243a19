#pragma once

#include "platform/qt/graphics/GraphicsFonts.h"
#include "platform/qt/graphics/ScaledImageCache.h"
#include "ui/TallowLogo.h"

#include <QTimer>
#include <QWidget>

namespace tallowbay::views {

// The program's mark in a window. It moves exactly while it is seen there.
class TallowLogoView final : public QWidget {
public:
    TallowLogoView(Image icon, QWidget* parent);

    bool isAnimated() const { return animation.isActive(); }

protected:
    void paintEvent(QPaintEvent*) override;
    void showEvent(QShowEvent*) override;
    void hideEvent(QHideEvent*) override;

private:
    void tick();

    const qt::GraphicsFonts fonts;
    qt::ScaledImageCache scaledImages;
    TallowLogo logo;
    QTimer animation;
};

} // namespace tallowbay::views
