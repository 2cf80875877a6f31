// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "service/Report.h"
#include "service/SourceFiles.h"

#include <CLI/CLI.hpp>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>

// How long a places service takes to answer, by the number of stored places: for every question the times of a client
// that uses the library, against a fetch by id in the same run.

using namespace bench;

namespace
{

constexpr int GAZETTEER_PLACES = 20000;
constexpr int CONTACTS = 500;
/// Smallest store that growth is measured from: below it, what is the same for every store counts for too much.
constexpr int GROWTH_FROM = 138000;

void run(const std::vector<int> &counts, bool withPostgres, bool asMarkdown)
{
    const QString stores = QStringLiteral(STORES);
    QDir().mkpath(stores);
    const QTemporaryDir sources;
    const QString gazetteer = sources.filePath(QStringLiteral("gazetteer.geojson"));
    const QString contacts = sources.filePath(QStringLiteral("contacts"));
    writeGazetteer(gazetteer, GAZETTEER_PLACES);
    writeContacts(contacts, CONTACTS);

    std::vector<AskedStore> asked;
    for (const int count : counts) {
        auto served = std::make_unique<ServedStore>(makeStore(stores, count), gazetteer, contacts);
        auto questions = std::make_unique<Questions>(*served);
        asked.push_back({std::move(served), std::move(questions)});
    }
    ask(asked);
    for (std::size_t i = 0; i < asked.size(); ++i) {
        OtherMedians other;
        if (withPostgres)
            other = Postgres(counts[i]).medians(asked[i].questions->all());
        const bool growsFrom = i > 0 && counts[i - 1] >= GROWTH_FROM;
        printReport(asked[i], growsFrom ? &asked[i - 1] : nullptr, other, asMarkdown);
    }
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app(
        "How long a places service takes to answer, by the number of stored places. A ratio is against a fetch by "
        "id in the same run, growth against the next smaller store from 138,000 places on; the limits hold at "
        "1,000,000.",
        "service_bench");
    std::vector<int> counts = {5000, 138000, 1000000};
    bool asMarkdown = false;
    app.add_option("places", counts, "Numbers of stored places")
        ->check(CLI::Range(100, 10000000))
        ->capture_default_str();
    bool withPostgres = false;
    app.add_flag("--postgres", withPostgres, "Put the same questions to a PostgreSQL server, where one is installed");
    app.add_flag("--markdown", asMarkdown, "Print the tables as Markdown");
    CLI11_PARSE(app, argc, argv);
    std::sort(counts.begin(), counts.end());
    run(counts, withPostgres, asMarkdown);
    return EXIT_SUCCESS;
}
