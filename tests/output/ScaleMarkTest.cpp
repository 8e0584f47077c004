// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ScaleMark.h"

#include "support/GeometryValues.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace
{

using testing::DoubleNear;

constexpr double exactly = 1e-9;

struct Box
{
    double left;
    double right;
    double bottom;
    double top;
};

Box boxOf(RealRect r)
{
    return {r.x, r.x + r.width, r.y, r.y + r.height};
}

// The least distance between two boxes along one axis; negative where they overlap.
double distance(Box const& a, Box const& b)
{
    return std::max({a.left - b.right, b.left - a.right, a.bottom - b.top, b.bottom - a.top});
}

// Keeps what is drawn.
struct Recording
{
    struct Text
    {
        RealPos position;
        double height;
        std::string text;
    };

    void setTextHeight(double size) { height = size; }
    void drawRectangle(RealRect r) { rectangles.push_back(r); }
    void drawText(RealPos p, String const& text) { texts.push_back({p, height, {text.begin(), text.end()}}); }

    // A box around everything. A character of the widest type is 0.602 of it wide, and 0.8 of it high.
    Box box() const
    {
        Box all{1e9, -1e9, 1e9, -1e9};
        auto const add = [&](Box const& part) {
            all = {std::min(all.left, part.left), std::max(all.right, part.right), std::min(all.bottom, part.bottom),
                   std::max(all.top, part.top)};
        };
        for (RealRect const& r : rectangles)
            add(boxOf(r));
        for (Text const& t : texts)
            add({t.position.x, t.position.x + 0.602 * t.height * static_cast<double>(t.text.size()), t.position.y,
                 t.position.y + 0.8 * t.height});
        return all;
    }

    double height = 6;
    std::vector<RealRect> rectangles;
    std::vector<Text> texts;
};

Recording drawn(ScaleMark const& mark)
{
    Recording recording;
    drawScaleMark(recording, mark);
    return recording;
}

Recording drawnAcross(ScaleMark const& mark)
{
    return drawn({mark.across, std::nullopt});
}

Recording drawnUp(ScaleMark const& mark)
{
    return drawn({std::nullopt, mark.up});
}

} // namespace

TEST(ScaleMark, IsNotDrawnWithoutAPlace)
{
    Recording const recording = drawn({});
    EXPECT_TRUE(recording.rectangles.empty());
    EXPECT_TRUE(recording.texts.empty());
}

TEST(ScaleMark, AcrossIsALineOf100MillimetresWithATickAtEachEnd)
{
    Recording const recording = drawn({RealPos{20, 30}, std::nullopt});
    ASSERT_EQ(recording.rectangles.size(), 3u);
    Box const line = boxOf(recording.rectangles[0]);
    Box const left = boxOf(recording.rectangles[1]);
    Box const right = boxOf(recording.rectangles[2]);
    EXPECT_NEAR(line.left, 20, exactly);
    EXPECT_NEAR(line.right, 120, exactly);
    EXPECT_NEAR(line.bottom, 30, exactly);
    EXPECT_NEAR(line.top, 30 + 25.4 / 72, exactly);
    EXPECT_NEAR(left.left, 20, exactly);
    EXPECT_NEAR(left.right, 20 + 25.4 / 72, exactly);
    EXPECT_NEAR(right.left, 120 - 25.4 / 72, exactly);
    EXPECT_NEAR(right.right, 120, exactly);
    for (Box const& tick : {left, right}) {
        EXPECT_NEAR(tick.bottom, 30, exactly);
        EXPECT_NEAR(tick.top, 33, exactly);
    }
}

TEST(ScaleMark, UpIsTheSameLineTurned)
{
    Recording const across = drawn({RealPos{0, 0}, std::nullopt});
    Recording const up = drawn({std::nullopt, RealPos{20, 30}});
    ASSERT_EQ(up.rectangles.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(up.rectangles[i].x, 20 + across.rectangles[i].y, exactly);
        EXPECT_NEAR(up.rectangles[i].y, 30 + across.rectangles[i].x, exactly);
        EXPECT_NEAR(up.rectangles[i].width, across.rectangles[i].height, exactly);
        EXPECT_NEAR(up.rectangles[i].height, across.rectangles[i].width, exactly);
    }
}

TEST(ScaleMark, TellsItsLengthInSmallType)
{
    for (ScaleMark const& mark : {ScaleMark{RealPos{20, 30}, std::nullopt}, ScaleMark{std::nullopt, RealPos{20, 30}}}) {
        Recording const recording = drawn(mark);
        ASSERT_EQ(recording.texts.size(), 1u);
        EXPECT_EQ(recording.texts[0].text, "100 mm");
        EXPECT_EQ(recording.texts[0].height, 3);
    }
}

TEST(ScaleMark, StaysWithinTheBoxThatItIsPlacedBy)
{
    Box const across = drawn({RealPos{0, 0}, std::nullopt}).box();
    EXPECT_NEAR(across.left, 0, exactly);
    EXPECT_NEAR(across.right, scaleMark::acrossSize.width, exactly);
    EXPECT_NEAR(across.bottom, 0, exactly);
    EXPECT_LE(across.top, scaleMark::acrossSize.height + exactly);
    Box const up = drawn({std::nullopt, RealPos{0, 0}}).box();
    EXPECT_NEAR(up.left, 0, exactly);
    EXPECT_LE(up.right, scaleMark::upSize.width + exactly);
    EXPECT_NEAR(up.bottom, 0, exactly);
    EXPECT_NEAR(up.top, scaleMark::upSize.height, exactly);
}

