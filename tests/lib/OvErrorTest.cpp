// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "lib/OvError.h"

#include "support/CapturedOutput.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <string>

TEST(OvError, WritesTheMessageAndACarriageReturnAtOnce)
{
    EXPECT_EQ(errorsOf([] { OvError("Heap is empty."); }), "Heap is empty.\r");
    EXPECT_EQ(errorsOf([] { OvError("Not all patches placed.\n"); }), "Not all patches placed.\n\r");
}

TEST(OvError, TakesTheMessageAsItIs)
{
    EXPECT_EQ(errorsOf([] { OvError("%s %n %d 100%"); }), "%s %n %d 100%\r");
    EXPECT_EQ(errorsOf([] { OvError("%d", 5); }), "%d\r");
}

TEST(OvError, WritesMessagesOfAnyLength)
{
    for (std::size_t const length : {1UL, 4094UL, 4095UL, 4096UL, 4097UL, 10000UL}) {
        std::string const message(length, 'x');
        EXPECT_EQ(errorsOf([&] { OvError(message.c_str()); }), message + "\r") << length;
    }
    EXPECT_EQ(errorsOf([] { OvError(""); }), "\r");
    EXPECT_EQ(errorsOf([] { OvError(nullptr); }), "\r");
}

TEST(OvError, WritesNothingWhereItIsTurnedOff)
{
    EXPECT_EQ(errorsOf([] {
                  showOvErrors(false);
                  OvError("Heap is empty.");
                  showOvErrors(true);
              }),
              "");
}

TEST(OvError, WritesTheMessageInOnePiece)
{
    int ends[2];
    ASSERT_EQ(pipe2(ends, O_DIRECT), 0); // keeps the bytes of each write apart
    int const original = dup(2);
    dup2(ends[1], 2);
    OvError("Heap overflow.");
    dup2(original, 2);
    close(original);
    char piece[100];
    EXPECT_EQ(std::string(piece, static_cast<std::size_t>(read(ends[0], piece, sizeof piece))), "Heap overflow.\r");
    close(ends[0]);
    close(ends[1]);
}
