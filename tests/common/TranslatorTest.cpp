// SPDX-License-Identifier: Apache-2.0
// The process's locale and the texts of its catalogues, in two languages made for the test.
#include <clocale>
#include <functional>
#include <optional>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include "common/DeviceInfo.h"
#include "common/Exception.h"
#include "common/FailingCall.h"
#include "common/Translator.h"
#include "common/ZoltConfig.h"
#include "common/systemcalls/SystemCalls.h"
#include "common/systemcalls/SystemCallsFake.h"
#include "support/ScriptedPlatform.h"
#include "support/TestSupport.h"

using support::ScriptedPlatform;
using ZOLT::Exception;
using ZOLT::Translator;

namespace {

constexpr char SET[] = "xx_SET.utf8";          // the language of the set
constexpr char DEFAULT[] = "yy_DEFAULT.utf8";  // the one to fall back on
constexpr char LANGUAGE_SET[] = "Language set successfully to [xx_SET.utf8]";

const char HEADER[] = "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";

std::string currentLocale() {
    return setlocale(LC_ALL, nullptr);
}

class TranslatorTest : public testing::Test {
  protected:
    void SetUp() override {
        ScriptedPlatform::get().reset();
        setlocale(LC_ALL, "C");
        addLocale(locales, SET);
        addLocale(locales, DEFAULT);
        addCatalogue(SET,
                     "msgid \"SID_OK\"\nmsgstr \"okay\"\n"
                     "msgid \"SID_PREFIX\"\nmsgstr \"SID_PREFIX and more\"\n"
                     "msgid \"SID_EMPTY\"\nmsgstr \"\"\n");
        addCatalogue(DEFAULT,
                     "msgid \"SID_OK\"\nmsgstr \"default okay\"\n"
                     "msgid \"SID_PREFIX\"\nmsgstr \"default prefix\"\n"
                     "msgid \"SID_EMPTY\"\nmsgstr \"default empty\"\n"
                     "msgid \"SID_DEFAULT_ONLY\"\nmsgstr \"default only\"\n");
        ScriptedPlatform::get().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, SET);
    }
    void TearDown() override { setlocale(LC_ALL, "C"); }

    // Each locale is a copy of the system's plain one under another name: gettext needs no more.
    static void addLocale(const support::TemporaryFolder& folder, const std::string& name) {
        ASSERT_EQ(symlink("/usr/lib/locale/C.utf8", folder.file(name).c_str()), 0);
    }

    void addCatalogue(const std::string& locale, const std::string& messages) {
        const std::string source = catalogues.write(locale + ".po", HEADER + messages);
        const std::string target = locale + "/LC_MESSAGES/ZOLT.mo";
        catalogues.write(target, "");
        const auto result = support::runProgram({"msgfmt", "-o", catalogues.file(target), source});
        ASSERT_EQ(result.status, 0) << result.errors;
    }

    // A translator in the language of the set.
    Translator inLanguageOfSet() {
        Translator translator(DEFAULT, &device);
        translator.enableLocales("ZOLT", catalogues.path());
        translator.setLocale(nullptr);
        return translator;
    }

    static void expectFailure(const std::string& text, const std::function<void()>& call) {
        try {
            call();
            ADD_FAILURE() << "nothing thrown";
        } catch (const Exception& e) {
            EXPECT_EQ(e.what(), text);
            EXPECT_EQ(e.code(), -1);
        }
    }

    support::TemporaryFolder locales;
    support::TemporaryFolder catalogues;
    support::ScopedEnvironment localePath{"LOCPATH", locales.path()};
    support::ScopedEnvironment noLanguage{"LANGUAGE", ""};
    ZOLT::SystemCalls systemCalls;
    ZOLT::DeviceInfo device{&systemCalls};
};

