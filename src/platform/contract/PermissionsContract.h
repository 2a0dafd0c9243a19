#pragma once

#include "platform/Permissions.h"

#include <gtest/gtest.h>

namespace tallowbay::contract {

// What a session lets us do.
enum class SessionKind { everything, screenOnly, nothing };

// All permissions keep their header's promises. A backend offers:
//   const Permissions& permissionsIn(SessionKind);   once a test
template <typename Backend> class PermissionsContract : public testing::Test {
protected:
    static void expectGranted(const Permission& permission)
    {
        EXPECT_TRUE(permission.granted());
        EXPECT_EQ(permission.state, Permission::State::granted);
        EXPECT_EQ(permission.reason, "");
    }
    static void expectRefused(const Permission& permission)
    {
        EXPECT_FALSE(permission.granted());
        EXPECT_NE(permission.state, Permission::State::granted);
        EXPECT_NE(permission.reason, "");
    }

    Backend backend;
};

TYPED_TEST_SUITE_P(PermissionsContract);

TYPED_TEST_P(PermissionsContract, GiveNoReasonForWhatIsGranted)
{
    const Permissions& permissions = this->backend.permissionsIn(SessionKind::everything);
    this->expectGranted(permissions.accessibility());
    this->expectGranted(permissions.screenRecording());
}

TYPED_TEST_P(PermissionsContract, TellWhyWhatIsNotGranted)
{
    const Permissions& permissions = this->backend.permissionsIn(SessionKind::nothing);
    this->expectRefused(permissions.accessibility());
    this->expectRefused(permissions.screenRecording());
    EXPECT_NE(permissions.accessibility().reason, permissions.screenRecording().reason);
}

TYPED_TEST_P(PermissionsContract, GrantTheScreenWhereTheKeysAreRefused)
{
    const Permissions& permissions = this->backend.permissionsIn(SessionKind::screenOnly);
    this->expectRefused(permissions.accessibility());
    this->expectGranted(permissions.screenRecording());
}

TYPED_TEST_P(PermissionsContract, AnswerAlikeWhenAskedAgain)
{
    const Permissions& permissions = this->backend.permissionsIn(SessionKind::screenOnly);
    for (int i = 0; i < 1000; ++i) {
        ASSERT_FALSE(permissions.accessibility().granted());
        ASSERT_TRUE(permissions.screenRecording().granted());
    }
}

REGISTER_TYPED_TEST_SUITE_P(
    PermissionsContract, GiveNoReasonForWhatIsGranted, TellWhyWhatIsNotGranted,
    GrantTheScreenWhereTheKeysAreRefused, AnswerAlikeWhenAskedAgain);

} // namespace tallowbay::contract
