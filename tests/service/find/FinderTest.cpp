// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "find/Finder.h"
#include "store/Store.h"
#include "support/NaiveFind.h"

#include <gmock/gmock.h>

#include <QtCore/QTemporaryDir>

#include <iostream>

#include <sqlite3.h>

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
        model.addWords(*place);
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

/// Readable names for hashes of records.
std::vector<std::string> namesOf(const std::vector<std::string> &records)
{
    std::vector<std::string> names;
    for (const std::string &record : records)
        names.push_back(decodePlace(record)->name().toStdString() + " "
                        + std::to_string(std::hash<std::string>()(record)));
    return names;
}

std::vector<std::string> namesOf(const std::vector<FoundPlace> &all, int offset, int count, const QString &term)
{
    std::vector<std::string> records;
    for (int i = offset; i < static_cast<int>(all.size()) && i < offset + count; ++i) {
        const std::unique_ptr<Place> place = decodePlace(fullRecordOf(*all[static_cast<std::size_t>(i)]));
        if (PlacePrivate &data = *PlacePrivate::privateFromPublic(place.get()); data.searchTerm().isEmpty())
            data.setSearchTerm(term);
        records.push_back(fullRecordOf(*place));
    }
    return namesOf(records);
}

Page pageOf(Store &store, const Providers &providers, const Query &query, bool external, Plan plan)
{
    Page page;
    EXPECT_EQ(Finder(store, {providers}, query, external, Deadline::max(), plan).find(page).code, 0);
    return page;
}

} // namespace

/// PLACES_FINDS is the number of compared finds (default 4000), PLACES_SEED the first seed.
TEST(Finder, EveryPlanFindsTheSameAsAFullScan)
{
    constexpr int SIZES[] = {300, 0, 50, 1, 200, 50, 300, 50, 200, 3300};
    const int named = qEnvironmentVariableIntValue("PLACES_FINDS");
    const int wanted = named > 0 ? named : 4000;
    int compared = 0;
    for (int seed = qEnvironmentVariableIntValue("PLACES_SEED"); compared < wanted; ++seed) {
        Chance chance(static_cast<unsigned>(seed));
        StoreShared shared;
        Store store(":memory:", shared);
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
            query.perimeter = orix_places_protocol::Perimeter(chance.oneIn(4) ? 1 + chance.below(2) : 0);
            const bool external = chance.oneIn(4);
            const QString term = typedTerm(query.rule);
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
                ASSERT_EQ(namesOf(page.records), namesOf(all, query.offset, query.count, term))
                    << static_cast<int>(plan);
                ASSERT_EQ(page.hasMore, size > query.offset + query.count);
                next.providerPrimaryIndex = page.next.batch;
                next.providerSecondaryIndex = page.next.position;
                if (page.next.batch >= 0) {
                    ASSERT_EQ(namesOf(pageOf(store, providers, next, external, plan).records),
                              namesOf(all, end, query.count, term));
                }
                ++compared;
            }
            int count = -1;
            ASSERT_EQ(Finder(store, {providers}, query, external, Deadline::max()).count(count).code, 0);
            ASSERT_EQ(count, size);
            ++compared;
        }
    }
    std::cout << compared << " finds compared\n";
}

/// With a damaged index a find may lack places or fail, but it terminates.
TEST(NearestSource, TerminatesForAnyContentOfItsIndex)
{
    const QTemporaryDir folder;
    const std::string path = folder.filePath(QStringLiteral("places.db")).toStdString();
    StoreShared shared;
    Store store(path, shared);
    Model model;
    Chance chance(1);
    store.write([&] {
        change(store, model, chance, 300);
        return true;
    });
    SQLite::Database database(path, SQLite::OPEN_READWRITE);
    SQLite::Statement put(database, "UPDATE position_node SET data = ?2 WHERE nodeno = ?1");
    const auto keep = [&put](int node, const std::string &data) {
        put.reset();
        put.bind(1, node);
        bindBlob(put, 2, data);
        put.exec();
    };
    Query query;
    query.count = 1000;
    query.sort.kind = SortKind::Distance;
    int failed = 0;
    for (int i = 0; i < 400; ++i) {
        const int node = 1 + i % database.execAndGet("SELECT count(*) FROM position_node").getInt();
        SQLite::Statement nodes(database, "SELECT data FROM position_node WHERE nodeno = ?1");
        nodes.bind(1, node);
        ASSERT_TRUE(nodes.executeStep());
        const std::string sound = blobOf(nodes.getColumn(0));
        nodes.reset();
        std::string damaged = sound;
        for (int changes = chance.below(8); changes >= 0; --changes)
            damaged[static_cast<unsigned>(chance.below(chance.oneIn(2) ? 32 : 1200))] =
                static_cast<char>(chance.below(256));
        damaged.resize(static_cast<unsigned>(chance.oneIn(4) ? chance.below(1200) : 1228));
        keep(node, damaged);
        Page page;
        try {
            Finder(store, {Providers({})}, query, false, Deadline::max()).find(page);
            EXPECT_LE(page.records.size(), model.stored.size());
        } catch (const SQLite::Exception &error) {
            EXPECT_EQ(error.getErrorCode(), SQLITE_CORRUPT) << error.what();
            ++failed;
        }
        keep(node, sound);
    }
    EXPECT_GT(failed, 40);
    EXPECT_LT(failed, 360);
}
