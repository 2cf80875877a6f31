// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Query.h"

#include <QtCore/QVariant>

#include <string>
#include <vector>

namespace placesd
{

/// Puts a query into one SQL statement. Terms are always bound, never part of the text.
class FindSql
{
public:
    /// @param external whether the query came by the external channel, which sees no contacts and no recent places.
    FindSql(const Query &query, bool external);

    /// False for a rule or sort rule with a number that has no meaning.
    [[nodiscard]] bool isUnderstood() const { return m_understood; }

    /// Selects the record (full or header, as the query asks) of each place of the page, and of one more.
    [[nodiscard]] std::string selectPage() const;
    /// Selects the number of places that the query finds.
    [[nodiscard]] std::string selectCount() const;
    /// What to bind, by position; the page takes sortBindings(), its length and its offset behind
    /// these.
    [[nodiscard]] const std::vector<QVariant> &bindings() const { return m_bindings; }
    [[nodiscard]] const std::vector<QVariant> &sortBindings() const { return m_sortBindings; }

private:
    std::string condition(const Rule &rule);
    std::string topCondition(const Rule &rule);
    std::string connective(const Rule &rule, const char *link, const char *ofNone);
    std::string leaf(const Rule &rule);
    std::string nameCondition(int op, const QString &term);
    std::string foldedText(const std::string &column, int op, const QString &term);
    std::string exactText(const std::string &column, int op, const QString &term);
    std::string text(const std::string &column, int op, const QString &term);
    std::string number(const std::string &column, int op, int value);
    std::string sortTerms(const Sort &sort);
    std::string bind(const QVariant &value);
    std::string notUnderstood();

    const bool m_external;
    const bool m_headerOnly;
    bool m_understood = true;
    std::vector<QVariant> m_bindings;
    std::vector<QVariant> m_sortBindings;
    std::string m_rank;
    std::string m_condition;
    std::string m_order;
};

} // namespace placesd
