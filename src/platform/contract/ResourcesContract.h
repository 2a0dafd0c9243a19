#pragma once

#include "platform/Resources.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tallowbay::contract {

// All resources keep their header's promises. A backend, which came with the picture
// "MenubarIcon", offers:
//   const Resources& resources();
//   std::filesystem::path ship(name);   an executable
template <typename Backend> class ResourcesContract : public testing::Test {
protected:
    Backend backend;
    const Resources& resources = backend.resources();
};

TYPED_TEST_SUITE_P(ResourcesContract);

TYPED_TEST_P(ResourcesContract, NamesTheExecutableThatWasShipped)
{
    const auto shipped = this->backend.ship("sips");
    const auto other = this->backend.ship("other tool");
    EXPECT_EQ(this->resources.executable("sips"), shipped);
    EXPECT_EQ(this->resources.executable("other tool"), other);
    EXPECT_NE(shipped, other);
    EXPECT_TRUE(shipped.is_absolute());
}

TYPED_TEST_P(ResourcesContract, GivesTheEmptyPathForAnExecutableThatWasNot)
{
    this->backend.ship("sips");
    for (const char* name : {"absent", "sip", "sips2", "SIPS", "sip*"})
        EXPECT_EQ(this->resources.executable(name), std::filesystem::path()) << name;
}

TYPED_TEST_P(ResourcesContract, TakesNoPathForAName)
{
    const auto shipped = this->backend.ship("sips");
    const std::vector<std::string> paths{
        "",          "/",
        ".",         "..",
        "./sips",    "/sips",
        "sips/",     "../" + shipped.parent_path().filename().native() + "/sips",
        "a/sips",    "//sips",
        "sips/sips", shipped.native()};
    for (const std::string& path : paths)
        EXPECT_EQ(this->resources.executable(path), std::filesystem::path()) << path;
}

TYPED_TEST_P(ResourcesContract, TellsWhichArtworkThereIs)
{
    EXPECT_TRUE(this->resources.hasImage("MenubarIcon"));
    for (const char* name : {"", "Other", "Menubar", "MenubarIcon2", "menubaricon", "/MenubarIcon"})
        EXPECT_FALSE(this->resources.hasImage(name)) << name;
}

TYPED_TEST_P(ResourcesContract, TakesNoPatternForTheNameOfArtwork)
{
    for (const char* name : {"*", "Menubar*", "MenubarIco?", "[M]enubarIcon"})
        EXPECT_FALSE(this->resources.hasImage(name)) << name;
}

TYPED_TEST_P(ResourcesContract, TakesAnExecutableForNoArtwork)
{
    this->backend.ship("sips");
    EXPECT_FALSE(this->resources.hasImage("sips"));
    EXPECT_EQ(this->resources.executable("MenubarIcon"), std::filesystem::path());
}

REGISTER_TYPED_TEST_SUITE_P(
    ResourcesContract, NamesTheExecutableThatWasShipped, GivesTheEmptyPathForAnExecutableThatWasNot,
    TakesNoPathForAName, TellsWhichArtworkThereIs, TakesNoPatternForTheNameOfArtwork,
    TakesAnExecutableForNoArtwork);

} // namespace tallowbay::contract
