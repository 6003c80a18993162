#include "exceptions.h"

#include "bdd_fatal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iostream>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;

namespace {

// Stands for the editor's modal alert: marks the text on standard error.
void marking_alert(const std::string& text)
{
    std::cerr << "[alert]" << text << "[/alert]";
}

// The other reporters are checked, text and status, through the calls that
// reach them (signal, data, expression and module suites); this one is not
// reached that way.
TEST(ExceptionsDeathTest, ASchedulingFailureNamesItsModuleAndEndsWithStatusOne)
{
    EXPECT_EXIT(SchedulingFailureException("m"), ExitedWithCode(1), HasSubstr("module `m'"));
}

TEST(ExceptionsDeathTest, OnlyReportsThatShowAnAlertCallTheHook)
{
    EXPECT_EXIT(
        {
            set_alert_hook(marking_alert);
            UndefinedTypeException("t");
        },
        ExitedWithCode(1), HasSubstr("[alert]Error: Undefined type: t[/alert]Error: Undefined type: t\n"));
    EXPECT_EXIT(
        {
            set_alert_hook(marking_alert);
            die("no alert here");
        },
        ExitedWithCode(1), ::testing::AllOf(HasSubstr("no alert here\n"), ::testing::Not(HasSubstr("[alert]"))));
}

void marking_message(const std::string& text)
{
    std::cerr << "[box]" << text << "[/box]";
}

void marking_flush()
{
    std::cerr << "[flush]";
}

TEST(ExceptionsTest, MessagesGoToTheBoxWhenInstalledAndAlwaysToStandardError)
{
    testing::internal::CaptureStderr();
    message_report("Warning: one\n");
    message_report("two");
    const message_hook previous = set_message_hook(marking_message);
    message_report("three\n");
    EXPECT_EQ(set_message_hook(previous), marking_message);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning: one\ntwo\n[box]three\n[/box]three\n");
}

TEST(ExceptionsDeathTest, FatalMessagesShowTheBoxAndTheFlushHookRunsBeforeTheEnd)
{
    EXPECT_EXIT(
        {
            set_message_hook(marking_message);
            set_fatal_flush(marking_flush);
            fatal_message("m:PARSING ERROR\n  a\n");
        },
        ExitedWithCode(1), HasSubstr("[box]m:PARSING ERROR\n  a\n[/box]m:PARSING ERROR\n  a\n[flush]"));
    EXPECT_EXIT(
        {
            set_fatal_flush(marking_flush);
            IllegalOperationException("x");
        },
        ExitedWithCode(1), HasSubstr("x\n[flush]"));
}

} // namespace
