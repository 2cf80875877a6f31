// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "find/Condition.h"
#include "find/Query.h"
#include "find/SearchTerm.h"

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

namespace placesd
{

class Candidates;

/// Compiles rules to conditions, with the same meaning for stored places and candidates.
class RuleCompiler
{
public:
    /// @param store provides the numbers of facets. @param candidates used by FoundConditions; must outlive the
    /// conditions. @param terms of all leaves that search for words. @param external true for the open channel, which
    /// sees no contacts and no recent places.
    RuleCompiler(Store &store, const Candidates &candidates, const FindTerms &terms, bool external)
        : m_store(store)
        , m_candidates(candidates)
        , m_terms(terms)
        , m_external(external)
    {}

    /// False after a rule with a number that has no meaning.
    [[nodiscard]] bool isUnderstood() const { return m_isUnderstood; }

    /// Compiles a rule, or one of the searches that it joins. Its sources must be numbered. A candidate belongs to the
    /// searches with the leaves that found it.
    ConditionPtr compileSearch(const Rule &rule);
    /// Compiles the rule without its provider leaves.
    ConditionPtr compileWithoutProviders(const Rule &rule);

private:
    void addSources(const Rule &rule, std::vector<int> &sources) const;
    ConditionPtr compile(const Rule &rule);
    ConditionPtr connective(const Rule &rule);
    ConditionPtr leaf(const Rule &rule);
    ConditionPtr sourceLeaf(const Rule &rule);
    std::shared_ptr<const std::vector<qint64>> numbersOf(FacetKind kind, const TextTest &text);
    ConditionPtr facet(FacetKind kind, int op, const QString &text);
    ConditionPtr part(FacetKind kind, const Rule &rule);
    ConditionPtr favorite();
    ConditionPtr property(const Rule *key, const Rule *value);
    ConditionPtr use(int op, int time);
    ConditionPtr name(int op, const QString &term);
    ConditionPtr notUnderstood();

    Store &m_store;
    const Candidates &m_candidates;
    const FindTerms &m_terms;
    const bool m_external;
    bool m_withoutProviders = false;
    bool m_isUnderstood = true;
    std::map<std::tuple<FacetKind, int, std::string>, std::shared_ptr<const std::vector<qint64>>> m_numbers;
};

} // namespace placesd
