// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <cstdio>

// A small window from which a file can be dragged, for as long as it runs: whoever takes the file asks it where the
// file is. It says "taken" as soon as the window below the mouse would take the file.

namespace
{

class Source : public QWidget
{
public:
    explicit Source(QString const& path) : file(QUrl::fromLocalFile(path)) {}

protected:
    void mousePressEvent(QMouseEvent*) override
    {
        auto* const drag = new QDrag(this);
        auto* const contents = new QMimeData;
        contents->setUrls({file});
        drag->setMimeData(contents);
        connect(drag, &QDrag::actionChanged, this, [](Qt::DropAction action) {
            std::puts(action == Qt::CopyAction ? "taken" : "refused");
            std::fflush(stdout);
        });
        drag->exec(Qt::CopyAction);
    }

private:
    QUrl const file;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FILE\n", argv[0]);
        return 2;
    }
    Source window(QString::fromLocal8Bit(argv[1]));
    window.setWindowTitle("Source");
    window.setFixedSize(120, 80);
    window.show();
    return QApplication::exec();
}
