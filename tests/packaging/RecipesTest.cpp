// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Contents.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace
{

QDir const source(PATCHLOOM_SOURCE);
QString const id = "org.patchloom.Patchloom";

} // namespace

/// The Flatpak recipe, as far as it can be checked without its runtime.
class RecipesTest : public QObject
{
    Q_OBJECT

    QDir recipe{source.filePath("packaging/flatpak")};
    QJsonObject manifest;
    QJsonObject module;

private slots:
    void initTestCase()
    {
        QJsonParseError error;
        manifest = QJsonDocument::fromJson(contentsOf(recipe.filePath(id + ".json")), &error).object();
        QCOMPARE(error.error, QJsonParseError::NoError);
        QCOMPARE(manifest["modules"].toArray().size(), 1);
        module = manifest["modules"][0].toObject();
    }

    void nameTheApplicationAlike()
    {
        QCOMPARE(manifest["id"].toString(), id);
        QByteArray const metainfo = contentsOf(PATCHLOOM_UNPACKED "/usr/share/metainfo/" + id + ".metainfo.xml");
        QVERIFY(metainfo.contains("<id>" + id.toUtf8() + "</id>"));
        QVERIFY(metainfo.contains("type=\"desktop-id\">" + id.toUtf8() + ".desktop<"));
        QVERIFY(contentsOf(menuEntry()).contains("\nIcon=" + id.toUtf8() + "\n"));
    }

    void buildTheseSources()
    {
        QCOMPARE(QDir(recipe.filePath(module["sources"][0]["path"].toString())).canonicalPath(),
                 source.canonicalPath());
        QByteArray const options = contentsOf(source.filePath("CMakeLists.txt"));
        for (QJsonValue const option : module["config-opts"].toArray()) {
            QString const name = option.toString().mid(2).section('=', 0, 0);
            QVERIFY2(name.startsWith("CMAKE_") || options.contains("option(" + name.toUtf8() + " "), qPrintable(name));
        }
    }

    void startTheProgramFromTheMenuOutside()
    {
        QStringList const install = step(0);
        QCOMPARE(install.first(), "install");
        QVERIFY(QFileInfo(source.filePath(install[install.size() - 2])).isExecutable());
        QCOMPARE(install.last(), "/app/bin/" + manifest["command"].toString());

        // The second step changes the menu entry of an installation.
        QTemporaryDir const folder;
        QString const entry = folder.filePath(id + ".desktop");
        QVERIFY(QFile::copy(menuEntry(), entry));
        QStringList edit = step(1);
        QCOMPARE(edit.takeLast(), "/app/share/applications/" + id + ".desktop");
        QCOMPARE(QProcess::execute(edit.takeFirst(), edit << entry), 0);
        QCOMPARE(QProcess::execute("desktop-file-validate", {entry}), 0);
        QList<QByteArray> const lines = contentsOf(entry).split('\n');
        QVERIFY(lines.contains("Exec=" + manifest["command"].toString().toUtf8()));
        QVERIFY(std::none_of(lines.begin(), lines.end(), [](QByteArray const& l) { return l.startsWith("Path="); }));
    }

private:
    static QString menuEntry() { return PATCHLOOM_UNPACKED "/usr/share/applications/" + id + ".desktop"; }

    QStringList step(int number) const { return module["post-install"][number].toString().split(' '); }
};

QTEST_GUILESS_MAIN(RecipesTest)
#include "RecipesTest.moc"
