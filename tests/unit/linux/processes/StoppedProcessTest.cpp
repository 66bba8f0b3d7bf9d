#include "platform/linux/processes/StoppedProcess.h"

#include "platform/linux/processes/ProcessSignals.h"

#include <QJsonObject>
#include <gtest/gtest.h>

#include <unistd.h>

namespace quorvane::test {
namespace {

class StoppedProcessTest : public testing::Test {
  protected:
    static std::optional<StoppedProcess> parsed(const QByteArray& line) {
        const std::optional<JournalEntry> entry = journalEntry(line);
        EXPECT_TRUE(entry) << line.constData();
        return entry ? stoppedProcess(*entry) : std::nullopt;
    }
};

TEST_F(StoppedProcessTest, EntryAndBack) {
    const StoppedProcess process{{812, 20411}, 811, true};
    const QByteArray line = journalLine(processEntry(process, {700, 19000}));
    EXPECT_EQ(line, "{\"found\":20411,\"key\":\"812\",\"kind\":\"process\",\"pid\":700,"
                    "\"set\":{\"application\":811,\"group\":true},\"start\":19000}");
    EXPECT_EQ(parsed(line), process);
}

TEST_F(StoppedProcessTest, EntryOfAnotherKind_IsNoProcess) {
    EXPECT_FALSE(parsed(R"({"found":7,"key":"812","kind":"display","pid":7,"set":[3],"start":1})"));
}

TEST_F(StoppedProcessTest, WhatMustNotBeSignalled_IsNoProcess) {
    const auto withKey = [](const char* key, const char* application) {
        return parsed(QByteArray(R"({"found":5,"key":")") + key +
                      R"(","kind":"process","pid":7,"set":{"application":)" + application +
                      R"(,"group":true},"start":1})");
    };
    EXPECT_TRUE(withKey("812", "811"));
    EXPECT_FALSE(withKey("-812", "811"));
    EXPECT_FALSE(withKey("0", "811"));
    EXPECT_FALSE(withKey("1", "811"));
    EXPECT_FALSE(withKey("x", "811"));
    EXPECT_FALSE(withKey("812", "0"));
    EXPECT_FALSE(withKey("812", "1"));
    EXPECT_FALSE(withKey("812", "-5"));
    EXPECT_FALSE(withKey("812", "true"));
}

TEST_F(StoppedProcessTest, StartTimeThatIsNoNumber_IsNoProcess) {
    EXPECT_FALSE(parsed(R"({"found":"5","key":"812","kind":"process","pid":7,)"
                        R"("set":{"application":811},"start":1})"));
}

/// With signal 0, which reaches nobody and only tells whether a signal would.
class ProcessSignalsTest : public testing::Test {
  protected:
    static ProcessIdentity identityOf(std::int32_t pid) {
        return ProcessTable::look(pid).value_or(Process()).identity;
    }
};

TEST_F(ProcessSignalsTest, ParentOfThisProcess_WouldGetIt) {
    EXPECT_TRUE(sendSignal(identityOf(::getppid()), 0));
}

TEST_F(ProcessSignalsTest, LaterProcessWithTheSameId_DoesNot) {
    ProcessIdentity former = identityOf(::getppid());
    --former.startTime;
    EXPECT_FALSE(sendSignal(former, 0));
    EXPECT_FALSE(sendSignalToGroupOf(former, 0));
}

TEST_F(ProcessSignalsTest, EverybodyOwnGroupInitAndSelf_NeverDo) {
    for (const std::int32_t pid : {-1, 0, 1, static_cast<std::int32_t>(::getpid())}) {
        EXPECT_FALSE(sendSignal(identityOf(pid), 0)) << pid;
        EXPECT_FALSE(sendSignal({pid, 0}, 0)) << pid;
        EXPECT_FALSE(sendSignalToGroupOf(identityOf(pid), 0)) << pid;
    }
    EXPECT_FALSE(sendSignalToGroupOf(identityOf(::getpgrp()), 0));
    EXPECT_FALSE(sendSignal({-::getppid(), 0}, 0));
}

} // namespace
} // namespace quorvane::test
