#include "platform/linux/X11Pasteboard.h"

#include "platform/contract/PasteboardContract.h"
#include "platform/linux/X11TestDesktop.h"

#include <atomic>
#include <csignal>

namespace tallowbay::linux_desktop {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using test::XClient;
using testing::ElementsAre;

// The percent-encoding undone by someone else than the code under test.
std::string decoded(const std::string& text)
{
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] != '%') {
            bytes += text[at];
            continue;
        }
        bytes += char(std::stoi(text.substr(at + 1, 2), nullptr, 16));
        at += 2;
    }
    return bytes;
}

std::vector<path> filesOf(const std::string& list, const std::string& lineEnd)
{
    const std::string scheme = "file://";
    std::vector<path> files;
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find(lineEnd, begin), list.size());
        const std::string line = list.substr(begin, end - begin);
        EXPECT_EQ(line.substr(0, scheme.size()), scheme);
        files.push_back(decoded(line.substr(scheme.size())));
        begin = end + lineEnd.size();
    }
    return files;
}

std::vector<path> manyFiles(int count)
{
    std::vector<path> files;
    for (int i = 0; i < count; ++i)
        files.push_back(
            "/home/someone/Pictures/Screenshots/Screenshot from the desktop " + std::to_string(i)
            + ".png");
    return files;
}

// A clipboard manager, which keeps what programs that end hand over to it.
class Keeper {
public:
    explicit Keeper(const std::string& display, bool answers = true)
        : client(display)
        , answers(answers)
    {
        client.own("CLIPBOARD_MANAGER");
        thread = std::thread([this] { run(); });
    }
    ~Keeper()
    {
        ended = true;
        thread.join();
    }
    std::string kept; // valid once the hand-over is done

private:
    void run()
    {
        while (!ended) {
            const auto event = client.nextOf(XCB_SELECTION_REQUEST, 10ms);
            if (!event || !answers)
                continue;
            kept = client.paste("UTF8_STRING").value_or("");
            client.answer(reinterpret_cast<xcb_selection_request_event_t&>(*event), true);
        }
    }

    XClient client;
    bool answers;
    std::atomic<bool> ended = false;
    std::thread thread;
};

class X11PasteboardBackend {
public:
    Pasteboard& pasteboard() { return board; }

    std::vector<path> pastedFiles()
    {
        const std::string list = output("text/uri-list");
        const std::string copied = output("x-special/gnome-copied-files");
        const std::vector<path> files = filesOf(list, "\r\n");
        EXPECT_EQ(output("x-special/mate-copied-files"), copied);
        EXPECT_EQ(filesOf(copied.empty() ? "" : copied.substr(copied.find('\n') + 1), "\n"), files);
        return files;
    }

    std::string pastedText()
    {
        const std::string text = output("UTF8_STRING");
        for (const char* form : {"text/plain", "text/plain;charset=utf-8", "TEXT"})
            EXPECT_EQ(output(form), text);
        return text;
    }

    void copyFilesElsewhere(const std::vector<path>& files)
    {
        std::string list;
        for (const path& file : files)
            list += "file://" + encoded(file) + "\r\n";
        copyElsewhere("text/uri-list", list);
    }

    void copyTextElsewhere(const std::string& text) { copyElsewhere("UTF8_STRING", text); }

    void startKeeper() { keeper.emplace(desktop.server.display()); }
    std::string keptText() { return keeper->kept; }

private:
    static std::string encoded(const path& file)
    {
        std::string text;
        for (const char letter : file.native()) {
            std::array<char, 4> escape{};
            std::snprintf(escape.data(), escape.size(), "%%%02x", unsigned(letter) & 0xff);
            text += letter == '/' ? "/" : escape.data();
        }
        return text;
    }

    std::string output(const std::string& form)
    {
        return desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", form}).output;
    }

