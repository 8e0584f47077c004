// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WindowTest.h"

#include <QGuiApplication>
#include <QImage>
#include <QProcess>
#include <QScreen>

namespace
{

QImage screen()
{
    return QGuiApplication::primaryScreen()->grabWindow(0).toImage();
}

/// The screen with the program's window, once it no longer changes. Null if no window appears.
QImage screenWith(QProcess const& program, QImage const& without)
{
    QImage last;
    bool const standsStill = QTest::qWaitFor(
        [&] {
            QImage const previous = std::exchange(last, screen());
            QTest::qWait(200);
            return program.state() == QProcess::Running && last != without && last == previous;
        },
        20'000);
    return standsStill ? last : QImage();
}

} // namespace

/// The program, started as its own process.
class StartedProgramTest : public WindowTest
{
    Q_OBJECT

private slots:
    void takesNothingFromItsArguments()
    {
        QImage const empty = screen();
        QImage shown[2];
        QStringList const arguments[] = {{}, {PATCHLOOM_EXAMPLES "it8.7-4-cmyk.txt", "--gaps", "-x"}};
        for (int i = 0; i < 2; ++i) {
            QProcess program;
            program.start(PATCHLOOM_PROGRAM, arguments[i]);
            shown[i] = screenWith(program, empty);
            program.terminate();
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.readAllStandardError(), QByteArray());
            QCOMPARE(program.readAllStandardOutput(), QByteArray());
            QVERIFY(QTest::qWaitFor([&] { return screen() == empty; }));
        }
        QVERIFY(!shown[0].isNull());
        QCOMPARE(shown[1], shown[0]);
    }
};

QTEST_MAIN(StartedProgramTest)
#include "StartedProgramTest.moc"
