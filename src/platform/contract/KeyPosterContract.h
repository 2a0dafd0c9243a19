#pragma once

#include "platform/Keys.h"
#include "platform/contract/PrintKeys.h"

#include <gmock/gmock.h>

#include <vector>

namespace tallowbay::contract {

// All key posters keep their header's promises. A backend offers:
//   KeyPoster& poster();
//   std::vector<KeyPress> seen(); // what the focused program was sent, without modifier keys
//   bool anythingIsDown(); // of what was posted
template <typename Backend> class KeyPosterContract : public testing::Test {
protected:
    Backend backend;

    void type(KeyCode keyCode, EventFlags flags)
    {
        backend.poster().post(keyCode, KeyDirection::down, flags);
        backend.poster().post(keyCode, KeyDirection::up, flags);
    }

    static constexpr KeyCode a = 0;
    static constexpr KeyCode v = 9;
};

TYPED_TEST_SUITE_P(KeyPosterContract);

TYPED_TEST_P(KeyPosterContract, TheFocusedProgramSeesTheKeyWithItsModifiers)
{
    const std::vector<KeyPress> presses{
        {this->v, eventFlag::command},
        {this->a, 0},
        {this->v, eventFlag::command | eventFlag::shift},
        {this->a, eventFlag::option},
        {this->v, eventFlag::control},
        {this->v, eventFlag::command}};
    for (const KeyPress& press : presses)
        this->type(press.keyCode, press.flags);
    EXPECT_EQ(this->backend.seen(), presses);
}

TYPED_TEST_P(KeyPosterContract, NothingStaysDown)
{
    this->type(this->v, eventFlag::command);
    EXPECT_FALSE(this->backend.anythingIsDown());
}

TYPED_TEST_P(KeyPosterContract, AKeyStaysDownUntilItIsPostedUp)
{
    this->backend.poster().post(this->v, KeyDirection::down, eventFlag::command);
    EXPECT_TRUE(this->backend.anythingIsDown());
    this->backend.poster().post(this->v, KeyDirection::up, eventFlag::command);
    EXPECT_FALSE(this->backend.anythingIsDown());
    EXPECT_EQ(this->backend.seen(), (std::vector<KeyPress>{{this->v, eventFlag::command}}));
}

REGISTER_TYPED_TEST_SUITE_P(
    KeyPosterContract, TheFocusedProgramSeesTheKeyWithItsModifiers, NothingStaysDown,
    AKeyStaysDownUntilItIsPostedUp);

} // namespace tallowbay::contract
