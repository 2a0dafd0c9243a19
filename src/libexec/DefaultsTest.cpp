#include "platform/posix/files/FileBytes.h"
#include "platform/posix/preferences/JsonUserDefaults.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <thread>

#include <sys/wait.h>

namespace tallowbay::posix {

namespace {

struct Ended {
    int status = -1;
    std::string output;
    std::string errors;
};

class DefaultsTest : public testing::Test {
protected:
    DefaultsTest() { ::setenv("XDG_CONFIG_HOME", temporary.path.c_str(), 1); }

    // The arguments stand in the command as a shell reads them.
    Ended defaults(const std::string& arguments)
    {
        const auto errors = temporary.path / "errors";
        const auto command =
            std::string("'" DEFAULTS "' ") + arguments + " 2>'" + errors.native() + "'";
        Ended ended;
        FILE* output = ::popen(command.c_str(), "re");
        std::array<char, 4096> block;
        while (const auto count = std::fread(block.data(), 1, block.size(), output))
            ended.output.append(block.data(), count);
        ended.status = WEXITSTATUS(::pclose(output));
        ended.errors = readFile(errors).value_or("");
        return ended;
    }
    std::optional<DefaultsValue> stored(const std::string& key)
    {
        return store.open("com.example.shots")->value(key);
    }

    test::TemporaryFolder temporary;
    JsonUserDefaultsStore store{temporary.path};
};

TEST_F(DefaultsTest, WritesTextThatHasNoType)
{
    EXPECT_EQ(defaults("write com.example.shots location '/home/u/My \"Shots\"'").status, 0);
    EXPECT_EQ(stored("location"), (DefaultsValue{std::string("/home/u/My \"Shots\"")}));
    EXPECT_EQ(defaults("write com.example.shots number 7").status, 0);
    EXPECT_EQ(stored("number"), (DefaultsValue{std::string("7")}));
    EXPECT_EQ(defaults("write com.example.shots dash -x").status, 0);
    EXPECT_EQ(stored("dash"), (DefaultsValue{std::string("-x")}));
    EXPECT_EQ(defaults("write com.example.shots nothing ''").status, 0);
    EXPECT_EQ(stored("nothing"), (DefaultsValue{std::string()}));
}

TEST_F(DefaultsTest, WritesTheTypeThatIsNamed)
{
    const std::vector<std::pair<std::string, DefaultsValue>> rows{
        {"-bool YES", {true}},
        {"-bool true", {true}},
        {"-bool 1", {true}},
        {"-bool no", {false}},
        {"-bool FALSE", {false}},
        {"-bool 0", {false}},
        {"-int 42", {std::int64_t{42}}},
        {"-int -1", {std::int64_t{-1}}},
        {"-float 0.5", {0.5}},
        {"-float 2", {2.0}},
        {"-string -bool", {std::string("-bool")}},
        {"-string true", {std::string("true")}}};
    for (const auto& [words, value] : rows) {
        EXPECT_EQ(defaults("write com.example.shots key " + words).status, 0) << words;
        EXPECT_EQ(stored("key"), value) << words;
    }
}

TEST_F(DefaultsTest, RefusesWhatMakesNoSense)
{
    for (const std::string words :
         {"", "read", "frobnicate com.example.shots", "write com.example.shots",
          "write com.example.shots key", "write com.example.shots key -bool",
          "write com.example.shots key -bool maybe", "write com.example.shots key -int 4x",
          "write com.example.shots key -int ''", "write com.example.shots key -int 9e9",
          "write com.example.shots key -int 9223372036854775808",
          "write com.example.shots key -float inf", "write com.example.shots key -float nan",
          "write com.example.shots key a b", "write com.example.shots key -int 1 2",
          "read com.example.shots key more", "delete com.example.shots key more"}) {
        const auto ended = defaults(words);
        EXPECT_NE(ended.status, 0) << words;
        EXPECT_NE(ended.errors.find("usage"), std::string::npos) << words;
        EXPECT_EQ(ended.output, "") << words;
    }
    EXPECT_EQ(stored("key"), std::nullopt);
}

TEST_F(DefaultsTest, RefusesWhatIsNoDomainName)
{
    for (const std::string name : {"''", "a/b", "../x", ".hidden"}) {
        const auto ended = defaults("write " + name + " key value");
        EXPECT_NE(ended.status, 0) << name;
        EXPECT_NE(ended.errors, "") << name;
    }
}

TEST_F(DefaultsTest, ReadsAValue)
{
    defaults("write com.example.shots text 'two words'");
    defaults("write com.example.shots flag -bool yes");
    defaults("write com.example.shots count -int 3");
    store.open("com.example.shots")->set("keys", {DefaultsValue::Dictionary{{"a", {true}}}});
    EXPECT_EQ(defaults("read com.example.shots text").output, "two words\n");
    EXPECT_EQ(defaults("read com.example.shots flag").output, "1\n");
    EXPECT_EQ(defaults("read com.example.shots count").output, "3\n");
    EXPECT_EQ(defaults("read com.example.shots keys").output, "{\n  \"a\": true\n}\n");
}

TEST_F(DefaultsTest, ReadsAWholeDomain)
{
    defaults("write com.example.shots flag -bool no");
    const auto ended = defaults("read com.example.shots");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, "{\n  \"flag\": false\n}\n");
}

TEST_F(DefaultsTest, DeletesAKeyAndLeavesTheOthers)
{
    defaults("write com.example.shots target clipboard");
    defaults("write com.example.shots location /tmp");
    EXPECT_EQ(defaults("delete com.example.shots target").status, 0);
    EXPECT_EQ(stored("target"), std::nullopt);
    EXPECT_EQ(stored("location"), (DefaultsValue{std::string("/tmp")}));
}

TEST_F(DefaultsTest, DeletesADomain)
{
    defaults("write com.example.shots target clipboard");
    EXPECT_EQ(defaults("delete com.example.shots").status, 0);
    EXPECT_EQ(stored("target"), std::nullopt);
    EXPECT_EQ(defaults("read com.example.shots").status, 1);
}

TEST_F(DefaultsTest, FailsWhereThereIsNothingToReadOrDelete)
{
    for (const std::string words :
         {"read com.example.shots", "read com.example.shots key", "delete com.example.shots",
          "delete com.example.shots key"}) {
        const auto ended = defaults(words);
        EXPECT_EQ(ended.status, 1) << words;
        EXPECT_NE(ended.errors.find("does not exist"), std::string::npos) << words;
        EXPECT_EQ(ended.output, "");
    }
}

TEST_F(DefaultsTest, SaysThatTheDiskRefused)
{
    std::filesystem::remove(temporary.path / "tallowbay");
    ::fclose(::fopen((temporary.path / "tallowbay").c_str(), "w"));
    const auto ended = defaults("write com.example.shots key value");
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find("cannot be written"), std::string::npos);
}

