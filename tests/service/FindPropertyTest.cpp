// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"
#include "store/Store.h"
#include "support/NaiveFind.h"

#include <gmock/gmock.h>

#include <iostream>

using namespace finds;

namespace
{

void change(Store &store, Model &model, Chance &chance, int size)
{
    for (int i = 0; i < size + size / 5; ++i) {
        const bool isNew = i < size;
        FoundPlace *const any = isNew ? nullptr : &model.stored[chance.of(model.stored).first];
        const std::shared_ptr<Place> place = chance.place(isNew ? PlaceId::UNDEFINED_PERSISTED_ID : (*any)->id());
        if (isNew)
            store.insert(*place);
        else
            store.update(*place, **any);
        model.stored[place->id()] = place;
        if (!isNew && chance.oneIn(2)) {
            store.remove(place->id());
            model.stored.erase(place->id());
        }
    }
    for (int i = chance.below(9); i > 0; --i) {
        auto term = std::make_shared<Place>();
        term->setName(chance.name() + QString::number(i));
        term->addTag(QLatin1String(InternalTags::RecentSearchTerm));
        term->addTag(QStringLiteral("_search-term_"));
        model.terms.insert(model.terms.begin(), term);
        store.rememberTerm(term->name());
    }
}

/// Hashes of records, with names to be read.
std::vector<std::string> namesOf(const std::vector<std::string> &records)
{
    std::vector<std::string> names;
    for (const std::string &record : records)
        names.push_back(decodePlace(record)->name().toStdString() + " "
                        + std::to_string(std::hash<std::string>()(record)));
    return names;
}

std::vector<std::string> namesOf(const std::vector<FoundPlace> &all, int offset, int count)
{
    std::vector<std::string> records;
    for (int i = offset; i < static_cast<int>(all.size()) && i < offset + count; ++i)
        records.push_back(fullRecordOf(*all[static_cast<std::size_t>(i)]));
    return namesOf(records);
}

Page pageOf(Store &store, const Providers &providers, const Query &query, bool external, Plan plan)
{
    Page page;
    EXPECT_EQ(Finder(store, {providers}, query, external, Deadline::max(), plan).find(page), 0);
    return page;
}

} // namespace

/// PLACES_FINDS says how many finds are compared, PLACES_SEED with which seed to begin.
TEST(AFind, GivesByEveryPlanWhatALookAtEveryPlaceGives)
{
    constexpr int SIZES[] = {300, 0, 50, 1, 200, 50, 300, 50, 200, 3300};
    const int wanted = std::max(4000, qEnvironmentVariableIntValue("PLACES_FINDS"));
    int compared = 0;
    for (int seed = qEnvironmentVariableIntValue("PLACES_SEED"); compared < wanted; ++seed) {
        Chance chance(static_cast<unsigned>(seed));
        std::timed_mutex lock;
        Store store(":memory:", lock);
        Model model;
        store.write([&] {
            change(store, model, chance, SIZES[static_cast<unsigned>(seed) % std::size(SIZES)]);
            return true;
        });
        auto guide = std::make_unique<Guide>(chance);
        std::vector<std::unique_ptr<PlaceProvider>> guides;
        if (chance.oneIn(2)) {
            model.guide = guide.get();
            guides.push_back(std::move(guide));
        }
        const Providers providers(std::move(guides));
        for (int i = 0; i < 50 && compared < wanted; ++i) {
            Query query;
            query.rule = chance.rule();
            query.sort = chance.sort();
            const bool external = chance.oneIn(4);
            const std::vector<FoundPlace> all = Look(model, query, external).find();
            const auto size = static_cast<int>(all.size());
            query.count = chance.below(chance.oneIn(5) ? size + 2 : 12);
            query.offset = chance.oneIn(2) ? 0 : chance.below(size + 3);
            SCOPED_TRACE("PLACES_SEED=" + std::to_string(seed) + ", find " + std::to_string(i) + ": "
                         + std::to_string(query.count) + " from " + std::to_string(query.offset)
                         + (external ? ", external" : "") + "\n" + textOf(query.rule) + "\n" + textOf(query.sort));
            for (const Plan plan : {Plan::Best, Plan::ByCondition, Plan::ByOrder}) {
                Query next = query;
                const Page page = pageOf(store, providers, next, external, plan);
                const auto end = static_cast<int>(page.records.size()) + query.offset;
                ASSERT_EQ(namesOf(page.records), namesOf(all, query.offset, query.count)) << static_cast<int>(plan);
                ASSERT_EQ(page.hasMore, size > query.offset + query.count);
                next.providerPrimaryIndex = page.next.batch;
                next.providerSecondaryIndex = page.next.position;
                if (page.next.batch >= 0) {
                    ASSERT_EQ(namesOf(pageOf(store, providers, next, external, plan).records),
                              namesOf(all, end, query.count));
                }
                ++compared;
            }
            int count = -1;
            ASSERT_EQ(Finder(store, {providers}, query, external, Deadline::max()).count(count), 0);
            ASSERT_EQ(count, size);
            ++compared;
        }
    }
    std::cout << compared << " finds compared\n";
}
