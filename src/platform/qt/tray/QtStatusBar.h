#pragma once

#include "platform/EmbeddingTray.h"
#include "platform/Menu.h"
#include "platform/StatusBar.h"

namespace tallowbay::qt {

// The desktop's tray. Its icon is as large as the panel wants it, has a menu on either mouse
// button, and comes back when the panel is started anew.
class QtStatusBar final : public StatusBar {
public:
    // It outlives the items.
    explicit QtStatusBar(const EmbeddingTray& embeddingTray)
        : embeddingTray(embeddingTray)
    {
    }

    std::unique_ptr<StatusItem> makeItem(const StatusButton&, Menu) override;

private:
    const EmbeddingTray& embeddingTray;
};

} // namespace tallowbay::qt