TEST_F(TranslatorTest, LocaleFollowsTheLanguageOfTheSetAndSaysSo) {
    Translator(DEFAULT, &device).setLocale(nullptr);
    EXPECT_EQ(currentLocale(), SET);
    EXPECT_TRUE(ScriptedPlatform::get().hasLine(LOG_ID_SYSTEM, DLOG_DEBUG, LANGUAGE_SET));
}

TEST_F(TranslatorTest, GivenLocaleIsSetSilentlyAndTheSetIsNotAsked) {
    std::string locale = SET;
    Translator(DEFAULT, nullptr).setLocale(locale.data());
    EXPECT_EQ(currentLocale(), SET);
    EXPECT_EQ(ScriptedPlatform::get().countLines(LANGUAGE_SET), 0);
}

TEST_F(TranslatorTest, SetThatDoesNotTellItsLanguageIsAFailure) {
    Translator translator(DEFAULT, &device);
    ScriptedPlatform::get().answer("runtime_info_get_value_string", -1);
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    ScriptedPlatform::get().answer("runtime_info_get_value_string", 0);
    ScriptedPlatform::get().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, std::nullopt);
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    ScriptedPlatform::get().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, "");
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    EXPECT_EQ(currentLocale(), "C");
}

TEST_F(TranslatorTest, NoSetToAskIsAFailure) {
    Translator translator(DEFAULT, nullptr);
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    EXPECT_EQ(currentLocale(), "C");
}

TEST_F(TranslatorTest, FailureIsNotLoggedAsASuccess) {
    ScriptedPlatform::get().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, "zz_ABSENT.utf8");
    EXPECT_THROW(Translator(DEFAULT, &device).setLocale(nullptr), Exception);
    EXPECT_TRUE(ScriptedPlatform::get().messages(LOG_ID_SYSTEM, DLOG_DEBUG).empty());
}

TEST_F(TranslatorTest, EmptyLocaleIsTheOneOfTheEnvironment) {
    const support::ScopedEnvironment environment("LC_ALL", DEFAULT);
    std::string empty;
    Translator(DEFAULT, &device).setLocale(empty.data());
    EXPECT_EQ(currentLocale(), DEFAULT);
}

TEST_F(TranslatorTest, FakeLanguageWithoutItsConfigurationKeyIsAFailureLikeAnyOther) {
    ZoltConfig::deinitialize();
    ZOLT::SystemCallsFake fake;
    ZOLT::DeviceInfo fakeDevice(&fake);
    Translator translator(DEFAULT, &fakeDevice);
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    EXPECT_EQ(currentLocale(), "C");
}

TEST_F(TranslatorTest, LocaleThatTheSystemDoesNotHaveIsAFailure) {
    Translator translator(DEFAULT, &device);
    ScriptedPlatform::get().setRuntimeInfo(RUNTIME_INFO_KEY_LANGUAGE, "zz_ABSENT.utf8");
    expectFailure("Unable to set the language", [&] { translator.setLocale(nullptr); });
    for (std::string locale :
         {std::string("zz_ABSENT"), std::string(100000, 'x'), std::string("../../etc")}) {
        expectFailure("Unable to set the language", [&] { translator.setLocale(locale.data()); });
    }
    EXPECT_EQ(currentLocale(), "C");
}

TEST_F(TranslatorTest, TranslatedIdDoesNotTouchTheLocale) {
    Translator translator = inLanguageOfSet();
    const support::ScopedEnvironment nowhere("LOCPATH", "/absent");
    {
        const support::FailingCall watched(support::LibraryCall::SetLocale);
        EXPECT_STREQ(translator.getText("SID_OK"), "okay") << "a switch would fail here";
        EXPECT_FALSE(watched.happened()) << "nor is the locale asked for";
    }
    EXPECT_EQ(currentLocale(), SET);
}

TEST_F(TranslatorTest, IdThatOnlyTheDefaultLanguageHasComesFromThereAndTheLocaleStays) {
    Translator translator = inLanguageOfSet();
    EXPECT_STREQ(translator.getText("SID_DEFAULT_ONLY"), "default only");
    EXPECT_EQ(currentLocale(), SET);
    EXPECT_STREQ(translator.getText("SID_EMPTY"), "default empty");
}

