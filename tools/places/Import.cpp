// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Import.h"

#include "Formats.h"
#include "Input.h"
#include "ProgressBar.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

namespace tool
{

using namespace geojson;
using namespace places;

namespace
{

struct Counts
{
    int imported = 0;
    int skipped = 0;
    int failed = 0;
};

const Format &formatOf(const QString &path, const QString &name, const Input &input)
{
    if (const Format *format = formatByName(name))
        return *format;
    if (const Format *format = formatByPath(path))
        return *format;
    return formatByContent(input.head());
}

/// Adds the places of one file. Stops early only when the service is gone or the file cannot be read on.
ExitStatus importFile(const QString &path, const QString &formatName, Counts &counts)
{
    const PlaceManager manager;
    Input input(path);
    ProgressBar bar(path);
    ExitStatus status = Done;
    const auto take = [&](const ReadPlace &read) {
        const QString where = path + QStringLiteral(": ") + read.where;
        if (!read.place) {
            bar.clear();
            complain(where, read.problem);
            ++counts.skipped;
            status = Failed;
            return true;
        }
        const Error::Type error = manager.addPlace(read.place);
        if (error == Error::Success) {
            bar.show(input.progress(), ++counts.imported);
            return true;
        }
        bar.clear();
        ++counts.failed;
        status = report(error, where);
        return status != NoService;
    };
    const QString problem =
        input.problem().isEmpty() ? formatOf(path, formatName, input).read(input, take) : input.problem();
    if (problem.isEmpty())
        return status;
    bar.clear();
    complain(path, problem);
    return Failed;
}

} // namespace

ExitStatus importFiles(const QStringList &paths, const QString &format)
{
    Counts counts;
    ExitStatus status = Done;
    for (const QString &path : paths) {
        const ExitStatus outcome = importFile(path, format, counts);
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
