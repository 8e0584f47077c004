// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A disk that fails, and a user who may not do everything.

#include "command/Run.h"

#include "StartedCommand.h"
#include "support/CapturedOutput.h"
#include "support/ChartCase.h"
#include "support/FailingSystem.h"
#include "support/TestChart.h"
#include "support/Unprivileged.h"

#include <gmock/gmock.h>

#include <map>

namespace
{

[[maybe_unused]] auto* const colors = testing::AddGlobalTestEnvironment(new ColorConversions);

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class ChartFaultsTest : public testing::Test
{
protected:
    ChartFaultsTest() { setenv("HOME", work.path().c_str(), 1); }
    ~ChartFaultsTest() override { systemFaults = {}; }

    int runChart(bool forces = false) const
    {
        std::vector<std::string> arguments = {
            "chart", table.getNullTerminatedString(), "-n", "c", "-q", "-f", "eps,tiff,pdf", "-p", "60x60",
            "-o",    parent.path().string()};
        if (forces)
            arguments.emplace_back("--force");
        return run(arguments);
    }

    // That a run fails in one line of standard error, and leaves only what was there.
    std::string faultOf(bool forces, std::vector<std::string> const& left) const
    {
        int status = 0;
        std::string const errors = errorsOf([&] { status = runChart(forces); });
        systemFaults = {};
        EXPECT_EQ(status, 1);
        EXPECT_EQ(filesIn(parent.path()), left);
        std::size_t const start = errors.find("patchloom-cli: ");
        return start == std::string::npos ? errors : errors.substr(start);
    }

    TemporaryFolder const work;
    TemporaryFolder const parent;
    String const table = work.write("t.txt", rgbTable(20));
};

} // namespace

TEST_F(ChartFaultsTest, LeaveNothingWhereverTheDiskIsFull)
{
    ASSERT_EQ(runChart(), 0);
    std::uintmax_t size = 0;
    std::vector<std::string> const names = filesIn(parent.path() / "c");
    for (std::string const& name : names)
        size += fs::file_size(parent.path() / "c" / name);
    std::map<std::string, std::string> whole;
    for (std::string const& name : names)
        whole[name] = bytesOf(parent.path() / "c" / name);

    constexpr std::uintmax_t steps = 40;
    for (bool const forces : {true, false}) {
        for (std::uintmax_t step = 0; step < steps; ++step) {
            systemFaults.freeBytes = step * (size - 1) / (steps - 1);
            std::string const error =
                faultOf(forces, forces ? std::vector<std::string>{"c"} : std::vector<std::string>{});
            EXPECT_THAT(error, HasSubstr("cannot be written (No space left on device); no chart was made\n"));
            EXPECT_THAT(error, StartsWith("patchloom-cli: " + parent.path().string() + "/c/c"));
        }
        for (auto const& [name, bytes] : whole)
            EXPECT_TRUE(!forces || bytesOf(parent.path() / "c" / name) == bytes) << name;
        fs::remove_all(parent.path() / "c");
    }
    EXPECT_EQ(runChart(), 0);
}

TEST_F(ChartFaultsTest, LeaveNothingWhereTheDiskFailsLate)
{
    systemFaults.syncError = EIO;
    EXPECT_THAT(faultOf(false, {}), HasSubstr("cannot be written (Input/output error)"));
    // Interrupted writes and writes in small pieces are no faults.
    systemFaults.interruptions = 50;
    systemFaults.mostBytesAtOnce = 1000;
    EXPECT_EQ(runChart(), 0);
}

TEST_F(ChartFaultsTest, TellThatAFolderMayNotBeWrittenTo)
{
    ASSERT_EQ(runChart(), 0);
    fs::permissions(parent.path(), fs::perms(0555));
    fs::permissions(work.path(), fs::perms(0755));
    {
        Unprivileged const user;
        std::string const refusal = "patchloom-cli: " + parent.path().string() +
                                    ": cannot be written to (Permission denied); give another folder with --output\n";
        EXPECT_EQ(faultOf(true, {"c"}), refusal);
    }
    fs::permissions(parent.path(), fs::perms(0777));
    fs::remove_all(parent.path() / "c");
    {
        Unprivileged const user;
        EXPECT_EQ(runChart(), 0);
        EXPECT_EQ(runChart(true), 0);
        fs::permissions(parent.path() / "c", fs::perms(0));
        EXPECT_EQ(faultOf(true, {"c"}), "patchloom-cli: " + parent.path().string() +
                                            "/c: cannot be looked into (Permission denied), and is not replaced; "
                                            "move it away, or give another name with --name\n");
        fs::permissions(parent.path() / "c", fs::perms(0555));
        EXPECT_EQ(runChart(true), 0);
        fs::permissions(parent.path() / "c", fs::perms(0755));
    }
    EXPECT_THAT(filesIn(parent.path()), ElementsAre("c"));
    fs::permissions(fs::path(table.getNullTerminatedString()), fs::perms(0));
    {
        Unprivileged const user;
        EXPECT_THAT(errorsOf([&] { EXPECT_EQ(runChart(), 1); }), HasSubstr("cannot be read: Permission denied"));
    }
}