TEST(ScaleMark, KeepsTheTextClearOfItsLine)
{
    Recording const across = drawn({RealPos{0, 0}, std::nullopt});
    EXPECT_NEAR(across.texts[0].position.y - across.rectangles[0].height, 1, exactly);
    // The text is in the middle: 6 x 0.602 x 3 = 10.836 mm wide.
    EXPECT_NEAR(across.texts[0].position.x, 50 - 5.418, exactly);
    Recording const up = drawn({std::nullopt, RealPos{0, 0}});
    EXPECT_NEAR(up.texts[0].position.x - boxOf(up.rectangles[1]).right, 1, exactly);
}

TEST(ScaleMark, GoesBelowAndRightOfThePatchesFirst)
{
    ScaleMark const mark = findScaleMark({5, 15, 200, 277}, {30, 60, 130, 180});
    EXPECT_EQ(mark.across.value_or(RealPos()), (RealPos{5, 15}));
    EXPECT_EQ(mark.up.value_or(RealPos()), (RealPos{162, 15})); // 2 mm beside the patches
}

TEST(ScaleMark, GoesWhereThereIsRoom)
{
    // Patches at the lower right: above and at the left.
    ScaleMark const mark = findScaleMark({0, 0, 200, 200}, {50, 0, 150, 150});
    EXPECT_EQ(mark.across.value_or(RealPos()), (RealPos{0, 152}));
    // It leaves the left strip to the one up: from 0 on, below the one across.
    EXPECT_EQ(mark.up.value_or(RealPos()), (RealPos{0, 0}));
}

TEST(ScaleMark, FitsExactly)
{
    RealSize const across = scaleMark::acrossSize;
    double const room = across.height + 2;
    EXPECT_TRUE(findScaleMark({0, 0, 100, 50 + room}, {0, room, 100, 50}).across);
    EXPECT_FALSE(findScaleMark({0, 0, 99.999, 50 + room}, {0, room, 99.999, 50}).across);
    EXPECT_FALSE(findScaleMark({0, 0, 100, 50 + room - 0.001}, {0, room - 0.001, 100, 50}).across);
    double const beside = scaleMark::upSize.width + 2 + exactly;
    EXPECT_TRUE(findScaleMark({0, 0, 50 + beside, 100}, {0, 0, 50, 100}).up);
    EXPECT_FALSE(findScaleMark({0, 0, 50 + beside, 99.999}, {0, 0, 50, 99.999}).up);
    EXPECT_FALSE(findScaleMark({0, 0, 50 + beside - 0.001, 100}, {0, 0, 50, 100}).up);
}

TEST(ScaleMark, HasNoPlaceOnAFullOrSmallSheet)
{
    ScaleMark const full = findScaleMark({5, 5, 200, 287}, {5, 5, 200, 287});
    EXPECT_FALSE(full.across);
    EXPECT_FALSE(full.up);
    ScaleMark const small = findScaleMark({0, 0, 85.6, 53.98}, {0, 0, 1, 1});
    EXPECT_FALSE(small.across);
    EXPECT_FALSE(small.up);
}

TEST(ScaleMark, MayHaveRoomInOneDirectionOnly)
{
    ScaleMark const strip = findScaleMark({0, 0, 200, 50}, {0, 0, 200, 40});
    EXPECT_TRUE(strip.across);
    EXPECT_FALSE(strip.up);
    ScaleMark const column = findScaleMark({0, 0, 50, 200}, {0, 0, 30, 200});
    EXPECT_FALSE(column.across);
    EXPECT_TRUE(column.up);
}

TEST(ScaleMark, StaysClearOfThePatchesAndOfItsOtherLine)
{
    std::mt19937 random(7);
    auto const upTo = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most + 1)) / 2.0; };
    int found = 0;
    for (int round = 0; round < 20'000; ++round) {
        RealRect const printable{upTo(60), upTo(60), upTo(800), upTo(800)};
        RealRect const taken{upTo(400), upTo(400), upTo(700), upTo(700)};
        ScaleMark const mark = findScaleMark(printable, taken);
        Box const sheet = boxOf(printable);
        std::vector<Box> boxes;
        for (Recording const& part : {drawnAcross(mark), drawnUp(mark)})
            if (!part.rectangles.empty())
                boxes.push_back(part.box());
        for (Box const& box : boxes) {
            ++found;
            EXPECT_GE(box.left, sheet.left - exactly);
            EXPECT_LE(box.right, sheet.right + exactly);
            EXPECT_GE(box.bottom, sheet.bottom - exactly);
            EXPECT_LE(box.top, sheet.top + exactly);
            EXPECT_GE(distance(box, boxOf(taken)), 2 - exactly);
        }
        if (boxes.size() == 2) {
            EXPECT_GE(distance(boxes[0], boxes[1]), 2 - exactly);
        }
    }
    EXPECT_GT(found, 1000);
}
