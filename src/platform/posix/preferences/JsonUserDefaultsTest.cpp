#include "platform/posix/preferences/JsonUserDefaults.h"

#include "platform/contract/UserDefaultsContract.h"
#include "platform/posix/files/FileBytes.h"
#include "support/TemporaryFolder.h"

#include <fstream>
#include <functional>
#include <thread>

#include <sys/wait.h>

namespace tallowbay::posix {

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

struct JsonDefaultsBackend {
    test::TemporaryFolder temporary;
    JsonUserDefaultsStore json{temporary.path};

    UserDefaultsStore& store() { return json; }
};

class JsonUserDefaultsTest : public testing::Test {
protected:
    JsonUserDefaultsTest() { fs::create_directory(path.parent_path()); }

    void write(const std::string& text) { std::ofstream(path) << text; }
    // What the error output is told by the action.
    static std::string complaints(const std::function<void()>& action)
    {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }
    static std::string nested(std::size_t depth)
    {
        std::string text;
        for (std::size_t i = 0; i < depth; ++i)
            text += "{\"a\":";
        text += '0';
        text.append(depth, '}');
        return text;
    }
    std::string written() { return readFile(path).value_or("no file"); }

    test::TemporaryFolder temporary;
    JsonUserDefaultsStore store{temporary.path};
    UserDefaults& own = store.standard();
    const fs::path path = temporary.path / "tallowbay" / "com.quarnel.tallowbay.json";
    const fs::path damaged = path.native() + ".damaged";
};

TEST_F(JsonUserDefaultsTest, WritesJsonForPeople)
{
    own.set("toastsDisabled", {true});
    own.set("ratio", {2.0});
    EXPECT_EQ(written(), "{\n  \"ratio\": 2.0,\n  \"toastsDisabled\": true\n}\n");
}

TEST_F(JsonUserDefaultsTest, MakesItsFolder)
{
    fs::remove_all(path.parent_path());
    own.set("a", {true});
    EXPECT_EQ(own.value("a"), DefaultsValue{true});
}

TEST_F(JsonUserDefaultsTest, ReadsWhatPeopleWrite)
{
    write(R"({"flag": true, "count": 3, "ratio": 0.5, "text": "x", "huge": 18446744073709551615,
        "dictionary": {"a": 1, "list": [1]}, "list": [1, 2], "nothing": null})");
    EXPECT_EQ(own.value("flag"), DefaultsValue{true});
    EXPECT_EQ(own.value("count"), DefaultsValue{std::int64_t{3}});
    EXPECT_EQ(own.value("ratio"), DefaultsValue{0.5});
    EXPECT_EQ(own.value("huge"), DefaultsValue{18446744073709551615.0});
    EXPECT_EQ(
        own.value("dictionary"),
        (DefaultsValue{DefaultsValue::Dictionary{{"a", {std::int64_t{1}}}}}));
    EXPECT_EQ(own.value("list"), std::nullopt);
    EXPECT_EQ(own.value("nothing"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, LeavesWhatItDoesNotKnowAsItWas)
{
    write(R"({"list": [1, {"deep": null}], "nothing": null, "dictionary": {"list": []}})");
    own.set("a", {true});
    own.remove("a");
    EXPECT_EQ(
        nlohmann::json::parse(written()),
        nlohmann::json::parse(
            R"({"list": [1, {"deep": null}], "nothing": null, "dictionary": {"list": []}})"));
}

TEST_F(JsonUserDefaultsTest, ChangesTheTypeOfAnEqualNumber)
{
    own.set("a", {std::int64_t{1}});
    own.set("a", {1.0});
    EXPECT_EQ(own.value("a"), DefaultsValue{1.0});
}

TEST_F(JsonUserDefaultsTest, ReadsANumberThatIsNotFiniteAsAbsent)
{
    own.set("a", {std::numeric_limits<double>::infinity()});
    EXPECT_EQ(own.value("a"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, SurvivesAKeyThatIsNoUtf8)
{
    own.set("key \xe9", {true});
    own.set("other", {true});
    EXPECT_EQ(own.value("other"), DefaultsValue{true});
}

TEST_F(JsonUserDefaultsTest, TakesAnEmptyFileForEmpty)
{
    for (const char* text : {"", "\n", "{}"}) {
        write(text);
        EXPECT_EQ(own.value("a"), std::nullopt);
        own.set("a", {true});
        EXPECT_EQ(own.value("a"), DefaultsValue{true});
        EXPECT_FALSE(fs::exists(damaged));
    }
}

TEST_F(JsonUserDefaultsTest, KeepsADamagedFileAsideBeforeItWrites)
{
    for (const char* text : {"{\"a\": tr", "[1]", "\"text\"", "{} {}", "{\"a\": 1e999}", "\xff"}) {
        fs::remove(damaged);
        write(text);
        EXPECT_EQ(own.value("a"), std::nullopt);
        EXPECT_EQ(written(), text) << "reading changes nothing";
        own.set("b", {true});
        EXPECT_EQ(own.value("b"), DefaultsValue{true});
        EXPECT_EQ(readFile(damaged), text);
    }
}

TEST_F(JsonUserDefaultsTest, NumbersDamagedFiles)
{
    for (const char* text : {"first", "second", "third"}) {
        write(text);
        own.set("a", {true});
    }
    EXPECT_EQ(readFile(damaged), "first");
    EXPECT_EQ(readFile(damaged.native() + ".2"), "second");
    EXPECT_EQ(readFile(damaged.native() + ".3"), "third");
}

TEST_F(JsonUserDefaultsTest, SaysOnTheErrorOutputHowADamagedFileIsKept)
{
    write("damaged");
    own.value("a");
    EXPECT_EQ(
        complaints([&] { own.set("a", {true}); }),
        "tallowbay: " + path.native()
            + " is damaged; kept as com.quarnel.tallowbay.json.damaged\n");
}

// It was told of when something was next written: perhaps never, while every setting was ignored.
TEST_F(JsonUserDefaultsTest, TellsOfADamagedFileOnceWhenItIsRead)
{
    const std::string told =
        "tallowbay: " + path.native() + " cannot be read or understood, and counts as empty\n";
    const auto read = [&] { own.value("a"); };
    write("damaged");
    EXPECT_EQ(complaints(read), told);
    EXPECT_EQ(complaints(read), "");
    write("damaged in another way");
    EXPECT_EQ(complaints(read), told);
    write("{}");
    EXPECT_EQ(complaints(read), "");
}

TEST_F(JsonUserDefaultsTest, UnderstandsOnlySoDeepANesting)
{
    constexpr auto deepest = JsonDomainFile::deepest;
    write(nested(deepest));
    EXPECT_TRUE(own.value("a"));
    write(R"({"a": "[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[\"[["})");
    EXPECT_TRUE(own.value("a")) << "a text nests nothing";
    for (const std::size_t depth : {deepest + 1, std::size_t{30'000}}) {
        fs::remove(damaged);
        write(nested(depth));
        EXPECT_EQ(own.value("a"), std::nullopt);
        own.set("b", {true});
        EXPECT_EQ(readFile(damaged), nested(depth));
    }
}

TEST_F(JsonUserDefaultsTest, ReadsAndWritesNoMoreThanPreferencesTake)
{
    const std::string most(
        JsonDomainFile::mostBytes - std::string("{\n  \"a\": \"\"\n}\n").size(), 'x');
    own.set("a", {most});
    EXPECT_EQ(own.value("a"), DefaultsValue{most});
    own.set("a", {most + "x"});
    EXPECT_EQ(own.value("a"), DefaultsValue{most}) << "it could not be read again";

    std::ofstream(path, std::ios::app) << " ";
    EXPECT_EQ(own.value("a"), std::nullopt);
    own.set("b", {true});
    EXPECT_EQ(fs::file_size(damaged), JsonDomainFile::mostBytes + 1);
}

TEST_F(JsonUserDefaultsTest, WritesNothingWhereNothingChanges)
{
    own.set("a", {true});
    const auto before = fs::last_write_time(path);
    std::this_thread::sleep_for(20ms);
    own.set("a", {true});
    own.remove("absent");
    EXPECT_EQ(fs::last_write_time(path), before);
}

TEST_F(JsonUserDefaultsTest, ReadsAnOldFileOnlyOnce)
{
    write(R"({"a": "old"})");
    fs::last_write_time(path, fs::file_time_type::clock::now() - 1h);
    EXPECT_EQ(own.value("a"), DefaultsValue{std::string("old")});
    // Changed behind the file system's back: same length, same date.
    const auto date = fs::last_write_time(path);
    write(R"({"a": "new"})");
    fs::last_write_time(path, date);
    EXPECT_EQ(own.value("a"), DefaultsValue{std::string("old")});
}

TEST_F(JsonUserDefaultsTest, TrustsNoDateOfAFileThatWasJustWritten)
{
    write(R"({"a": "old"})");
    const auto date = fs::last_write_time(path);
    EXPECT_EQ(own.value("a"), DefaultsValue{std::string("old")});
    write(R"({"a": "new"})");
    fs::last_write_time(path, date);
    EXPECT_EQ(own.value("a"), DefaultsValue{std::string("new")});
}

TEST_F(JsonUserDefaultsTest, SeesEveryOfManyQuickWritesOfAnother)
{
    const auto other = store.open("com.quarnel.tallowbay");
    for (std::int64_t i = 100; i < 400; ++i) {
        other->set("count", {i});
        ASSERT_EQ(own.value("count"), DefaultsValue{i});
    }
}

TEST_F(JsonUserDefaultsTest, LosesNothingToWritersInOtherProcesses)
{
    std::vector<pid_t> children;
    for (int writer = 0; writer < 4; ++writer) {
        const auto child = ::fork();
        if (child == 0) {
            JsonUserDefaults defaults(path);
            for (int i = 0; i < 25; ++i)
                defaults.set(std::to_string(writer) + "." + std::to_string(i), {true});
            ::_exit(0);
        }
        children.push_back(child);
    }
    for (const auto child : children)
        ::waitpid(child, nullptr, 0);
    EXPECT_EQ(nlohmann::json::parse(written()).size(), 100u);
}

TEST_F(JsonUserDefaultsTest, LosesAWriteThatTheDiskRefuses)
{
    write(R"({"a": 1})");
    // A folder in the place of the settings' folder: no file can be made in it.
    fs::rename(path.parent_path(), temporary.path / "aside");
    std::ofstream(path.parent_path()) << "no folder";
    own.set("a", {std::int64_t{2}});
    EXPECT_EQ(own.value("a"), std::nullopt);
}

TEST_F(JsonUserDefaultsTest, KeepsALinkToAFileElsewhere)
{
    const auto elsewhere = temporary.path / "elsewhere.json";
    std::ofstream(elsewhere) << "{}";
    fs::create_symlink(elsewhere, path);
    own.set("a", {true});
    EXPECT_TRUE(fs::is_symlink(path));
    EXPECT_NE(readFile(elsewhere)->find("true"), std::string::npos);
}

TEST_F(JsonUserDefaultsTest, KeepsNothingOfADomainThatCannotBeAFile)
{
    const std::string zero("a\0b", 3);
    for (const auto& name :
         {std::string(), std::string("."), std::string(".."), std::string(".hidden"),
          std::string("../other"), std::string("a/b"), zero, std::string(201, 'a')}) {
        EXPECT_FALSE(JsonUserDefaultsStore::isDomainName(name));
        const auto domain = store.open(name);
        domain->set("a", {true});
        EXPECT_EQ(domain->value("a"), std::nullopt);
    }
    EXPECT_TRUE(fs::is_empty(path.parent_path()));
}

TEST_F(JsonUserDefaultsTest, LeavesNoFilesButItsOwn)
{
    own.set("a", {true});
    EXPECT_EQ(std::distance(fs::directory_iterator(path.parent_path()), {}), 2)
        << "the domain and its lock";
}

} // namespace

} // namespace tallowbay::posix

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(Json, UserDefaultsContract, posix::JsonDefaultsBackend);
}
