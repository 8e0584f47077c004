// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>

// A small window from which files or a text can be dragged. It prints "taken" as soon as the window below the mouse
// accepts them, and "over" when they are dropped.

namespace
{

void say(char const* word)
{
    std::puts(word);
    std::fflush(stdout);
}

class Source : public QWidget
{
public:
    explicit Source(QStringList const& arguments)
    {
        if (arguments.value(0) == "--text") {
            text = arguments.value(1);
        } else {
            for (QString const& path : arguments)
                files.append(QUrl::fromLocalFile(path));
        }
    }

protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* const drag = new QDrag(this);
        auto* const contents = new QMimeData;
        if (files.isEmpty())
            contents->setText(text);
        else
            contents->setUrls(files);
        drag->setMimeData(contents);
        connect(drag, &QDrag::actionChanged, this,
                [](Qt::DropAction action) { say(action == Qt::CopyAction ? "taken" : "refused"); });
        drag->exec(Qt::CopyAction);
        say("over");
    }

private:
    QList<QUrl> files;
    QString text;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FILE...\n       %s --text TEXT\n", argv[0], argv[0]);
        return 2;
    }
    Source window(QApplication::arguments().mid(1));
    window.setWindowTitle("Source");
    window.setFixedSize(120, 80);
    window.show();
    return QApplication::exec();
}
