// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "service/OneProcessor.h"
#include "service/Report.h"
#include "service/Rounds.h"
#include "service/SourceFiles.h"

#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>

// Response times of a places service by the number of stored places: for every query the times of a client that uses
// the library, relative to a fetch by id in the same run.

using namespace bench;

namespace
{

constexpr int GAZETTEER_PLACES = 20000;
constexpr int CONTACTS = 500;
/// Smallest store for measuring growth: in smaller ones constant costs dominate.
constexpr int GROWTH_FROM = 138000;

/// Sources of the services other than the store.
struct SourceFolder
{
    SourceFolder()
    {
        writeGazetteer(gazetteer, GAZETTEER_PLACES);
        writeContacts(contacts, CONTACTS);
    }

    const QTemporaryDir folder;
    const QString gazetteer = folder.filePath(QStringLiteral("gazetteer.geojson"));
    const QString contacts = folder.filePath(QStringLiteral("contacts"));
};

std::vector<AskedStore> makeStores(const std::vector<int> &counts)
{
    const QString folder = QStringLiteral(STORES);
    QDir().mkpath(folder);
    std::vector<AskedStore> stores;
    stores.reserve(counts.size());
    for (const int count : counts)
        stores.push_back({makeStore(folder, count)});
    return stores;
}

void askQuestions(std::vector<AskedStore> &stores, const SourceFolder &sources, bool withPostgres)
{
    const OneProcessor oneProcessor;
    for (AskedStore &store : stores) {
        store.served = std::make_unique<ServedStore>(store.made, sources.gazetteer, sources.contacts);
        store.questions = std::make_unique<Questions>(*store.served);
    }
    ask(stores);
    for (AskedStore &store : stores) {
        if (withPostgres)
            store.other = Postgres(store.made.places).medians();
    }
}

/// Uses a new service that may run on all processors.
void measureReaders(AskedStore &store, const SourceFolder &sources)
{
    const ServedStore served(store.made, sources.gazetteer, sources.contacts);
    served.select();
    store.readersAlone = readConcurrently(store.made.places, false);
    store.readersBesideWriter = readConcurrently(store.made.places, true);
}

void print(const std::vector<AskedStore> &stores, bool asMarkdown)
{
    const AskedStore *smaller = nullptr;
    for (const AskedStore &store : stores) {
        printReport(store, smaller, asMarkdown);
        smaller = store.made.places >= GROWTH_FROM ? &store : nullptr;
    }
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("Measures the response times of a places service by the number of stored places. A ratio is relative "
                 "to a fetch by "
                 "id in the same run, growth against the next smaller store from 138,000 places on; the limits hold at "
                 "1,000,000.",
                 "service_bench");
    std::vector<int> counts = {5000, 138000, 1000000};
    bool asMarkdown = false;
    app.add_option("places", counts, "Numbers of stored places")
        ->check(CLI::Range(100, 10000000))
        ->capture_default_str();
    bool withPostgres = false;
    app.add_flag("--postgres", withPostgres, "Also run the queries on PostgreSQL, if it is installed");
    app.add_flag("--markdown", asMarkdown, "Print the tables as Markdown");
    CLI11_PARSE(app, argc, argv);
    std::sort(counts.begin(), counts.end());
    std::vector<AskedStore> stores = makeStores(counts);
    const SourceFolder sources;
    askQuestions(stores, sources, withPostgres);
    for (AskedStore &store : stores)
        measureReaders(store, sources);
    print(stores, asMarkdown);
    return EXIT_SUCCESS;
}
