#include "platform/linux/helperclient/ExtensionLister.h"

#include "platform/linux/helperclient/LoadedExtensions.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>

namespace quorvane::test {

namespace {

const std::string cputuneLine = "    1    0 0  0  0  com.TarnwickStudios.cputune (1.0)\n";
const std::string otherLine = "    2    0 0  0  0  com.TarnwickStudios.disableturboboost (1.0)\n";
const std::string header(loadedExtensionsHeader);

class ExtensionListerTest : public testing::Test {
  protected:
    ExtensionListerTest() {
        QFile file(path_);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write((cputuneLine + otherLine).c_str());
    }

    [[nodiscard]] ListerAnswer answer(const std::vector<std::string>& arguments) const {
        return answerOfLister(QFile::encodeName(path_).constData(), arguments);
    }

    [[nodiscard]] std::string listed(const std::vector<std::string>& arguments) const {
        const ListerAnswer given = answer(arguments);
        EXPECT_EQ(given.status, 0);
        EXPECT_EQ(given.complaint, "");
        return given.output;
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("loaded"));
};

} // namespace

TEST_F(ExtensionListerTest, NoArguments_ListEverythingUnderAHeader) {
    EXPECT_EQ(listed({}), header + cputuneLine + otherLine);
}

TEST_F(ExtensionListerTest, Options_LeaveOutTheHeaderAndTheOtherExtensions) {
    EXPECT_EQ(listed({"-l"}), cputuneLine + otherLine);
    EXPECT_EQ(listed({"-l", "-b", "com.TarnwickStudios.cputune"}), cputuneLine);
    EXPECT_EQ(listed({"-b", "com.TarnwickStudios.cputune", "-l"}), cputuneLine);
    EXPECT_EQ(listed({"-b", "com.TarnwickStudios.cputune"}), header + cputuneLine);
    EXPECT_EQ(listed({"-l", "-b", "com.example.other"}), "") << "which is no error";
}

TEST_F(ExtensionListerTest, Help_IsGivenWhateverElseIsAsked) {
    EXPECT_EQ(listed({"--help"}).substr(0, 15), "usage: kextstat");
    EXPECT_EQ(listed({"-l", "--help", "nonsense"}).substr(0, 15), "usage: kextstat");
}

TEST_F(ExtensionListerTest, ArgumentsThatMakeNoSense_AreRefusedByName) {
    const std::vector<std::string> cases[] = {{"-x"}, {"-l", "-x", "--help"}, {"-b"}, {"-b", ""}};
    for (const auto& arguments : cases) {
        const ListerAnswer given = answer(arguments);
        const std::string& culprit = arguments.front() == "-b" ? "-b" : "-x";
        EXPECT_EQ(given.status, 2);
        EXPECT_EQ(given.output, "");
        EXPECT_EQ(given.complaint,
                  "kextstat: unexpected argument \"" + culprit + "\"; see kextstat --help.\n");
    }
}

} // namespace quorvane::test