    void copyElsewhere(const std::string& form, const std::string& content)
    {
        const std::int64_t before = board.changeCount();
        owners.push_back(desktop.server.start(
            {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", form}, content));
        EXPECT_TRUE(desktop.run([&] { return board.changeCount() > before; }));
    }

    X11TestDesktop desktop;
    X11Pasteboard board{*desktop.session, desktop.dispatch};
    std::vector<std::unique_ptr<test::ChildProcess>> owners;
    std::optional<Keeper> keeper;
};

class X11PasteboardTest : public testing::Test {
protected:
    X11TestDesktop desktop;
    X11Pasteboard pasteboard{*desktop.session, desktop.dispatch};
    XClient client{desktop.server.display()};

    std::vector<std::string> targets()
    {
        return desktop.beside([&] { return client.targets(); });
    }

    std::optional<std::string> paste(const std::string& form)
    {
        return desktop.beside([&] { return client.paste(form); });
    }

    void dispatchFor(std::chrono::milliseconds time)
    {
        desktop.dispatch.runUntil([] { return false; }, time);
    }

    bool granted()
    {
        return desktop.beside([&] { return client.granted(); });
    }
};

} // namespace

TEST_F(X11PasteboardTest, OffersFilesAsFilesAndAsNothingElse)
{
    pasteboard.writeFiles({"/a"});
    EXPECT_THAT(
        targets(),
        ElementsAre(
            "TARGETS", "TIMESTAMP", "MULTIPLE", "text/uri-list", "x-special/gnome-copied-files",
            "x-special/mate-copied-files"));
}

TEST_F(X11PasteboardTest, OffersTextAsTextAndAsNothingElse)
{
    pasteboard.writeText("text");
    EXPECT_THAT(
        targets(),
        ElementsAre(
            "TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "text/plain;charset=utf-8",
            "text/plain", "STRING", "TEXT"));
}

TEST_F(X11PasteboardTest, OwnsAnEmptySelectionAfterClear)
{
    pasteboard.writeFiles({"/a"});
    pasteboard.clear();
    EXPECT_THAT(targets(), ElementsAre("TARGETS", "TIMESTAMP"));
    EXPECT_EQ(paste("text/uri-list"), std::nullopt);
}

TEST_F(X11PasteboardTest, ShowsItsTargetsToXclip)
{
    pasteboard.writeFiles({"/a"});
    const auto shown =
        desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", "TARGETS"});
    EXPECT_EQ(
        shown.output,
        "TARGETS\nTIMESTAMP\nMULTIPLE\ntext/uri-list\nx-special/gnome-copied-files\n"
        "x-special/mate-copied-files\n");
}

TEST_F(X11PasteboardTest, WritesTheFormsOfFilesToTheByte)
{
    pasteboard.writeFiles({"/a b", "/c"});
    EXPECT_EQ(paste("text/uri-list"), "file:///a%20b\r\nfile:///c\r\n");
    EXPECT_EQ(paste("x-special/gnome-copied-files"), "copy\nfile:///a%20b\nfile:///c");
    EXPECT_EQ(paste("x-special/mate-copied-files"), "copy\nfile:///a%20b\nfile:///c");
    EXPECT_EQ(paste("text/plain"), std::nullopt);
    EXPECT_EQ(paste("image/png"), std::nullopt);
}

TEST_F(X11PasteboardTest, WritesLatin1WhereAStringIsWanted)
{
    pasteboard.writeText("\u00fc \u00ff \u65e5\u672c \U0001f47b.");
    EXPECT_EQ(paste("STRING"), "\xfc \xff ?? ?.");
}

TEST_F(X11PasteboardTest, TellsTheTypeOfEachForm)
{
    const auto typeOf = [&](const char* form) {
        client.request(form);
        EXPECT_TRUE(granted());
        return client.atomName(client.take().type);
    };
    pasteboard.writeText("text");
    EXPECT_EQ(typeOf("TARGETS"), "ATOM");
    EXPECT_EQ(typeOf("TIMESTAMP"), "INTEGER");
    EXPECT_EQ(typeOf("UTF8_STRING"), "UTF8_STRING");
    EXPECT_EQ(typeOf("TEXT"), "UTF8_STRING");
    EXPECT_EQ(typeOf("STRING"), "STRING");
    EXPECT_EQ(typeOf("text/plain"), "text/plain");
}

TEST_F(X11PasteboardTest, TellsTheServerTimeOfTheWrite)
{
    const auto before = desktop.session->serverTime();
    pasteboard.writeFiles({"/a"});
    const auto after = desktop.session->serverTime();
    client.request("TIMESTAMP");
    ASSERT_TRUE(granted());
    const auto values = client.take().values();
    ASSERT_EQ(values.size(), 1u);
    EXPECT_GE(values[0], before);
    EXPECT_LE(values[0], after);
}

TEST_F(X11PasteboardTest, RefusesARequestFromBeforeItBecameTheOwner)
{
    const auto before = desktop.session->serverTime();
    ASSERT_TRUE(test::waitUntil([&] { return desktop.session->serverTime() != before; }));
    pasteboard.writeFiles({"/a"});
    client.request("text/uri-list", "PASTED", "CLIPBOARD", before);
    EXPECT_FALSE(granted());
}

TEST_F(X11PasteboardTest, AnswersARequestFromBeforeItsLastWriteWithTheNewContent)
{
    pasteboard.writeFiles({"/old"});
    const auto before = desktop.session->serverTime();
    ASSERT_TRUE(test::waitUntil([&] { return desktop.session->serverTime() != before; }));
    pasteboard.writeFiles({"/new"});
    client.request("text/uri-list", "PASTED", "CLIPBOARD", before);
    EXPECT_TRUE(granted());
    EXPECT_EQ(client.take().bytes, "file:///new\r\n");
}

TEST_F(X11PasteboardTest, AnswersAnObsoleteRequestorInThePropertyOfTheTarget)
{
    pasteboard.writeText("text");
    const auto target = client.atom("UTF8_STRING");
    xcb_convert_selection(
        client.connection(), client.window(), client.atom("CLIPBOARD"), target, XCB_ATOM_NONE,
        XCB_CURRENT_TIME);
    EXPECT_TRUE(granted());
    EXPECT_EQ(client.take("UTF8_STRING").bytes, "text");
}

TEST_F(X11PasteboardTest, AnswersManyFormsAtOnce)
{
    pasteboard.writeFiles({"/a"});
    client.setValues(
        client.window(), "PAIRS", "ATOM_PAIR",
        {client.atom("text/uri-list"), client.atom("FIRST"), client.atom("image/png"),
         client.atom("SECOND"), client.atom("x-special/gnome-copied-files"), client.atom("THIRD")});
    client.request("MULTIPLE", "PAIRS");
    ASSERT_TRUE(granted());
    const auto pairs = client.take("PAIRS").values();
    EXPECT_THAT(
        pairs,
        ElementsAre(
            client.atom("text/uri-list"), client.atom("FIRST"), client.atom("image/png"),
            XCB_ATOM_NONE, client.atom("x-special/gnome-copied-files"), client.atom("THIRD")));
    EXPECT_EQ(client.take("FIRST").bytes, "file:///a\r\n");
    EXPECT_EQ(client.take("THIRD").bytes, "copy\nfile:///a");
}

TEST_F(X11PasteboardTest, RefusesManyFormsThatAreNotListed)
{
    pasteboard.writeFiles({"/a"});
    client.request("MULTIPLE", "NO_SUCH_PROPERTY");
    EXPECT_FALSE(granted());
}

TEST_F(X11PasteboardTest, SendsLongListsInPieces)
{
    for (const int count : {1000, 20000}) {
        const std::vector<path> files = manyFiles(count);
        pasteboard.writeFiles(files);
        client.request("text/uri-list");
        ASSERT_TRUE(granted());
        ASSERT_EQ(client.look().type, client.atom("INCR"));
        const auto list = desktop.beside([&] { return client.takePieces(); });
        EXPECT_EQ(filesOf(list.value_or(""), "\r\n"), files);
        desktop.settle();
        EXPECT_EQ(pasteboard.transferCount(), 0u);
    }
}

TEST_F(X11PasteboardTest, SendsLongListsToXclip)
{
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    const auto shown =
        desktop.runProgram({"xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"});
    EXPECT_EQ(filesOf(shown.output, "\r\n"), files);
}

TEST_F(X11PasteboardTest, SendsAVeryLongText)
{
    std::string text;
    while (text.size() < 20'000'000)
        text += "All work and no play makes a long text. ";
    pasteboard.writeText(text);
    EXPECT_TRUE(paste("UTF8_STRING") == text);
}

TEST_F(X11PasteboardTest, ServesOthersWhileOneIsSlow)
{
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    XClient slow(desktop.server.display());
    slow.request("text/uri-list");
    ASSERT_TRUE(desktop.beside([&] { return slow.granted(); }));
    slow.take();
    ASSERT_TRUE(desktop.run([&] { return slow.look().bytes.size() > 4; }));

    EXPECT_EQ(filesOf(paste("text/uri-list").value_or(""), "\r\n"), files);
    EXPECT_EQ(pasteboard.transferCount(), 1u);

    // The slow one goes on, and gets what it asked for, though the content is another by now.
    pasteboard.writeText("other");
    const std::string first = slow.take().bytes;
    std::string list = first;
    while (true) {
        XClient::Property piece;
        ASSERT_TRUE(desktop.run([&] { return (piece = slow.take()).type != XCB_ATOM_NONE; }));
        if (piece.bytes.empty())
            break;
        list += piece.bytes;
    }
    EXPECT_EQ(filesOf(list, "\r\n"), files);
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(X11PasteboardTest, ServesTwoPropertiesOfOneWindowAtATime)
{
    const std::vector<path> files = manyFiles(5000);
    pasteboard.writeFiles(files);
    client.request("text/uri-list", "ONE");
    client.request("x-special/gnome-copied-files", "TWO");
    ASSERT_TRUE(granted());
    ASSERT_TRUE(granted());
    EXPECT_EQ(pasteboard.transferCount(), 2u);
    const auto two = desktop.beside([&] { return client.takePieces("TWO"); });
    const auto one = desktop.beside([&] { return client.takePieces("ONE"); });
    EXPECT_EQ(filesOf(one.value_or(""), "\r\n"), files);
    EXPECT_EQ(filesOf(two.value_or("").substr(5), "\n"), files);
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(X11PasteboardTest, BeginsAgainForOneThatAsksTwice)
{
    const std::vector<path> files = manyFiles(5000);
    pasteboard.writeFiles(files);
    client.request("text/uri-list");
    ASSERT_TRUE(granted());
    client.take();
    ASSERT_TRUE(desktop.run([&] { return client.look().bytes.size() > 4; }));

    EXPECT_EQ(filesOf(paste("text/uri-list").value_or(""), "\r\n"), files);
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
}

TEST_F(X11PasteboardTest, ForgetsARequestorThatDies)
{
    pasteboard.writeFiles(manyFiles(20000));
    {
        XClient dying(desktop.server.display());
        dying.request("text/uri-list");
        ASSERT_TRUE(desktop.beside([&] { return dying.granted(); }));
        EXPECT_EQ(pasteboard.transferCount(), 1u);
    }
    EXPECT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 0; }));
}

TEST_F(X11PasteboardTest, SurvivesARequestorThatIsGoneBeforeTheAnswer)
{
    pasteboard.writeFiles(manyFiles(20000));
    {
        XClient dying(desktop.server.display());
        dying.request("text/uri-list");
        dying.request("TARGETS");
        dying.sync();
    }
    desktop.settle();
    EXPECT_EQ(pasteboard.transferCount(), 0u);
    EXPECT_FALSE(targets().empty());
}

TEST_F(X11PasteboardTest, SurvivesARequestorThatIsKilledMidTransfer)
{
    pasteboard.writeFiles(manyFiles(20000));
    auto pasting =
        desktop.server.start({"xclip", "-o", "-selection", "clipboard", "-t", "text/uri-list"});
    ASSERT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 1; }));
    pasting->signal(SIGKILL);
    EXPECT_TRUE(desktop.run([&] { return pasteboard.transferCount() == 0; }));
}