TEST_F(TranslatorTest, IdThatNoLanguageHasComesBack) {
    Translator translator = inLanguageOfSet();
    EXPECT_STREQ(translator.getText("SID_NOBODY"), "SID_NOBODY");
    const std::string longest(100000, 'i');
    EXPECT_EQ(translator.getText(longest.c_str()), longest);
    EXPECT_EQ(currentLocale(), SET);
}

TEST_F(TranslatorTest, TranslationThatBeginsWithTheIdCountsAsMissing) {
    EXPECT_STREQ(inLanguageOfSet().getText("SID_PREFIX"), "default prefix");
}

TEST_F(TranslatorTest, NullIdGivesNull) {
    EXPECT_EQ(inLanguageOfSet().getText(nullptr), nullptr);
}

// The empty id is that of the catalogue's header, and every text begins with it.
TEST_F(TranslatorTest, EmptyIdGivesTheHeaderOfTheDefaultCatalogue) {
    addCatalogue(SET, "msgid \"SID_OK\"\nmsgstr \"okay\"\n");
    Translator translator = inLanguageOfSet();
    EXPECT_STREQ(translator.getText(""), "Content-Type: text/plain; charset=UTF-8\n");
    EXPECT_EQ(currentLocale(), SET);
}

TEST_F(TranslatorTest, LocaleThatCannotBeToldOrKeptIsAFailureThatLeavesIt) {
    Translator translator = inLanguageOfSet();
    for (const auto call : {support::LibraryCall::SetLocale, support::LibraryCall::Strdup}) {
        const support::FailingCall failing(call);
        expectFailure("Unable to allocate memory", [&] { translator.getText("SID_NOBODY"); });
        EXPECT_TRUE(failing.happened());
        EXPECT_EQ(currentLocale(), SET);
    }
}

TEST_F(TranslatorTest, EmptyOrEndlessDomainAndPathHaveNoTexts) {
    Translator translator = inLanguageOfSet();
    const std::string endless(100000, 'd');
    const struct {
        std::string domain;
        std::string path;
    } cases[] = {{"", catalogues.path()}, {"ZOLT", ""}, {endless, ""}, {"ZOLT", endless}};
    for (const auto& entry : cases) {
        translator.enableLocales(entry.domain, entry.path);
        EXPECT_STREQ(translator.getText("SID_OK"), "SID_OK");
    }
}

TEST_F(TranslatorTest, TextsOfAnotherDomainAreNotFound) {
    Translator translator = inLanguageOfSet();
    translator.enableLocales("OTHER", catalogues.path());
    EXPECT_STREQ(translator.getText("SID_OK"), "SID_OK");
}

TEST_F(TranslatorTest, DefaultLocaleThatTheSystemDoesNotHaveIsAFailureOfTheFallbackOnly) {
    Translator translator("zz_ABSENT.utf8", &device);
    translator.enableLocales("ZOLT", catalogues.path());
    translator.setLocale(nullptr);
    EXPECT_STREQ(translator.getText("SID_OK"), "okay");
    expectFailure("Unable to set the language", [&] { translator.getText("SID_DEFAULT_ONLY"); });
    EXPECT_EQ(currentLocale(), SET);
}

TEST_F(TranslatorTest, LocaleThatCannotBeRestoredLeavesTheDefaultOne) {
    Translator translator = inLanguageOfSet();
    const support::TemporaryFolder onlyDefault;
    addLocale(onlyDefault, DEFAULT);
    const support::ScopedEnvironment fewer("LOCPATH", onlyDefault.path());
    expectFailure("Unable to set the language", [&] { translator.getText("SID_DEFAULT_ONLY"); });
    EXPECT_EQ(currentLocale(), DEFAULT);
}

}  // namespace
