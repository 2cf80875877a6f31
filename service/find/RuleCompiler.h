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

/// Makes conditions of rules. One reading of every rule holds for stored places and candidates alike.
class RuleCompiler
{
public:
    /// @param store whose facets the conditions know by number. @param candidates what FoundConditions look at;
    /// outlives the conditions. @param terms of all leaves of the rules that look for words. @param external whether
    /// the query came by the external channel, which sees no contacts and no recent places.
    RuleCompiler(Store &store, const Candidates &candidates, const FindTerms &terms, bool external)
        : m_store(store)
        , m_candidates(candidates)
        , m_terms(terms)
        , m_external(external)
    {}

    /// False once a rule had a number that has no meaning.
    [[nodiscard]] bool isUnderstood() const { return m_isUnderstood; }

    /// What a rule, or a search that it joins with others, finds. Its sources are numbered. Candidates belong to the
    /// searches whose leaves gave them.
    ConditionPtr compileSearch(const Rule &rule);
    /// What it finds without the providers.
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
