// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/PlaceReader.h"
#include "MemberImporter.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <array>

namespace tool
{

/// Counts the members of files by outcome.
class ImportSummary
{
public:
    /// A problem with a file that the user must know.
    struct Problem
    {
        QString file;
        QString where; ///< Empty when the whole file is concerned.
        QString text;
    };

    /// Prints a problem to standard error and keeps it.
    void complain(const Problem &problem);
    /// The same for a value that is lost while its place is imported.
    void complainOfLoss(const Problem &loss);
    void count(MemberOutcome outcome) { ++m_outcomes[static_cast<std::size_t>(outcome)]; }
    /// Counts a member that is not a place.
    void count(formats::MemberKind kind) { ++m_kinds[static_cast<std::size_t>(kind)]; }
    /// The number of members so far.
    [[nodiscard]] qint64 members() const;

    /// One line for people.
    [[nodiscard]] QString text(const MemberImporter::Options &options) const;
    [[nodiscard]] QByteArray json() const;

private:
    [[nodiscard]] qint64 number(MemberOutcome outcome) const { return m_outcomes[static_cast<std::size_t>(outcome)]; }
    [[nodiscard]] qint64 number(formats::MemberKind kind) const { return m_kinds[static_cast<std::size_t>(kind)]; }
    [[nodiscard]] QString kindsText() const;

    std::array<qint64, 5> m_outcomes = {}; ///< By MemberOutcome.
    std::array<qint64, 5> m_kinds = {};    ///< By MemberKind.
    QVector<Problem> m_problems;
    QVector<Problem> m_losses;
};

} // namespace tool