TEST_F(DefaultsTest, SaysThatTheOutputCannotBeWritten)
{
    defaults("write com.example.shots key value");
    EXPECT_EQ(defaults("read com.example.shots key >/dev/full").status, 1);
}

TEST_F(DefaultsTest, IsSeenAtOnceByARunningProgram)
{
    const auto domain = store.open("com.example.shots");
    EXPECT_EQ(domain->value("location"), std::nullopt);
    for (const std::string location : {"/a", "/b", "/c"}) {
        defaults("write com.example.shots location " + location);
        EXPECT_EQ(domain->value("location"), (DefaultsValue{location}));
    }
}

TEST_F(DefaultsTest, WritesBesideARunningProgramWithoutLoss)
{
    std::jthread helper([this] {
        for (int i = 0; i < 20; ++i)
            defaults("write com.example.shots helper" + std::to_string(i) + " x");
    });
    const auto domain = store.open("com.example.shots");
    for (int i = 0; i < 20; ++i)
        domain->set("program" + std::to_string(i), {true});
    helper.join();
    for (int i = 0; i < 20; ++i) {
        EXPECT_TRUE(domain->value("helper" + std::to_string(i)));
        EXPECT_TRUE(domain->value("program" + std::to_string(i)));
    }
}

} // namespace

} // namespace tallowbay::posix
