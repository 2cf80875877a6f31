// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Searches places while one types, and shows the chosen one with its details, on a map of the world.

#include "BrowserWindow.h"

#include <QtCore/QCommandLineParser>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>

#include <cstdio>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Searches places and shows them on a map."));
    options.addHelpOption();
    options.addOptions({
        {QStringLiteral("search"), QStringLiteral("Search for <term> and show the first place found."),
         QStringLiteral("term")},
        {QStringLiteral("screenshot"),
         QStringLiteral("Save a picture of the window to <file> when it is filled, and end."), QStringLiteral("file")},
    });
    options.process(application);

    BrowserWindow window;
    if (options.isSet(QStringLiteral("search")))
        window.searchAndChoose(options.value(QStringLiteral("search")));
    window.show();
    const QString picture = options.value(QStringLiteral("screenshot"));
    if (!picture.isEmpty()) {
        const auto save = [&] {
            if (!window.isComplete())
                return;
            const bool isSaved = window.grab().save(picture);
            if (!isSaved)
                std::fprintf(stderr, "%s cannot be written\n", qPrintable(picture));
            QCoreApplication::exit(isSaved ? 0 : 1);
        };
        QObject::connect(&window, &BrowserWindow::progressed, &application, save, Qt::QueuedConnection);
    }
    return QApplication::exec();
}
