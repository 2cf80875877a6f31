// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Search.h"

#include "formats/JsonWriter.h"
#include "Groups.h"
#include "ResultSaver.h"
#include "Signals.h"

#include <places/AbstractPlace.h>

#include <QtCore/QEventLoop>
#include <QtCore/QMap>

#include <cstdio>
#include <memory>
#include <optional>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Takes the groups of one search as they arrive, and prints them or stores some of their results.
class GroupPrinter
{
public:
    GroupPrinter(const SearchOptions &options, const Context &context)
        : m_options(options)
        , m_context(context)
    {}

    void take(Error::Type error, const SearchResult &result)
    {
        if (const ExitStatus status = report(error, QLatin1String(namesOf(result.source()).name), result.reason());
            status != Done)
            m_status = status;
        m_answers.insert(result.source(), {error, result});
        if (m_context.form == Form::Table && m_options.saved.empty())
            printReady();
    }

    ExitStatus finish()
    {
        if (!m_options.saved.empty())
            return m_status == Done ? save() : m_status; // without a group the numbers would be others
        if (m_context.form != Form::Table)
            printJson(toJson());
        else if (m_count == 0 && m_status == Done)
            reportNoneShown(m_hasMore);
        return m_status;
    }

private:
    struct Answer
    {
        Error::Type error = Error::Success;
        SearchResult result;
    };

    /// Prints the groups for which no earlier one is outstanding.
    void printReady()
    {
        while (m_printed < m_options.groups.size() && m_answers.contains(m_options.groups[m_printed]))
            print(m_answers[m_options.groups[m_printed++]].result);
    }

    void print(const SearchResult &result)
    {
        const PlaceList places = placesOf(result);
        m_hasMore = m_hasMore || result.handle().hasMoreData();
        if (places.isEmpty())
            return;
        if (!m_options.row && m_count > 0)
            printLine(QString());
        if (!m_options.row)
            printLine(titleOf(result));
        printRows(places, {m_context.form, m_options.row, m_options.centre}, m_count + 1);
        std::fflush(stdout); // the next group may take long
        m_count += places.size();
    }

    ExitStatus save()
    {
        PlaceList results;
        for (const SearchResultGroup::Type group : m_options.groups)
            results += placesOf(m_answers[group].result);
        PlaceList chosen;
        for (const int number : m_options.saved) {
            if (number > results.size())
                return tool::fail(
                    QStringLiteral("search"),
                    QStringLiteral("there is no result %1 to save; found: %2").arg(number).arg(results.size()));
            chosen.append(results[number - 1]);
        }
        return saveResults(chosen, m_context);
    }

    void writeAnswer(JsonWriter &out, const Answer &answer)
    {
        out.object([&] {
            out.member("group", QLatin1String(namesOf(answer.result.source()).name));
            if (answer.error != Error::Success) {
                out.member("error", qint64(answer.error));
                out.member("problem", textOf(answer.error, answer.result.reason()));
            }
            writeCollection(out, placesOf(answer.result), answer.result.handle().hasMoreData(), m_options.centre);
        });
    }

    /// The groups in the requested order.
    QByteArray toJson()
    {
        JsonWriter out;
        out.object([&] {
            out.key("groups");
            out.array([&] {
                for (const SearchResultGroup::Type group : m_options.groups)
                    writeAnswer(out, m_answers[group]);
            });
        });
        return out.result();
    }

    const SearchOptions &m_options;
    const Context &m_context;
    ExitStatus m_status = Done;
    QMap<SearchResultGroup::Type, Answer> m_answers;
    int m_printed = 0;      ///< Groups.
    int m_count = 0;        ///< Printed results.
    bool m_hasMore = false; ///< In any group.
};

} // namespace

void startSearch(SearchManager &manager, const SearchOptions &options, const QString &term, int searchId)
{
    const auto start = options.withoutFavorites ? &SearchManager::searchNonFavorite : &SearchManager::search;
    (manager.*start)(term, options.centre, searchId, options.groups, 0, options.limit);
}

PlaceList placesOf(const SearchResult &result)
{
    PlaceList places;
    const auto found = result.result();
    for (const QSharedPointer<AbstractPlace> &place : found)
        places.append(place.get());
    return places;
}

QString titleOf(const SearchResult &result)
{
    const QString title = QLatin1String(namesOf(result.source()).title);
    return result.handle().hasMoreData() ? QStringLiteral("%1, the first %2").arg(title).arg(result.result().size())
                                         : title;
}

ExitStatus search(const SearchOptions &options, const Context &context)
{
    std::optional<ExitStatus> interruption;
    QEventLoop loop;
    const Signals signals_({SIGINT, SIGTERM, SIGHUP, SIGQUIT}, [&](int signal) {
        interruption = static_cast<ExitStatus>(Interrupted + signal);
        loop.quit();
    });
    GroupPrinter printer(options, context);
    auto manager = std::make_unique<SearchManager>();
    QObject::connect(manager.get(), &SearchManager::resultAvailable, &loop,
                     [&](Error::Type error, const SearchResult &result, bool last) {
                         printer.take(error, result);
                         if (last)
                             loop.quit();
                     });
    startSearch(*manager, options, options.term, 0);
    loop.exec();
    if (!interruption)
        return printer.finish();
    // Destroying the manager would wait for the service. The process ends by the signal, together with the threads.
    QObject::disconnect(manager.release(), nullptr, &loop, nullptr);
    return *interruption;
}

} // namespace tool
