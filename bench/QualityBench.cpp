// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "quality/Asker.h"
#include "quality/HostileTerms.h"
#include "quality/MadePlaces.h"
#include "quality/QualityReport.h"
#include "quality/QuestionMaker.h"
#include "quality/ServedFiles.h"
#include "quality/WrittenQuestions.h"
#include "service/OneProcessor.h"

#include <CLI/CLI.hpp>

#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <iterator>

// How well searches find the intended place: queries as people type them, to services with the places of some files.

using namespace bench;
using vela::platform::places::SearchResultGroup;

namespace
{

constexpr ShownGroups OF_THE_GAZETTEER{SearchResultGroup::Suggestions, SearchResultGroup::Addresses, "suggestions",
                                       "box"};
constexpr ShownGroups OF_THE_STORE{SearchResultGroup::Local, SearchResultGroup::NonContacts, "local", "box"};

/// Prefix of the sets for the file of names.
constexpr char NAMES_PREFIX[] = "names: ";

QString sourceFile(const char *path)
{
    return QStringLiteral(SOURCES "/") + QLatin1String(path);
}

std::vector<AskedSet> askAll(const QStringList &files, const std::vector<QuestionSet> &sets, bool areStored)
{
    const ServedFiles served(files, areStored);
    const Asker asker(areStored ? OF_THE_STORE : OF_THE_GAZETTEER);
    asker.waitUntilReady();
    std::vector<AskedSet> asked;
    for (const QuestionSet &set : sets) {
        if (!set.questions.empty())
            asked.push_back(asker.ask(set));
    }
    return asked;
}

template <typename List>
void append(List &list, List &&more)
{
    std::move(more.begin(), more.end(), std::back_inserter(list));
}

struct World
{
    QStringList files;
    int made = 0; ///< Generated places in addition to those of the files.
    bool withHostile = false;
};

std::vector<AskedSet> askOfTheWorld(const World &world, std::uint64_t seed, bool areStored)
{
    const KnownPlaces places(world.files);
    QuestionMaker maker(places, seed);
    std::vector<QuestionSet> sets = maker.byName();
    append(sets, maker.byOtherNames());
    sets.push_back(readQuestions(sourceFile("bench/quality/questions.tsv"), places));
    if (world.withHostile)
        append(sets, hostileTerms(places, seed));
    QStringList files = world.files;
    const QTemporaryDir folder;
    if (world.made > 0) {
        files.append(folder.filePath(QStringLiteral("made.geojson")));
        writeMadePlaces(files.last(), places, world.made, seed);
    }
    return askAll(files, sets, areStored);
}

/// Adds the airports to the cities of the file, so that names have competitors.
std::vector<AskedSet> askOfNames(const QString &airports, std::uint64_t seed, bool areStored)
{
    const QString names = sourceFile("bench/quality/names.geojson");
    const KnownPlaces places({names});
    std::vector<QuestionSet> sets = QuestionMaker(places, seed).byOtherNames();
    for (QuestionSet &set : sets)
        set.name.prepend(QLatin1String(NAMES_PREFIX));
    return askAll({names, airports}, sets, areStored);
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("Measures how often a search shows the intended place in the first row and in the first five rows.",
                 "quality_bench");
    std::vector<std::string> more;
    app.add_option("files", more, "GeoJSON files in addition to the sample data")->check(CLI::ExistingFile);
    std::uint64_t seed = 1;
    app.add_option("--seed", seed, "Seed of the questions")->capture_default_str();
    int made = 0;
    app.add_option("--places", made, "Number of generated places in addition to those of the files")
        ->check(CLI::NonNegativeNumber);
    bool withHostile = false;
    app.add_flag("--hostile", withHostile, "Also print the times of the most expensive terms");
    bool areStored = false;
    app.add_flag("--stored", areStored, "Import the places and search the stored ones");
    bool asMarkdown = false;
    app.add_flag("--markdown", asMarkdown, "Print the table as Markdown");
    bool withMisses = false;
    app.add_flag("--misses", withMisses, "Also print each question whose place is not in the first five rows");
    CLI11_PARSE(app, argc, argv);

    const QString airports = sourceFile("examples/data/airports.geojson");
    World world;
    world.files = QStringList{airports, sourceFile("examples/data/cities.geojson")};
    world.made = made;
    world.withHostile = withHostile;
    for (const std::string &file : more)
        world.files.append(QString::fromStdString(file));
    const OneProcessor oneProcessor;
    std::vector<AskedSet> asked = askOfTheWorld(world, seed, areStored);
    append(asked, askOfNames(airports, seed, areStored));
    const auto hostile =
        std::stable_partition(asked.begin(), asked.end(), [](const AskedSet &set) { return set.hasMeant; });
    const std::vector<AskedSet> timed(hostile, asked.end());
    asked.erase(hostile, asked.end());
    const ShownGroups &groups = areStored ? OF_THE_STORE : OF_THE_GAZETTEER;
    printQuality(asked, groups, asMarkdown);
    if (withHostile)
        printTimes(timed, groups, asMarkdown);
    if (withMisses)
        printMisses(asked);
    return EXIT_SUCCESS;
}
