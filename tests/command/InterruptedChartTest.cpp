// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program while others interfere: signals, a folder that vanishes, a second program.

#include "command/ChartCommand.h"

#include "StartedCommand.h"
#include "support/ChartCase.h"
#include "support/TargetTable.h"

#include <gmock/gmock.h>

#include <chrono>
#include <map>
#include <thread>

namespace
{

namespace fs = std::filesystem;
using testing::AnyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Strings = std::vector<std::string>;
using Files = std::map<std::string, std::string>;
using std::chrono::microseconds;

Files filesOf(fs::path const& folder)
{
    Files files;
    for (std::string const& name : filesIn(folder))
        files[name] = withoutCreationTime(bytesOf(folder / name));
    return files;
}

class InterruptedChartTest : public CommandTest
{
protected:
    InterruptedChartTest()
    {
        work.write("a.txt", rgbTable(60));
        work.write("b.txt", rgbTable(50));
        fs::create_directory(pathOf("out"));
    }

    // A chart of many sheets.
    static Strings chartOf(char const* table, bool forces = false)
    {
        Strings arguments = {"chart", table, "-q", "-n", "c", "-f", "tiff,pdf", "-p", "40x40", "-o", "out"};
        if (forces)
            arguments.emplace_back("--force");
        return arguments;
    }

    // The files that a table's chart has, and how long they take.
    Files wholeChart(char const* table)
    {
        auto const start = std::chrono::steady_clock::now();
        EXPECT_EQ(run(chartOf(table)).exitStatus, 0);
        duration = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
        Files files = filesOf(pathOf("out/c"));
        fs::remove_all(pathOf("out/c"));
        EXPECT_GT(files.size(), 5u);
        return files;
    }

    // Waits for the temporary folder of a started program, or its chart.
    void waitForFolder() const
    {
        for (int looks = 0; looks < 100000; ++looks)
            if (!fs::is_empty(pathOf("out")))
                return;
        ADD_FAILURE() << "nothing is made";
    }

    microseconds duration{0};
};

constexpr int stages = 8;

// On a busy machine a chart can be complete before anybody interferes.
constexpr int mostTries = 20;

} // namespace

TEST_F(InterruptedChartTest, EndsBySignalAtAnyStageAndLeavesNoHalfChart)
{
    Files const whole = wholeChart("a.txt");
    int interrupted = 0;
    for (int const signal : {SIGINT, SIGTERM, SIGHUP})
        for (int stage = 0; stage < stages; ++stage) {
            StartedCommand command(chartOf("a.txt"), around);
            std::this_thread::sleep_for(duration * stage / stages);
            command.kill(signal);
            Outcome const outcome = command.wait();
            EXPECT_THAT(outcome.signal, AnyOf(0, signal));
            EXPECT_EQ(outcome.errors, "");
            interrupted += outcome.signal == signal;
            if (outcome.signal == 0) {
                EXPECT_EQ(outcome.exitStatus, 0);
                EXPECT_TRUE(fs::exists(pathOf("out/c")));
            }
            if (fs::exists(pathOf("out/c"))) {
                EXPECT_TRUE(filesOf(pathOf("out/c")) == whole);
                fs::remove_all(pathOf("out/c"));
            }
            EXPECT_THAT(filesIn(pathOf("out")), IsEmpty());
        }
    EXPECT_GT(interrupted, 0);
}

TEST_F(InterruptedChartTest, RemovesWhatItHasWrittenWhenASignalComes)
{
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        Outcome outcome;
        for (int tries = 0; tries < mostTries && outcome.signal == 0; ++tries) {
            fs::remove_all(pathOf("out/c"));
            StartedCommand command(chartOf("a.txt"), around);
            waitForFolder();
            command.kill(signal);
            outcome = command.wait();
        }
        EXPECT_EQ(outcome.signal, signal);
        EXPECT_THAT(filesIn(pathOf("out")), IsEmpty());
    }
}

TEST_F(InterruptedChartTest, KeepsTheOldChartOrHasTheNewOneWhenItIsKilled)
{
    Files const before = wholeChart("b.txt");
    Files const after = wholeChart("a.txt");
    for (int stage = 0; stage < stages; ++stage) {
        fs::remove_all(pathOf("out/c"));
        ASSERT_EQ(run(chartOf("b.txt")).exitStatus, 0);
        StartedCommand command(chartOf("a.txt", true), around);
        std::this_thread::sleep_for(duration * stage / stages);
        command.kill(SIGKILL);
        command.wait();
        Files const left = filesOf(pathOf("out/c"));
        EXPECT_TRUE(left == before || left == after) << stage;
        // Nobody can remove what a killed program has left under its temporary name.
        fs::remove_all(pathOf("out"));
        fs::create_directory(pathOf("out"));
    }
}

