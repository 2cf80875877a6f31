// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Import.h"

#include "formats/Format.h"
#include "formats/Input.h"
#include "ImportSummary.h"
#include "Interruption.h"
#include "PlaceAdder.h"
#include "ProgressBar.h"

#include <places/Place.h>

#include <algorithm>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Imports one file.
class FileImport
{
public:
    FileImport(const QString &path, const ImportOptions &options, const MemberImporter &importer,
               ImportSummary &summary)
        : m_path(path)
        , m_options(options)
        , m_summary(summary)
        , m_input(path)
        , m_bar(path)
        , m_adder(importer, [this](const ReadPlace &read, const MemberResult &result) { return settle(read, result); })
    {}

    /// Stops early only when the service is unavailable, on a signal, or on an error of the file.
    ExitStatus run()
    {
        const QString problem = m_input.problem().isEmpty() ? read() : m_input.problem();
        if (Interruption::signal() != 0)
            m_adder.stop();
        m_adder.finish();
        if (Interruption::signal() != 0)
            return static_cast<ExitStatus>(Interrupted + Interruption::signal());
        if (problem.isEmpty() || m_status == NoService)
            return m_status;
        complain({}, problem);
        return Failed;
    }

private:
    QString read()
    {
        ReadOptions options = m_options.read;
        options.note = [this](const QString &note) {
            m_bar.clear();
            tool::complain(m_path, note);
        };
        const Format *named = formatByName(m_options.format);
        return (named ? *named : formatOf(m_input)).read(m_input, options, [this](ReadPlace read) {
            return Interruption::signal() == 0 && m_adder.add(std::move(read));
        });
    }

    /// Stops the import at the first place for which the service is unavailable. Other places were in flight by then.
    bool settle(const ReadPlace &read, const MemberResult &result)
    {
        if (m_status == NoService && (!read.place || statusOf(result.error) == NoService))
            return false;
        if (read.place)
            settlePlace(read, result);
        else if (read.kind == MemberKind::Place)
            fail(read, read.problem, Failed);
        else
            m_summary.count(read.kind);
        m_bar.show(m_input.progress(), m_summary.members());
        return m_status != NoService;
    }

    void settlePlace(const ReadPlace &read, const MemberResult &result)
    {
        if (result.outcome == MemberOutcome::Failed)
            return fail(read, textOf(result.error, result.reason), statusOf(result.error));
        m_summary.count(result.outcome);
        const bool isTaken = result.outcome == MemberOutcome::Imported || result.outcome == MemberOutcome::Updated;
        if (!isTaken)
            return;
        for (const QString &loss : read.losses) {
            m_bar.clear();
            m_summary.complainOfLoss({m_path, read.where, loss});
        }
        if (m_options.store.isDryRun && m_options.form == Form::Table)
            printPlan(read, result);
    }

    void printPlan(const ReadPlace &read, const MemberResult &result)
    {
        m_bar.clear();
        const QString what = read.where + QStringLiteral(": ") + read.place->name();
        const QString updated = result.id < 0 ? QStringLiteral("a place of this import") : nameOfPlace(result.id);
        printLine(result.outcome == MemberOutcome::Imported
                      ? QStringLiteral("would import %1").arg(what)
                      : QStringLiteral("would update %1 with %2").arg(updated, what));
    }

    void fail(const ReadPlace &read, const QString &problem, ExitStatus status)
    {
        complain(read.where, problem);
        m_summary.count(MemberOutcome::Failed);
        m_status = std::max(m_status, status);
    }

    void complain(const QString &where, const QString &problem)
    {
        m_bar.clear();
        m_summary.complain({m_path, where, problem});
    }

    const QString m_path;
    const ImportOptions &m_options;
    ImportSummary &m_summary;
    ExitStatus m_status = Done;
    Input m_input;
    ProgressBar m_bar;
    PlaceAdder m_adder;
};

void adviseToRepeat(StoredMembers stored)
{
    complain(
        QStringLiteral("interrupted"),
        stored == StoredMembers::Duplicate
            ? QStringLiteral(
                "the places imported so far are stored; run the same command without --duplicate to import the rest")
            : QStringLiteral("run the same command again to import the rest; stored places are skipped"));
}

} // namespace

ExitStatus importFiles(const QStringList &paths, const ImportOptions &options)
{
    const Interruption interruption;
    const MemberImporter importer(options.store);
    ImportSummary summary;
    ExitStatus status = Done;
    for (const QString &path : paths) {
        const ExitStatus outcome = FileImport(path, options, importer, summary).run();
        if (outcome != Done)
            status = outcome;
        if (outcome == NoService || outcome > Interrupted)
            break;
    }
    if (options.form != Form::Table)
        printJson(summary.json());
    else if (!options.isQuiet)
        printLine(summary.text(options.store));
    if (status > Interrupted)
        adviseToRepeat(options.store.stored);
    return status;
}

} // namespace tool
