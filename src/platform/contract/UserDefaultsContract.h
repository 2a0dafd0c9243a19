#pragma once

#include "platform/UserDefaults.h"
#include "platform/UserDefaultsStore.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace tallowbay::contract {

// Every store of preferences keeps its header's promises. A backend offers:
//   UserDefaultsStore& store();   without any preference yet
template <typename Backend> class UserDefaultsContract : public testing::Test {
protected:
    Backend backend;
    UserDefaultsStore& store = backend.store();
    UserDefaults& own = store.standard();
};

TYPED_TEST_SUITE_P(UserDefaultsContract);

TYPED_TEST_P(UserDefaultsContract, HoldsNothingAtFirst)
{
    EXPECT_EQ(this->own.value("key"), std::nullopt);
    EXPECT_EQ(this->store.open("com.example.other")->value("key"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, KeepsValueAndType)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const std::vector<DefaultsValue> values{
        {true},
        {false},
        {std::int64_t{0}},
        {std::int64_t{1}},
        {Limits::max()},
        {Limits::min()},
        {0.0},
        {1.0},
        {-2.5},
        {1e300},
        {0.1},
        {std::string()},
        {std::string("1")},
        {std::string("line\nfeed \"quoted\" \\ \xc3\xa9 and a zero: \0.", 38)},
        {DefaultsValue::Dictionary{}},
        {DefaultsValue::Dictionary{
            {"keyCode", {std::int64_t{49}}},
            {"", {std::string("empty key")}},
            {"nested", {DefaultsValue::Dictionary{{"on", {true}}, {"ratio", {2.0}}}}}}}};
    for (const auto& value : values) {
        this->own.set("key", value);
        EXPECT_EQ(this->own.value("key"), value) << "type " << value.value.index();
    }
}

TYPED_TEST_P(UserDefaultsContract, TellsATypeThatWasNotExpectedFromAnAbsentKey)
{
    this->own.set("number", {std::int64_t{7}});
    EXPECT_TRUE(this->own.value("number"));
    EXPECT_EQ(stringValue(this->own, "number"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, KeepsTextThatIsNoUtf8)
{
    for (const std::string text : {"/home/u/\xe9", "\xff", "\xc3", "\xed\xa0\x80", "a\x80z"}) {
        this->own.set("text", {text});
        EXPECT_EQ(this->own.value("text"), (DefaultsValue{text}));
        this->own.set("dictionary", {DefaultsValue::Dictionary{{"path", {text}}}});
        EXPECT_EQ(
            this->own.value("dictionary"),
            (DefaultsValue{DefaultsValue::Dictionary{{"path", {text}}}}));
    }
}

TYPED_TEST_P(UserDefaultsContract, KeepsTheOtherKeys)
{
    this->own.set("a", {true});
    this->own.set("b", {std::string("b")});
    this->own.set("a", {false});
    this->own.remove("absent");
    EXPECT_EQ(this->own.value("a"), DefaultsValue{false});
    EXPECT_EQ(this->own.value("b"), DefaultsValue{std::string("b")});
    this->own.remove("a");
    EXPECT_EQ(this->own.value("a"), std::nullopt);
    EXPECT_EQ(this->own.value("b"), DefaultsValue{std::string("b")});
}

TYPED_TEST_P(UserDefaultsContract, KeepsDomainsApart)
{
    const auto other = this->store.open("com.example.other");
    other->set("key", {true});
    EXPECT_EQ(this->own.value("key"), std::nullopt);
    EXPECT_EQ(this->store.open("com.example.another")->value("key"), std::nullopt);
}

TYPED_TEST_P(UserDefaultsContract, SharesADomainAmongAllWhoOpenIt)
{
    const auto one = this->store.open("com.example.other");
    const auto two = this->store.open("com.example.other");
    one->set("key", {std::int64_t{1}});
    EXPECT_EQ(two->value("key"), DefaultsValue{std::int64_t{1}});
    two->set("key", {std::int64_t{2}});
    EXPECT_EQ(one->value("key"), DefaultsValue{std::int64_t{2}});
    EXPECT_EQ(this->store.open("com.example.other")->value("key"), DefaultsValue{std::int64_t{2}});
}

TYPED_TEST_P(UserDefaultsContract, OpensItsOwnDomainByName)
{
    this->own.set("key", {true});
    EXPECT_EQ(this->store.open("com.quarnel.tallowbay")->value("key"), DefaultsValue{true});
}

REGISTER_TYPED_TEST_SUITE_P(
    UserDefaultsContract, HoldsNothingAtFirst, KeepsValueAndType,
    TellsATypeThatWasNotExpectedFromAnAbsentKey, KeepsTextThatIsNoUtf8, KeepsTheOtherKeys,
    KeepsDomainsApart, SharesADomainAmongAllWhoOpenIt, OpensItsOwnDomainByName);

} // namespace tallowbay::contract
