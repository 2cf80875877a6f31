// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "BareFetch.h"
#include "PlaceMaker.h"
#include "Question.h"
#include "ServedStore.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/PlaceManager.h>

namespace bench
{

/// The queries of a client to a store, through the library. Select the service of the store before running one.
class Questions
{
public:
    explicit Questions(const ServedStore &store);
    Questions(const Questions &) = delete;
    Questions &operator=(const Questions &) = delete;

    /// The same for all stores. They refer to this object.
    [[nodiscard]] const std::vector<Question> &all() const { return m_questions; }

private:
    using Rule = vela::platform::places::SearchRule;
    using Sort = vela::platform::places::SortRule;

    void addFetches();
    void addOrders();
    void addNames();
    void addGroups();
    void addKinds();
    void addFarPages();
    void addWrites();
    void add(std::string name, Limit limit, std::function<int()> ask);
    /// Adds a find of the first or a later page.
    void addFind(std::string name, Limit limit, const Rule &rule, const Sort &sort, int offset = 0);
    /// Adds finds of a rule by distance from a centre that changes with every find.
    void addNear(std::string name, Limit limit, const Rule &rule, vela::platform::places::SortOrder::Type order);
    void addGroup(vela::platform::places::SearchResultGroup::Type group, const char *term, Limit limit);
    qint64 someId();
    const vela::platform::places::Coordinates &someCentre();

    const qint64 m_places;
    PlaceMaker m_maker;
    BareFetch m_bare;
    const vela::platform::places::PlaceManager m_manager;
    const vela::platform::places::InternalPlaceManager m_internal;
    const std::unique_ptr<vela::platform::places::Place> m_stored; ///< For searching and updating.
    std::vector<Question> m_questions;
};

} // namespace bench
