#include "platform/tesseract/LanguageData.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace tallowbay::tesseract {
namespace {

class LanguageDataTest : public testing::Test {
protected:
    void install(const std::string& language)
    {
        std::ofstream(folder.path / (language + ".traineddata")) << "data";
    }

    std::string languages(const std::string& locale)
    {
        const auto data = findLanguageData({"/nowhere", folder.path}, locale);
        return data ? data->languages : "none";
    }

    test::TemporaryFolder folder;
};

TEST_F(LanguageDataTest, NamesTheLanguageOfALocale)
{
    EXPECT_EQ(languageOfLocale("de_DE.UTF-8"), "deu");
    EXPECT_EQ(languageOfLocale("fr"), "fra");
    EXPECT_EQ(languageOfLocale("ca_ES@valencia"), "cat");
    EXPECT_EQ(languageOfLocale("en_GB.UTF-8"), "eng");
    EXPECT_EQ(languageOfLocale("zh_TW.UTF-8"), "chi_tra");
    EXPECT_EQ(languageOfLocale("zh_CN.UTF-8"), "chi_sim");
    EXPECT_EQ(languageOfLocale("C"), "");
    EXPECT_EQ(languageOfLocale("C.UTF-8"), "");
    EXPECT_EQ(languageOfLocale(""), "");
}

TEST_F(LanguageDataTest, ReadsEnglishAndTheUsersLanguage)
{
    install("eng");
    install("deu");
    EXPECT_EQ(languages("de_DE.UTF-8"), "eng+deu");
}

TEST_F(LanguageDataTest, ReadsOnlyEnglishForEnglishAndUnknownLocales)
{
    install("eng");
    install("deu");
    EXPECT_EQ(languages("en_US.UTF-8"), "eng");
    EXPECT_EQ(languages("C"), "eng");
}

TEST_F(LanguageDataTest, ReadsWhatIsInstalled)
{
    EXPECT_EQ(languages("de_DE.UTF-8"), "none");
    install("deu");
    EXPECT_EQ(languages("de_DE.UTF-8"), "deu");
    EXPECT_EQ(languages("fr_FR.UTF-8"), "none");
}

TEST_F(LanguageDataTest, TakesTheFirstFolderThatHasAny)
{
    install("eng");
    const auto data = findLanguageData({"/nowhere", folder.path, "/usr"}, "C");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->folder, folder.path);
}

} // namespace
} // namespace tallowbay::tesseract
