// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "quality/Asker.h"
#include "quality/QualityReport.h"
#include "quality/QuestionMaker.h"
#include "quality/ServedFiles.h"
#include "quality/WrittenQuestions.h"
#include "service/OneProcessor.h"

#include <CLI/CLI.hpp>

#include <cstdlib>
#include <iterator>

// How well searches find what was meant: questions as people type them, to services that know the places of some files.

using namespace bench;
using vela::platform::places::SearchResultGroup;

namespace
{

constexpr ShownGroups OF_THE_GAZETTEER{SearchResultGroup::Suggestions, SearchResultGroup::Addresses, "suggestions",
                                       "box"};
constexpr ShownGroups OF_THE_STORE{SearchResultGroup::Local, SearchResultGroup::NonContacts, "local", "box"};

/// Prefix of the sets that are asked of the file of names.
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

std::vector<AskedSet> askOfTheWorld(const QStringList &files, std::uint64_t seed, bool areStored)
{
    const KnownPlaces places(files);
    QuestionMaker maker(places, seed);
    std::vector<QuestionSet> sets = maker.byName();
    append(sets, maker.byOtherNames());
    sets.push_back(readQuestions(sourceFile("bench/quality/questions.tsv"), places));
    return askAll(files, sets, areStored);
}

/// The airports are beside the cities of the file, so that a name is not found for want of others.
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
    CLI::App app(
        "How well searches find what was meant: how often the place is in the first row and in the first five.",
        "quality_bench");
    std::vector<std::string> more;
    app.add_option("files", more, "GeoJSON files beside the sample data")->check(CLI::ExistingFile);
    std::uint64_t seed = 1;
    app.add_option("--seed", seed, "Seed of the questions")->capture_default_str();
    bool areStored = false;
    app.add_flag("--stored", areStored, "Import the places, and ask for stored ones");
    bool asMarkdown = false;
    app.add_flag("--markdown", asMarkdown, "Print the table as Markdown");
    bool withMisses = false;
    app.add_flag("--misses", withMisses, "Also print each question whose place is not in the first five rows");
    CLI11_PARSE(app, argc, argv);

    const QString airports = sourceFile("examples/data/airports.geojson");
    QStringList files{airports, sourceFile("examples/data/cities.geojson")};
    for (const std::string &file : more)
        files.append(QString::fromStdString(file));
    const OneProcessor oneProcessor;
    std::vector<AskedSet> asked = askOfTheWorld(files, seed, areStored);
    append(asked, askOfNames(airports, seed, areStored));
    printQuality(asked, areStored ? OF_THE_STORE : OF_THE_GAZETTEER, asMarkdown);
    if (withMisses)
        printMisses(asked);
    return EXIT_SUCCESS;
}
