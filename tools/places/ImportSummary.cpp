// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ImportSummary.h"

#include "formats/JsonWriter.h"
#include "Report.h"

#include <QtCore/QStringList>

#include <numeric>

namespace tool
{

using namespace formats;

namespace
{

/// Maximum number of problems in the summary for programs. Standard error lists all of them.
constexpr int MAX_PROBLEMS = 1000;

struct OutcomeName
{
    MemberOutcome outcome;
    const char *name;
    bool isOfUpdates; ///< Only an import with --update has such members.
};

constexpr OutcomeName OUTCOMES[] = {
    {MemberOutcome::Imported, "imported", false},  {MemberOutcome::Updated, "updated", true},
    {MemberOutcome::Unchanged, "unchanged", true}, {MemberOutcome::Skipped, "skipped", false},
    {MemberOutcome::Failed, "failed", false},
};

struct KindName
{
    MemberKind kind;
    const char *one;
    const char *several;
    bool canBePlace; ///< With --areas.
};

constexpr KindName KINDS[] = {
    {MemberKind::Line, "line", "lines", true},
    {MemberKind::Area, "area", "areas", true},
    {MemberKind::Track, "track", "tracks", false},
    {MemberKind::Route, "route", "routes", false},
};

void tell(const ImportSummary::Problem &problem, QVector<ImportSummary::Problem> &kept)
{
    complain(problem.where.isEmpty() ? problem.file : problem.file + QStringLiteral(": ") + problem.where,
             problem.text);
    if (kept.size() < MAX_PROBLEMS)
        kept.append(problem);
}

void write(JsonWriter &out, const char *name, const QVector<ImportSummary::Problem> &problems)
{
    out.list(name, problems, [&out](const ImportSummary::Problem &problem) {
        out.object([&] {
            out.member("file", problem.file);
            out.member("where", problem.where);
            out.member("problem", problem.text);
        });
    });
}

} // namespace

void ImportSummary::complain(const Problem &problem)
{
    tell(problem, m_problems);
}

void ImportSummary::complainOfLoss(const Problem &loss)
{
    tell(loss, m_losses);
}

qint64 ImportSummary::members() const
{
    return std::accumulate(m_outcomes.begin(), m_outcomes.end(), qint64{0});
}

QString ImportSummary::text(const MemberImporter::Options &options) const
{
    QStringList parts;
    for (const OutcomeName &each : OUTCOMES) {
        if (!each.isOfUpdates || options.stored == StoredMembers::Update)
            parts.append(QStringLiteral("%1 %2").arg(number(each.outcome)).arg(QLatin1String(each.name)));
    }
    const QString start = options.isDryRun ? QStringLiteral("dry run, nothing is written: ") : QString();
    return start + parts.join(QStringLiteral(", ")) + kindsText();
}

QString ImportSummary::kindsText() const
{
    QStringList parts;
    for (const KindName &each : KINDS) {
        const qint64 count = number(each.kind);
        if (count == 0)
            continue;
        const QString name = QLatin1String(count == 1 ? each.one : each.several);
        const QString advice = QStringLiteral(" (--areas imports %1)").arg(QLatin1String(count == 1 ? "it" : "them"));
        parts.append(QStringLiteral("%1 %2%3").arg(count).arg(name, each.canBePlace ? advice : QString()));
    }
    return parts.isEmpty() ? QString() : QStringLiteral("; ") + parts.join(QStringLiteral(", "));
}

QByteArray ImportSummary::json() const
{
    JsonWriter out;
    out.object([&] {
        for (const OutcomeName &each : OUTCOMES)
            out.member(each.name, number(each.outcome));
        for (const KindName &each : KINDS)
            out.member(each.several, number(each.kind));
        write(out, "problems", m_problems);
        write(out, "losses", m_losses);
    });
    return out.result();
}

} // namespace tool
