// SPDX-License-Identifier: Apache-2.0
// The control program on a description file, without a running set.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PrivateSet.h"
#include "host/control/ControlUsage.h"

namespace platform_test {

class DescriptionTool : public PrivateSet {
  protected:
    support::ProgramResult ask(const std::vector<std::string>& words) const {
        std::vector<std::string> command = {CONTROL_PROGRAM, "--description", file("a set.ini")};
        command.insert(command.end(), words.begin(), words.end());
        return support::runProgram(command);
    }
    void write(const std::string& text) const { support::writeFile(file("a set.ini"), text); }
};

TEST_F(DescriptionTool, DescribesAnAbsentFileByItsDefaults) {
    const support::ProgramResult answer = ask({"describe"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.output,
              "Screen Width=1920\nScreen Height=1080\n"
              "Language Language=en_US.utf8\nLanguage MenuLanguage=\nLanguage Orientation=auto\n"
              "Set Country=US\nSet Model=VIRTUAL-SET\nSet UseMode=1\nSet DeviceId=VIRTUALSET0001\n"
              "Set ServerType=operating\nSet ClockOffset=0\n"
              "Network Type=auto\nNetwork Address=192.0.2.10\nNetwork Mask=255.255.255.0\n"
              "Network Gateway=192.0.2.1\nNetwork NameServers=192.0.2.1\n"
              "Network Mac=02:00:00:00:00:01\nNetwork Configuration=dynamic\n"
              "Accessibility FocusZoom=0\nAccessibility HighContrast=0\n"
              "Accessibility ScreenReader=false\n"
              "Sound Enabled=true\nSound Volume=100\nUsb Storage=\nFramework StallSeconds=150\n"
              "Language Direction=ltr\n");
}

TEST_F(DescriptionTool, DescribesEachValueOnOneLine) {
    write("[Set]\nModel=a\\nb\\\\c=d\n[Language]\nLanguage=ar_EG.utf8\n");
    const support::ProgramResult answer = ask({"describe"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.output, testing::HasSubstr("\nSet Model=a\\nb\\\\c=d\n"));
    EXPECT_THAT(answer.output, testing::HasSubstr("\nLanguage Direction=rtl\n"));
}

TEST_F(DescriptionTool, TellsWhatIsWrongWithSingleValuesAndUsesTheirDefaults) {
    write("[Screen]\nWidth=wide\nDepth=3\n[Set]\nModel=\xff\n");
    const support::ProgramResult answer = ask({"describe"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.errors,
              "virtual-set-control: [Screen] Width=wide is not a number from 1 to 16384; 1920 is "
              "used\n"
              "virtual-set-control: [Set] Model is not UTF-8; its default is used\n"
              "virtual-set-control: [Screen] Depth is an unknown key, ignored\n");
    EXPECT_EQ(answer.output.find("Screen Width=1920\n"), 0) << answer.output;
    EXPECT_THAT(answer.output, testing::HasSubstr("\nSet Model=VIRTUAL-SET\n"));
}

TEST_F(DescriptionTool, RefusesAFileThatIsNoKeyFile) {
    write("this is no key file\n");
    for (const std::vector<std::string>& words : {std::vector<std::string>{"describe"},
                                                  {"get", "Set", "Model"},
                                                  {"set", "Set", "Model", "M"}}) {
        const support::ProgramResult answer = ask(words);
        EXPECT_EQ(answer.status, 1);
        EXPECT_EQ(answer.output, "");
        EXPECT_EQ(answer.errors.find("virtual-set-control: " + file("a set.ini") + ": "), 0)
            << answer.errors;
    }
    EXPECT_EQ(contentsOf(file("a set.ini")), "this is no key file\n");
}

TEST_F(DescriptionTool, ChangesOneValueAndKeepsTheRest) {
    write("# mine\n[Screen]\nWidth=1280\n");
    EXPECT_EQ(ask({"set", "Language", "Language", "ko_KR.utf8"}).status, 0);
    EXPECT_EQ(ask({"get", "Language", "Language"}).output, "ko_KR.utf8\n");
    EXPECT_EQ(ask({"get", "Screen", "Width"}).output, "1280\n");
    EXPECT_EQ(contentsOf(file("a set.ini")).find("# mine\n"), 0);
}

TEST_F(DescriptionTool, RefusesAValueThatASetCannotHave) {
    const support::ProgramResult answer = ask({"set", "Screen", "Width", "0"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.errors,
              "virtual-set-control: Screen Width has to be a number from 1 to 16384\n");
    EXPECT_EQ(contentsOf(file("a set.ini")), "");
}

TEST_F(DescriptionTool, RefusesWhatNeedsARunningSet) {
    for (const std::string& verb : host::controlVerbs()) {
        if (verb == "get" || verb == "set" || verb == "describe") {
            continue;
        }
        EXPECT_EQ(ask({verb, "en_US.utf8"}).status, 2) << verb;
        EXPECT_EQ(ask({verb}).status, 2) << verb;
    }
    EXPECT_EQ(ask({}).status, 2);
    EXPECT_EQ(ask({"get", "Set", "Colour"}).status, 2);
    EXPECT_EQ(support::runProgram({CONTROL_PROGRAM, "--description"}).status, 2);
}

TEST_F(DescriptionTool, LeavesNoLogWhereItIsCalled) {
    write("[Screen]\nWidth=wide\n");
    ask({"describe"});
    EXPECT_EQ(log(), "");
}

}  // namespace platform_test