TEST_F(X11PasteboardTest, AnswersNothingOnceAnotherProgramOwnsTheClipboard)
{
    pasteboard.writeFiles({"/a"});
    client.own("CLIPBOARD");
    desktop.settle();
    EXPECT_EQ(pasteboard.readFiles(), std::vector<path>());

    pasteboard.writeFiles({"/b"});
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///b\r\n");
}

TEST_F(X11PasteboardTest, CountsAChangeThatCameBeforeItsOwnWriteOnlyWithThat)
{
    pasteboard.writeFiles({"/a"});
    const std::int64_t first = pasteboard.changeCount();
    client.own("CLIPBOARD"); // told to us, but not handled yet
    pasteboard.writeFiles({"/b"});
    EXPECT_EQ(pasteboard.changeCount(), first + 1);
    desktop.settle();
    EXPECT_EQ(pasteboard.changeCount(), first + 1);
    XClient other(desktop.server.display());
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///b\r\n");
}

TEST_F(X11PasteboardTest, CountsThatAnotherOwnerGoesAway)
{
    std::optional<XClient> other(desktop.server.display());
    other->own("CLIPBOARD");
    desktop.settle();
    const std::int64_t owned = pasteboard.changeCount();
    other.reset();
    EXPECT_TRUE(desktop.run([&] { return pasteboard.changeCount() > owned; }));
}

