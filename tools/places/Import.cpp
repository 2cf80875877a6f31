// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Import.h"

#include "GeoJsonReader.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

#include <chrono>
#include <cstdio>

#include <unistd.h>

namespace tool
{

using namespace places;

namespace
{

/// A line on standard error that shows how far the work is; nothing unless that is a terminal.
class ProgressBar
{
public:
    explicit ProgressBar(const QString &title)
        : m_title(title)
        , m_shown(::isatty(STDERR_FILENO))
    {}
    ProgressBar(const ProgressBar &) = delete;
    ProgressBar &operator=(const ProgressBar &) = delete;
    ~ProgressBar() { clear(); }

    void show(double part, int count)
    {
        const auto now = std::chrono::steady_clock::now();
        if (!m_shown || now - m_last < std::chrono::milliseconds(100))
            return;
        m_last = now;
        constexpr int WIDTH = 30;
        const auto filled = static_cast<int>(part * WIDTH);
        const QString bar = QString(filled, QLatin1Char('#')).leftJustified(WIDTH, QLatin1Char('.'));
        std::fprintf(stderr, "\r%s [%s] %3d %% %d places", qUtf8Printable(m_title), qUtf8Printable(bar),
                     static_cast<int>(part * 100), count);
    }
    /// Makes room for a message.
    void clear()
    {
        if (m_shown)
            std::fprintf(stderr, "\r\033[K");
    }

private:
    const QString m_title;
    const bool m_shown;
    std::chrono::steady_clock::time_point m_last;
};

struct Counts
{
    int imported = 0;
    int skipped = 0;
    int failed = 0;
};

/// Adds the features of one file. Stops early only when the service is gone or the file cannot be read on.
ExitStatus importFile(const QString &path, Counts &counts)
{
    const PlaceManager manager;
    GeoJsonReader reader(path);
    ProgressBar bar(path);
    ExitStatus status = Done;
    const QString problem = reader.read([&](const GeoJsonReader::Feature &feature) {
        const QString where = QStringLiteral("%1: feature %2").arg(path).arg(feature.number);
        if (!feature.place) {
            bar.clear();
            complain(where, feature.problem);
            ++counts.skipped;
            return true;
        }
        const Error::Type error = manager.addPlace(feature.place);
        if (error == Error::Success) {
            bar.show(reader.progress(), ++counts.imported);
            return true;
        }
        bar.clear();
        ++counts.failed;
        status = report(error, where);
        return status != NoService;
    });
    if (problem.isEmpty())
        return status;
    bar.clear();
    complain(path, problem);
    return Failed;
}

} // namespace

ExitStatus importFiles(const QStringList &paths)
{
    Counts counts;
    ExitStatus status = Done;
    for (const QString &path : paths) {
        const ExitStatus outcome = importFile(path, counts);
        if (outcome != Done)
            status = outcome;
        if (outcome == NoService)
            break;
    }
    printLine(QStringLiteral("%1 imported, %2 skipped, %3 failed")
                  .arg(counts.imported)
                  .arg(counts.skipped)
                  .arg(counts.failed));
    return status;
}

} // namespace tool
