// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Import.h"

#include "formats/Format.h"
#include "formats/Input.h"
#include "formats/JsonWriter.h"
#include "PlaceAdder.h"
#include "ProgressBar.h"

#include <places/Place.h>

#include <QtCore/QVector>

#include <algorithm>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Problems in the summary as JSON. Standard error lists all of them.
constexpr int MAX_PROBLEMS = 1000;

/// Counts and problems of all files.
struct Summary
{
    struct Problem
    {
        QString file;
        QString where; ///< Empty for a problem of the whole file.
        QString text;
    };

    /// Prints a problem and keeps it for the summary.
    void complain(const Problem &problem)
    {
        tool::complain(problem.where.isEmpty() ? problem.file : problem.file + QStringLiteral(": ") + problem.where,
                       problem.text);
        if (problems.size() < MAX_PROBLEMS)
            problems.append(problem);
    }

    qint64 imported = 0;
    qint64 skipped = 0;
    qint64 failed = 0;
    QVector<Problem> problems;
};

/// Adds the places of one file. Stops early only when the service is unavailable or the file cannot be read further.
ExitStatus importFile(const QString &path, const QString &formatName, Summary &summary)
{
    Input input(path);
    ProgressBar bar(path);
    ExitStatus status = Done;
    const auto complain = [&](const QString &where, const QString &problem) {
        bar.clear();
        summary.complain({path, where, problem});
    };
    PlaceAdder adder([&](const ReadPlace &read, Error::Type outcome, const QString &reason) {
        // The import ends at the first place without a service. Other additions are in flight at that time.
        const bool isLeftOut = status == NoService && (!read.place || statusOf(outcome) == NoService);
        if (isLeftOut)
            return false;
        if (!read.place) {
            complain(read.where, read.problem);
            ++summary.skipped;
            status = std::max(status, Failed);
        } else if (outcome == Error::Success) {
            bar.show(input.progress(), ++summary.imported);
        } else {
            complain(read.where, textOf(outcome, reason));
            ++summary.failed;
            status = std::max(status, statusOf(outcome));
        }
        return status != NoService;
    });
    const auto take = [&](ReadPlace read) { return adder.add(std::move(read)); };
    const Format *format = formatByName(formatName);
    const QString problem =
        input.problem().isEmpty() ? (format ? *format : formatOf(input)).read(input, {}, take) : input.problem();
    adder.finish();
    if (problem.isEmpty() || status == NoService)
        return status;
    complain(QString(), problem);
    return Failed;
}

QByteArray toJson(const Summary &summary)
{
    JsonWriter out;
    out.object([&] {
        out.member("imported", summary.imported);
        out.member("skipped", summary.skipped);
        out.member("failed", summary.failed);
        out.key("problems");
        out.array([&] {
            for (const Summary::Problem &problem : summary.problems) {
                out.object([&] {
                    out.member("file", problem.file);
                    out.member("where", problem.where);
                    out.member("problem", problem.text);
                });
            }
        });
    });
    return out.result();
}

} // namespace

ExitStatus importFiles(const QStringList &paths, const QString &format, Form form)
{
    Summary summary;
    ExitStatus status = Done;
    for (const QString &path : paths) {
        const ExitStatus outcome = importFile(path, format, summary);
        if (outcome != Done)
            status = outcome;
        if (outcome == NoService)
            break;
    }
    if (form == Form::Table) {
        printLine(QStringLiteral("%1 imported, %2 skipped, %3 failed")
                      .arg(summary.imported)
                      .arg(summary.skipped)
                      .arg(summary.failed));
    } else {
        printJson(toJson(summary));
    }
    return status;
}

} // namespace tool
