#include "platform/posix/files/FileUris.h"

#include <gmock/gmock.h>

#include <array>

#include <unistd.h>

using namespace tallowbay::posix;
using std::filesystem::path;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(FileUrisTest, LeavesUnreservedBytesAndSlashesAsTheyAre)
{
    EXPECT_EQ(fileUri("/home/u/AZaz09-._~"), "file:///home/u/AZaz09-._~");
}

TEST(FileUrisTest, EncodesEveryOtherByte)
{
    EXPECT_EQ(fileUri("/a b"), "file:///a%20b");
    EXPECT_EQ(
        fileUri("/'\"%#?&+;:@!$()*,=[]"),
        "file:///%27%22%25%23%3F%26%2B%3B%3A%40%21%24%28%29%2A%2C%3D%5B%5D");
    EXPECT_EQ(fileUri("/line\nfeed\r"), "file:///line%0Afeed%0D");
    EXPECT_EQ(fileUri("/\xff\x80"), "file:///%FF%80");
    EXPECT_EQ(fileUri("/\u00e9"), "file:///%C3%A9");
}

TEST(FileUrisTest, EveryByteOfANameComesBack)
{
    std::string name = "/";
    for (int byte = 1; byte < 256; ++byte)
        name += char(byte);

    EXPECT_EQ(localPath(fileUri(name)), path(name));
}

TEST(FileUrisTest, EndsEveryLineOfAUriListWithCarriageReturnAndLineFeed)
{
    EXPECT_EQ(uriList({"/a", "/b c"}), "file:///a\r\nfile:///b%20c\r\n");
    EXPECT_EQ(uriList({}), "");
}

TEST(FileUrisTest, EndsCopiedFilesWithoutALineFeed)
{
    EXPECT_EQ(copiedFiles({"/a", "/b"}), "copy\nfile:///a\nfile:///b");
}

TEST(FileUrisTest, ReadsBothForms)
{
    const std::vector<path> files = {"/b", "/a\nb", "/\xfe"};

    EXPECT_EQ(localFiles(uriList(files)), files);
    EXPECT_EQ(localFiles(copiedFiles(files)), files);
    EXPECT_EQ(localFiles("cut\nfile:///a"), std::vector<path>{"/a"});
}

TEST(FileUrisTest, ReadsListsThatOthersEndDifferently)
{
    EXPECT_THAT(localFiles("file:///a\nfile:///b"), ElementsAre("/a", "/b"));
    EXPECT_THAT(localFiles(std::string_view("file:///a\r\n\0", 12)), ElementsAre("/a"));
    EXPECT_THAT(localFiles("# comment\r\n\r\nfile:///a\r\n"), ElementsAre("/a"));
}

TEST(FileUrisTest, AcceptsThisMachineAsTheHost)
{
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);

    EXPECT_EQ(localPath("file:///x"), path("/x"));
    EXPECT_EQ(localPath("file://localhost/x"), path("/x"));
    EXPECT_EQ(localPath("FILE://LocalHost/x"), path("/x"));
    EXPECT_EQ(localPath(std::string("file://") + host.data() + "/x"), path("/x"));
}

TEST(FileUrisTest, RefusesWhatIsNoLocalFile)
{
    EXPECT_EQ(localPath("file://elsewhere.example/x"), std::nullopt);
    EXPECT_EQ(localPath("https://example.com/x"), std::nullopt);
    EXPECT_EQ(localPath("file:x"), std::nullopt);
    EXPECT_EQ(localPath("file://"), std::nullopt);
    EXPECT_EQ(localPath(""), std::nullopt);
}

TEST(FileUrisTest, RefusesMalformedEscapes)
{
    EXPECT_EQ(localPath("file:///a%"), std::nullopt);
    EXPECT_EQ(localPath("file:///a%4"), std::nullopt);
    EXPECT_EQ(localPath("file:///a%g0"), std::nullopt);
    EXPECT_EQ(localPath("file:///a%00b"), std::nullopt);
    EXPECT_EQ(localPath("file:///a%41"), path("/aA"));
    EXPECT_EQ(localPath("file:///%c3%A9"), path("/\u00e9"));
}

TEST(FileUrisTest, FindsNoFilesInText)
{
    EXPECT_THAT(localFiles("some text\nof /two lines"), IsEmpty());
}
