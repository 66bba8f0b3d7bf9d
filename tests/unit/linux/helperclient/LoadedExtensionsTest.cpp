#include "platform/linux/helperclient/LoadedExtensions.h"

#include "platform/linux/common/HelperNames.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <string>

namespace quorvane::test {

namespace {

constexpr const char* cputuneName = "com.TarnwickStudios.cputune";
const std::string cputuneLine = "    1    0 0  0  0  com.TarnwickStudios.cputune (1.0)\n";
const std::string otherLine = "    2    0 0  0  0  com.TarnwickStudios.disableturboboost (1.0)\n";

class LoadedExtensionsTest : public testing::Test {
  protected:
    void put(const std::string& text) const {
        QFile file(path_);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text.data(), static_cast<qint64>(text.size()));
    }

    [[nodiscard]] std::string list(const char* identifier) const {
        return loadedExtensions(QFile::encodeName(path_).constData(), identifier);
    }

    QTemporaryDir folder_;
    QString path_ = folder_.filePath(QStringLiteral("loaded"));
};

} // namespace

TEST_F(LoadedExtensionsTest, File_IsTheOneThatTheHelperWrites) {
    EXPECT_EQ(QLatin1String(loadedExtensionsFile), helpernames::loadedList);
}

TEST_F(LoadedExtensionsTest, MissingFile_HasNoLines) {
    EXPECT_EQ(list(cputuneName), "");
    EXPECT_EQ(list(""), "");
}

TEST_F(LoadedExtensionsTest, Lines_AreThoseOfExactlyThisNameAsTheyStand) {
    put(cputuneLine + otherLine);
    EXPECT_EQ(list(cputuneName), cputuneLine);
    EXPECT_EQ(list("com.TarnwickStudios.cputun"), "");
    EXPECT_EQ(list("com.TarnwickStudios.cputune.x"), "");
    EXPECT_EQ(list("com.tarnwickstudios.cputuneName"), "");
    EXPECT_EQ(list("(1.0)"), "");
    EXPECT_EQ(list(""), cputuneLine + otherLine);
}

TEST_F(LoadedExtensionsTest, AddressesOfTheKernel_AreNumbersToo) {
    const std::string line = "  170    0 0xffffff7f82e1b000 0x4000 0x4000 a.b (10.2)\n";
    put(line);
    EXPECT_EQ(list("a.b"), line);
}

TEST_F(LoadedExtensionsTest, LinesOfAnotherForm_AreLeftOut) {
    for (const char* const line :
         {"", "com.TarnwickStudios.cputune (1.0)", "1 0 0 0 com.TarnwickStudios.cputune (1.0)",
          "x 0 0 0 0 com.TarnwickStudios.cputune (1.0)",
          "1 0 0x 0 0 com.TarnwickStudios.cputune (1.0)", "1 0 0 0 0 com.TarnwickStudios.cputune",
          "1 0 0 0 0 com.TarnwickStudios.cputune 1.0", "1 0 0 0 0 com.TarnwickStudios.cputune ()",
          "1 0 0 0 0 com.TarnwickStudios.cputune (1.0) (2.0)",
          "1 0 0 0 0 com.TarnwickStudios.cputune (1.0\x1b[31m)",
          "1 0 0 0 0 com.TarnwickStudios.cputune\t(1.0)"}) {
        put(std::string(line) + "\n");
        EXPECT_EQ(list(cputuneName), "") << line;
        EXPECT_EQ(list(""), "") << line;
    }
}

TEST_F(LoadedExtensionsTest, LineWithoutAnEnd_IsNotYetOne) {
    put(cputuneLine.substr(0, cputuneLine.size() - 1));
    EXPECT_EQ(list(cputuneName), "");
}

TEST_F(LoadedExtensionsTest, HugeFile_IsReadOnlyAtItsBeginning) {
    put(cputuneLine + std::string(100000, 'x') + "\n" + otherLine);
    EXPECT_EQ(list(""), cputuneLine);
}

TEST_F(LoadedExtensionsTest, WhatIsNoRegularFile_HasNoLines) {
    EXPECT_EQ(loadedExtensions(QFile::encodeName(folder_.path()).constData(), ""), "");
    EXPECT_EQ(loadedExtensions("/dev/zero", ""), "");
}

} // namespace quorvane::test
