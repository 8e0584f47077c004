// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LibraryChart.h"
#include "TestWindow.h"
#include "WindowTest.h"

#include <cstdint>
#include <cstdlib>
#include <vector>

namespace
{

// What the program has seeded its random numbers with.
std::vector<unsigned int> seeds;

// Of the thread: the display's driver may draw numbers in others.
thread_local std::uint64_t state = 0;

} // namespace

// Random numbers of our own instead of the C library's, whose seeds 0 and 1 begin the same sequence: with those, a
// second attempt finds what the first one did.
extern "C" void srand(unsigned int seed) noexcept
{
    seeds.push_back(seed);
    state = seed;
}

extern "C" int rand() noexcept
{
    state = state * 6364136223846793005 + 1442695040888963407;
    return static_cast<int>(state >> 33);
}

/// The attempts at an order of the patches.
class SecondAttemptTest : public WindowTest
{
    Q_OBJECT

    TemporaryFolder folder;
    std::unique_ptr<TestWindow> window;

    /// The seeds of the attempts, after the one that the file is read with.
    std::vector<unsigned int> seedsFor(QString const& device, char const* table)
    {
        window->chooseDevice(device);
        seeds.clear();
        window->read(folder.write("patches.txt", table));
        std::vector<unsigned int> const all = seeds;
        return {all.begin() + (all.empty() ? 0 : 1), all.end()};
    }

private slots:
    void init()
    {
        WindowTest::init();
        window = std::make_unique<TestWindow>();
    }

    void cleanup() { window.reset(); }

    void isNotMadeWhereTheFirstOneIsGood()
    {
        QCOMPARE(seedsFor("VT-30 Standard Ruler", "RGB\n0 0 0\n255 0 0\n"), std::vector<unsigned int>{0});
    }

    void hasASeedOfItsOwnAndGivesWayToGaps()
    {
        QCOMPARE(seedsFor("VT-30 Long Ruler", "RGB\n100 100 100\n101 101 101\n"), (std::vector<unsigned int>{0, 1, 0}));
    }

    void isNotMadeOnASpotDevice()
    {
        QCOMPARE(seedsFor("GB+ Spot", "RGB\n100 100 100\n101 101 101\n"), std::vector<unsigned int>{});
    }

    // One column of four greys, two of them equal: the first attempt leaves these side by side.
    void isWhatThePersonGetsWhereItIsGoodEnough()
    {
        char const table[] = "RGB\n204 204 204\n102 102 102\n0 0 0\n102 102 102\n";
        QCOMPARE(seedsFor("VT-30 Standard Ruler", table), (std::vector<unsigned int>{0, 1}));

        Settings settings;
        settings.table = folder.pathOf("patches.txt");
        settings.device = standardRuler;
        LibraryChart chart(settings);
        QCOMPARE(chart.layout.computeLayout(0, 0), 0.0f);
        auto const first = chart.files();
        float const deltaE = chart.layout.computeLayout(0, 1);
        auto const second = chart.files();
        QVERIFY(deltaE >= 18);
        QVERIFY(first != second);

        QVERIFY(window->label("warnSignLabel")->isHidden());
        QCOMPARE(window->text("gapsLabel"), QString::asprintf("Gaps: %.2f dE", static_cast<double>(deltaE)));
        TemporaryFolder const out;
        answerWithFolder(toQString(out.pathWithSlash()));
        click(window->button("createButton"));
        QCOMPARE(filesIn(toQString(out.pathOf("New Chart"))), second);
    }
};

QTEST_MAIN(SecondAttemptTest)
#include "SecondAttemptTest.moc"
