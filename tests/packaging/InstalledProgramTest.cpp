// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Contents.h"
#include "journeys/Outside.h"
#include "window/WindowTest.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>

namespace
{

QString const unpacked = PATCHLOOM_UNPACKED;
QString const appDir = PATCHLOOM_APPDIR;

/// A window's icon. The window's property holds width, height, and 0xAARRGGBB for each pixel.
QImage iconOf(QString const& window)
{
    QProcess tool;
    tool.start("xprop",
               {"-id", window, "-notype", "-len", "1000000", "-f", "_NET_WM_ICON", "32c", " $0+\n", "_NET_WM_ICON"});
    tool.waitForFinished();
    QList<quint32> words;
    for (QByteArray const& word : tool.readAllStandardOutput().simplified().mid(sizeof "_NET_WM_ICON").split(','))
        words += word.trimmed().toUInt();
    if (words.size() < 2 || words.size() != 2 + qsizetype{words[0]} * words[1])
        return QImage();
    QImage icon(static_cast<int>(words[0]), static_cast<int>(words[1]), QImage::Format_ARGB32);
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x)
            icon.setPixel(x, y, words[2 + y * icon.width() + x]);
    }
    return icon;
}

/// Keeps only the transparency of pixels that are not opaque, because Qt changes their colours a little.
QImage withoutFaintColours(QImage icon)
{
    icon.convertTo(QImage::Format_ARGB32);
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            QRgb const pixel = icon.pixel(x, y);
            icon.setPixel(x, y, qAlpha(pixel) == 255 ? pixel : qRgba(0, 0, 0, qAlpha(pixel)));
        }
    }
    return icon;
}

} // namespace

/// The packaged program. It does not depend on the folder where it was built.
class InstalledProgramTest : public WindowTest
{
    Q_OBJECT

    QProcess manager;

private slots:
    void initTestCase() { QVERIFY(startWindowManager(manager)); }

    void cleanupTestCase()
    {
        manager.terminate();
        manager.waitForFinished();
    }

    void startsFromAnywhereWithItsIcon_data()
    {
        QTest::addColumn<QString>("root");
        QTest::addColumn<QStringList>("command");
        QTest::newRow("menu entry") << unpacked << QStringList{PATCHLOOM_START_UNPACKED, unpacked};
        QTest::newRow("link") << unpacked << QStringList{unpacked + "/usr/bin/patchloom"};
        QTest::newRow("AppDir") << appDir << QStringList{appDir + "/AppRun"};
    }

    void startsFromAnywhereWithItsIcon()
    {
        QFETCH(QString, root);
        QFETCH(QStringList, command);
        QProcess program;
        program.setWorkingDirectory("/");
        program.start(command.takeFirst(), command);
        QString const window = windowOf(program, "Patchloom");
        QVERIFY(!window.isEmpty());
        QCOMPARE(QFileInfo(QString("/proc/%1/exe").arg(program.processId())).canonicalFilePath(),
                 QFileInfo(root + "/usr/lib/patchloom/bin/patchloom").canonicalFilePath());
        QImage const icon(root + "/usr/lib/patchloom/Resources/icon.png");
        QCOMPARE(icon.size(), QSize(128, 128));
        QCOMPARE(withoutFaintColours(iconOf(window)), withoutFaintColours(icon));
        end(program);
    }

    void speaksTheUsersLanguage_data()
    {
        QTest::addColumn<QString>("root");
        QTest::addColumn<QStringList>("command");
        QTest::newRow("menu entry") << unpacked << QStringList{PATCHLOOM_START_UNPACKED, unpacked};
        QTest::newRow("AppDir") << appDir << QStringList{appDir + "/AppRun"};
    }

    void speaksTheUsersLanguage()
    {
        QFETCH(QString, root);
        QFETCH(QStringList, command);
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", "de_DE.UTF-8");
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory("/");
        program.start(command.takeFirst(), command);
        QVERIFY(!windowOf(program, "Patchloom").isEmpty());
        // A catalogue that is in use is mapped into memory.
        QByteArray const maps = contentsOf(QString("/proc/%1/maps").arg(program.processId()));
        QVERIFY(maps.contains(QFile::encodeName(root) + "/usr/lib/patchloom/Resources/myapp_de.qm"));
        end(program);
    }

private:
    static void end(QProcess& program)
    {
        press({"alt+F4"});
        QVERIFY(program.waitForFinished(longestAnswer));
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.readAllStandardError(), QByteArray());
    }
};

QTEST_MAIN(InstalledProgramTest)
#include "InstalledProgramTest.moc"
