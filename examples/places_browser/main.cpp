// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

// Searches places while the user types, and shows the chosen one with its details on a world map.

#include "BrowserWindow.h"

#include <QtCore/QCommandLineParser>
#include <QtGui/QPixmap>
#include <QtWidgets/QApplication>

#include <cstdio>

namespace
{

using vela::platform::places::Coordinates;

/// The position in "LATITUDE,LONGITUDE"; invalid for any other text.
Coordinates positionOf(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    bool isNumber[2] = {false, false};
    const Coordinates position(parts.value(0).toDouble(&isNumber[0]), parts.value(1).toDouble(&isNumber[1]));
    return parts.size() == 2 && isNumber[0] && isNumber[1] ? position : Coordinates();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QCommandLineParser options;
    options.setApplicationDescription(QStringLiteral("Searches places and shows them on a map."));
    options.addHelpOption();
    options.addOptions({
        {QStringLiteral("search"), QStringLiteral("Search for <term> and show the first place found."),
         QStringLiteral("term")},
        {QStringLiteral("near"), QStringLiteral("Search near <position>, in degrees, and show distances from there."),
         QStringLiteral("latitude,longitude")},
        {QStringLiteral("screenshot"),
         QStringLiteral("Save a screenshot to <file> when all results are shown, and exit."), QStringLiteral("file")},
    });
    options.process(application);

    const Coordinates centre = positionOf(options.value(QStringLiteral("near")));
    if (options.isSet(QStringLiteral("near")) && !centre.isValid()) {
        std::fprintf(stderr, "not a position: %s\n", qPrintable(options.value(QStringLiteral("near"))));
        return 2;
    }

    BrowserWindow window;
    if (centre.isValid())
        window.setCentre(centre);
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
