// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProcessSetUp.h"

#include "color/ColorEntry.h"
#include "lib/Folders.h"
#include "support/FileSizeLimit.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace
{

// The exit status of a child process that runs a function; -1 where a signal ended it.
template <typename Function>
int exitStatusOf(Function const& function)
{
    pid_t const child = fork();
    if (child == 0)
        _exit(function());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

TEST(ProcessSetUp, OpensClosedDescriptorsSoThatFilesGetOthers)
{
    EXPECT_EQ(exitStatusOf([] {
                  for (int const descriptor : {0, 1, 2})
                      close(descriptor);
                  openStandardDescriptors();
                  char byte = 0;
                  bool const isNull = write(1, "x", 1) == 1 && write(2, "x", 1) == 1 && read(0, &byte, 1) == 0;
                  return isNull ? open("/dev/null", O_RDONLY) : 100;
              }) > 2,
              true);
}

TEST(ProcessSetUp, LeavesOpenDescriptorsAlone)
{
    EXPECT_EQ(exitStatusOf([] {
                  int pipes[2] = {};
                  if (pipe(pipes) != 0 || dup2(pipes[1], 1) != 1)
                      return 1;
                  openStandardDescriptors();
                  char byte = 0;
                  return write(1, "x", 1) == 1 && read(pipes[0], &byte, 1) == 1 && byte == 'x' ? 0 : 2;
              }),
              0);
}

TEST(ProcessSetUp, LetsWritesFailThatWouldEndTheProcess)
{
    TemporaryFolder const folder;
    int const status = exitStatusOf([&] {
        surviveFailedWrites();
        int pipes[2] = {};
        if (pipe(pipes) != 0)
            return 1;
        close(pipes[0]);
        if (write(pipes[1], "x", 1) >= 0 || errno != EPIPE)
            return 2;
        rlimit const limit = {1, 1};
        setrlimit(RLIMIT_FSIZE, &limit);
        int const file = open(folder.pathOf("file"), O_WRONLY | O_CREAT, 0600);
        if (write(file, "x", 1) != 1 || write(file, "x", 1) >= 0 || errno != EFBIG)
            return 3;
        return 0;
    });
    EXPECT_EQ(status, 0);
}

TEST(ProcessSetUp, FindsTheResourcesBesideTheProgramsFolder)
{
    TemporaryFolder const folder;
    std::filesystem::create_directory(folder.path() / "bin");
    std::filesystem::create_directory_symlink(PATCHLOOM_RESOURCES, folder.path() / "Resources");
    String const bin = folder.pathOf("bin");
    useResourcesBeside(bin);
    EXPECT_EQ(exepath, bin);
    EXPECT_EQ(respath, bin + "/../Resources/");

    ColorEntry black;
    String line("0 0 0");
    black.parseFromString(line, RGB);
    EXPECT_LT(black.getLab()[0], 10);
    ColorEntry white;
    line = String("255 255 255");
    white.parseFromString(line, RGB);
    EXPECT_GT(white.getLab()[0], 90);
    ColorEntry::endColorConversions();
}