TEST_F(InterruptedChartTest, SurvivesABrokenPipe)
{
    StartedCommand command(chartOf("a.txt"), around);
    waitForFolder();
    command.kill(SIGPIPE);
    EXPECT_EQ(command.wait().exitStatus, 0);
    EXPECT_THAT(filesIn(pathOf("out")), ElementsAre("c"));
}

TEST_F(InterruptedChartTest, TellsThatItsFolderVanished)
{
    Outcome outcome;
    for (int tries = 0; tries < mostTries && outcome.exitStatus != 1; ++tries) {
        fs::create_directory(pathOf("out"));
        StartedCommand command(chartOf("a.txt"), around);
        waitForFolder();
        fs::rename(pathOf("out"), pathOf("gone"));
        std::error_code ignored;
        while (fs::exists(pathOf("gone")))
            fs::remove_all(pathOf("gone"), ignored);
        outcome = command.wait();
    }
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("No such file or directory"));
    EXPECT_EQ(linesOf(outcome.errors).size(), 2u) << outcome.errors;
    EXPECT_THAT(filesIn(work.path()), ElementsAre("a.txt", "b.txt"));
}

TEST_F(InterruptedChartTest, IsMadeByOneOfTwoPrograms)
{
    Files const a = wholeChart("a.txt");
    Files const b = wholeChart("b.txt");
    for (int round = 0; round < 5; ++round) {
        StartedCommand first(chartOf("a.txt"), around);
        StartedCommand second(chartOf("b.txt"), around);
        Outcome const outcomes[] = {first.wait(), second.wait()};
        int const winner = outcomes[0].exitStatus == 0 ? 0 : 1;
        EXPECT_EQ(outcomes[winner].exitStatus, 0);
        EXPECT_EQ(outcomes[1 - winner].exitStatus, 1);
        EXPECT_THAT(outcomes[1 - winner].errors,
                    AnyOf(HasSubstr("has appeared meanwhile"), HasSubstr("is there already")));
        EXPECT_EQ(linesOf(outcomes[1 - winner].errors).size(), 2u);
        EXPECT_TRUE(filesOf(pathOf("out/c")) == (winner == 0 ? a : b));
        EXPECT_THAT(filesIn(pathOf("out")), ElementsAre("c"));
        fs::remove_all(pathOf("out/c"));
    }
}

TEST_F(InterruptedChartTest, IsAlwaysThereWhileTwoProgramsReplaceIt)
{
    Files const a = wholeChart("a.txt");
    Files const b = wholeChart("b.txt");
    for (int round = 0; round < 5; ++round) {
        // Without a chart before at first.
        StartedCommand first(chartOf("a.txt", true), around);
        StartedCommand second(chartOf("b.txt", true), around);
        bool wasThere = round > 0;
        for (int look = 0; look < 200; ++look) {
            bool const isThere = fs::exists(pathOf("out/c/c.xml"));
            EXPECT_TRUE(isThere || !wasThere);
            wasThere = wasThere || isThere;
            std::this_thread::sleep_for(microseconds(100));
        }
        EXPECT_EQ(first.wait().exitStatus, 0);
        EXPECT_EQ(second.wait().exitStatus, 0);
        Files const left = filesOf(pathOf("out/c"));
        EXPECT_TRUE(left == a || left == b);
        EXPECT_THAT(filesIn(pathOf("out")), ElementsAre("c"));
    }
}

TEST_F(InterruptedChartTest, IsNotMadePastALimitOfFileSizes)
{
    Files const whole = wholeChart("a.txt");
    rlim_t largest = 0;
    for (auto const& [name, bytes] : whole)
        largest = std::max<rlim_t>(largest, bytes.size());
    for (rlim_t const limit : {rlim_t{0}, rlim_t{1}, rlim_t{1000}, rlim_t{5000}, largest / 2, largest - 1}) {
        Surroundings limited = around;
        limited.mostFileBytes = limit;
        Outcome const outcome = runIn(limited, chartOf("a.txt"));
        EXPECT_EQ(outcome.exitStatus, 1);
        EXPECT_THAT(outcome.errors, HasSubstr("cannot be written (File too large); no chart was made\n"));
        EXPECT_EQ(linesOf(outcome.errors).size(), 2u) << outcome.errors;
        EXPECT_THAT(filesIn(pathOf("out")), IsEmpty());
    }
}