TEST_F(X11PasteboardTest, StaysEmptyUnderAManagerThatBringsBackWhatIsGone)
{
    const auto manager = desktop.server.start({"parcellite", "-n"});
    const auto others = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "UTF8_STRING"}, "of others");
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    // It reads every half second; once it has the text, it does bring it back.
    dispatchFor(1500ms);
    others->end();
    ASSERT_TRUE(desktop.run([&] { return paste("UTF8_STRING") == "of others"; }))
        << manager->errors();

    pasteboard.writeText("ours");
    dispatchFor(1500ms);
    pasteboard.clear();
    dispatchFor(1500ms);
    EXPECT_THAT(targets(), ElementsAre("TARGETS", "TIMESTAMP"));
    EXPECT_TRUE(manager->running()) << manager->errors();
}

TEST_F(X11PasteboardTest, ReadsLongListsThatComeInPieces)
{
    const std::vector<path> files = manyFiles(20000);
    std::string list;
    for (const path& file : files)
        list += "file://" + file.native() + "\r\n";
    const auto owner = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "text/uri-list"}, list);
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    EXPECT_EQ(pasteboard.readFiles(), files);
}

TEST_F(X11PasteboardTest, ReadsTheFormOfFileManagersIfThereIsNoOther)
{
    const auto owner = desktop.server.start(
        {"xclip", "-i", "-quiet", "-selection", "clipboard", "-t", "x-special/gnome-copied-files"},
        "cut\nfile:///a\nfile://localhost/b\nfile://elsewhere/c\nhttps://example.com/d");
    ASSERT_TRUE(desktop.run([&] { return pasteboard.changeCount() > 0; }));
    EXPECT_THAT(pasteboard.readFiles(), ElementsAre("/a", "/b"));
}

