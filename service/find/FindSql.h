// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Query.h"

#include <QtCore/QVariant>

#include <string>
#include <vector>

namespace placesd
{

/// Where a find looks. Places that are not stored stand, for the length of a find, in the candidates' tables, and with
/// them which leaf of the rule found which place, stored or not.
enum class Scope
{
    Stored,         ///< Among the stored places only.
    WithCandidates, ///< Among those and the candidates.
    MoreCandidates  ///< The same, but for what is found without the providers: it came with their first candidates.
};

/// Puts a query into one SQL statement. Terms are always bound, never part of the text.
class FindSql
{
public:
    /// @param query its rule has its sources numbered.
    /// @param external whether the query came by the external channel, which sees no contacts and no recent places.
    FindSql(const Query &query, bool external, Scope scope = Scope::Stored);

    /// False for a rule or sort rule with a number that has no meaning.
    [[nodiscard]] bool isUnderstood() const { return m_understood; }
    /// Whether candidates are looked at by what is known of them beside their names.
    [[nodiscard]] bool needsParts() const { return m_needsParts; }

    /// Selects each place of the page and one more: among the stored places their record (full or header, as the query
    /// asks), else their id.
    [[nodiscard]] std::string selectPage() const;
    /// Selects the number of places that the query finds.
    [[nodiscard]] std::string selectCount() const;
    /// What to bind, by position; the page takes sortBindings(), its length and its offset behind
    /// these.
    [[nodiscard]] const std::vector<QVariant> &bindings() const { return m_bindings; }
    [[nodiscard]] const std::vector<QVariant> &sortBindings() const { return m_sortBindings; }

private:
    /// What the conditions that are being written are about.
    enum class Among
    {
        StoredPlaces,
        Candidates
    };

    std::string conditionOfMore(const Rule &rule, Among among);
    std::string rankedCondition(const Rule &rule, Among among, std::string &rank);
    std::string condition(const Rule &rule);
    std::string connective(const Rule &rule, const char *link, const char *ofNone);
    std::string leaf(const Rule &rule);
    std::string sourceLeaf(const Rule &rule);
    std::string partsOf(const char *table, const std::string &condition, bool present = true);
    std::string nameCondition(int op, const QString &term);
    std::string foldedText(const std::string &column, int op, const QString &term);
    std::string exactText(const std::string &column, int op, const QString &term);
    std::string text(const std::string &column, int op, const QString &term);
    std::string number(const std::string &column, int op, int value);
    std::string sortTerms(const Sort &sort);
    std::string bind(const QVariant &value);
    std::string notUnderstood();
    [[nodiscard]] std::string foundPlaces() const;

    const bool m_external;
    const bool m_headerOnly;
    const Scope m_scope;
    Among m_among = Among::StoredPlaces;
    bool m_withoutProviders = false; ///< The conditions being written are about what is found without them.
    bool m_understood = true;
    bool m_needsParts = false;
    std::vector<QVariant> m_bindings;
    std::vector<QVariant> m_sortBindings;
    std::string m_rank;
    std::string m_condition;
    std::string m_candidateRank;
    std::string m_candidateCondition;
    std::string m_order;
};

} // namespace placesd
