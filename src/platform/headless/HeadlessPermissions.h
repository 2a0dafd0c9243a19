#pragma once

#include "platform/Permissions.h"

#include <string>

namespace tallowbay::headless {

// A session that grants what the test says, everything at first.
class HeadlessPermissions final : public Permissions {
public:
    Permission accessibility() const override { return keys; }
    Permission screenRecording() const override { return screen; }

    void grantKeys() { keys = granted; }
    void refuseKeys(Permission::State state = Permission::State::needsUser)
    {
        keys = {state, "The user has not agreed that keys are seen"};
    }
    void grantScreen() { screen = granted; }
    void refuseScreen(Permission::State state = Permission::State::needsUser)
    {
        screen = {state, "The user has not agreed that the screen is seen"};
    }

private:
    const Permission granted{Permission::State::granted, {}};
    Permission keys = granted;
    Permission screen = granted;
};

} // namespace tallowbay::headless