TEST_F(X11PasteboardTest, WaitsHalfASecondForAnOwnerThatDoesNotAnswer)
{
    client.own("CLIPBOARD");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(pasteboard.readFiles().empty());
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(taken, 490ms);
    EXPECT_LT(taken, 1500ms);
}

TEST_F(X11PasteboardTest, GivesUpOnAnOwnerThatStopsInTheMiddle)
{
    client.own("CLIPBOARD");
    auto files = std::async(std::launch::async, [&] { return pasteboard.readFiles(); });
    const auto event = client.nextOf(XCB_SELECTION_REQUEST);
    ASSERT_TRUE(event);
    const auto& request = reinterpret_cast<xcb_selection_request_event_t&>(*event);
    xcb_change_property(
        client.connection(), XCB_PROP_MODE_REPLACE, request.requestor, request.property,
        client.atom("INCR"), 32, 1, "\1\0\0\0");
    client.answer(request, true);
    EXPECT_TRUE(files.get().empty());
}

TEST_F(X11PasteboardTest, WaitsNoLongerThanItMayForAKeeperThatDoesNotAnswer)
{
    const Keeper keeper(desktop.server.display(), false);
    pasteboard.writeText("text");
    auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(pasteboard.handOver(100ms));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 900ms);

    begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(pasteboard.handOver(1h));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(X11PasteboardTest, HandsALongTextOverInPieces)
{
    Keeper keeper(desktop.server.display());
    const std::string text(2'000'000, 'x');
    pasteboard.writeText(text);
    EXPECT_TRUE(pasteboard.handOver(1s));
    EXPECT_TRUE(keeper.kept == text);
}

TEST_F(X11PasteboardTest, IsReadAfterTheFocusHasMoved)
{
    desktop.server.startWindowManager();
    pasteboard.writeFiles({"/a"});
    client.takeFocus();
    XClient other(desktop.server.display());
    other.takeFocus();
    EXPECT_EQ(paste("text/uri-list"), "file:///a\r\n");
    EXPECT_EQ(desktop.beside([&] { return other.paste("text/uri-list"); }), "file:///a\r\n");
}

// A toolkit of our own process asks, and waits on this thread: nothing of the main queue runs.
TEST_F(X11PasteboardTest, AnswersItsOwnToolkitWhileTheMainQueueStands)
{
    const auto* ids = xcb_get_setup(client.connection());
    pasteboard.answerOwnToolkit(ids->resource_id_base, ids->resource_id_mask);
    const std::vector<path> files = manyFiles(20000);
    pasteboard.writeFiles(files);
    EXPECT_EQ(client.targets().size(), 6u);
    EXPECT_EQ(filesOf(client.paste("text/uri-list").value_or(""), "\r\n"), files);
    EXPECT_EQ(client.paste("UTF8_STRING"), std::nullopt);
    pasteboard.clear();
    EXPECT_THAT(client.targets(), ElementsAre("TARGETS", "TIMESTAMP"));

    desktop.settle();
    client.sync();
    EXPECT_EQ(client.nextOf(XCB_SELECTION_NOTIFY, 0ms), nullptr) << "answered twice";
    XClient other(desktop.server.display());
    pasteboard.writeText("text");
    EXPECT_EQ(desktop.beside([&] { return other.paste("UTF8_STRING"); }), "text");
}

TEST_F(X11PasteboardTest, DoesNotWaitForItsOwnToolkitToGiveFiles)
{
    const auto* ids = xcb_get_setup(client.connection());
    pasteboard.answerOwnToolkit(ids->resource_id_base, ids->resource_id_mask);
    client.own("CLIPBOARD");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(pasteboard.readFiles().empty());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 400ms);
}

TEST_F(X11PasteboardTest, SurvivesTheEndOfTheServer)
{
    pasteboard.writeFiles({"/a"});
    desktop.server.kill();
    EXPECT_TRUE(desktop.run([&] { return desktop.lostCount == 1; }));
    pasteboard.writeFiles({"/b"});
    pasteboard.writeText("text");
    EXPECT_TRUE(pasteboard.readFiles().empty());
    EXPECT_FALSE(pasteboard.handOver(1s));
    pasteboard.clear();
    desktop.dispatch.runUntil([] { return false; }, 20ms);
    EXPECT_EQ(desktop.lostCount, 1);
}

TEST(X11SessionTest, TellsThatThereIsNoServer)
{
    LoopDispatch dispatch;
    const auto created = X11Session::create(
        dispatch, [] {}, ":987");
    EXPECT_EQ(created.session, nullptr);
    EXPECT_EQ(created.problem, "There is no X server to connect to");
}

TEST(X11SessionTest, TellsThatAnExtensionIsMissing)
{
    const test::XServer server({640, 480, {"-extension", "XFIXES"}});
    LoopDispatch dispatch;
    const auto created = X11Session::create(
        dispatch, [] {}, server.display());
    EXPECT_EQ(created.session, nullptr);
    EXPECT_EQ(created.problem, "The X server lacks the XFIXES extension");
}

} // namespace tallowbay::linux_desktop

namespace tallowbay::contract {
INSTANTIATE_TYPED_TEST_SUITE_P(X11, PasteboardContract, linux_desktop::X11PasteboardBackend);
} // namespace tallowbay::contract
