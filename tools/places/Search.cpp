// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Search.h"

#include "formats/JsonWriter.h"
#include "Groups.h"
#include "Signals.h"

#include <places/AbstractPlace.h>

#include <QtCore/QEventLoop>

#include <cstdio>
#include <memory>
#include <optional>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Prints the groups of one search as they arrive.
class GroupPrinter
{
public:
    GroupPrinter(const SearchOptions &options, Form form)
        : m_options(options)
        , m_form(form)
    {}

    void take(Error::Type error, const SearchResult &result)
    {
        if (const ExitStatus status = report(error, QLatin1String(namesOf(result.source()).name), result.reason());
            status != Done)
            m_status = status;
        if (m_form == Form::Table)
            print(result);
        else
            m_answers.append({error, result});
    }

    ExitStatus finish()
    {
        if (m_form != Form::Table)
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

    void print(const SearchResult &result)
    {
        const PlaceList places = placesOf(result);
        m_hasMore = m_hasMore || result.handle().hasMoreData();
        if (places.isEmpty())
            return;
        if (m_count > 0)
            printLine(QString());
        printLine(titleOf(result));
        printRows(places, m_options.centre);
        std::fflush(stdout); // the next group may take long
        m_count += places.size();
    }

    void writeAnswer(JsonWriter &out, const Answer &answer)
    {
        out.object([&] {
            out.member("group", QLatin1String(namesOf(answer.result.source()).name));
            if (answer.error != Error::Success) {
                out.member("error", qint64(answer.error));
                out.member("problem", textOf(answer.error, answer.result.reason()));
            }
            writeCollection(out, placesOf(answer.result), answer.result.handle().hasMoreData());
        });
    }

    /// The groups in the requested order.
    QByteArray toJson()
    {
        JsonWriter out;
        out.object([&] {
            out.key("groups");
            out.array([&] {
                for (const SearchResultGroup::Type group : m_options.groups) {
                    for (const Answer &answer : m_answers) {
                        if (answer.result.source() == group)
                            writeAnswer(out, answer);
                    }
                }
            });
        });
        return out.result();
    }

    const SearchOptions &m_options;
    const Form m_form;
    ExitStatus m_status = Done;
    int m_count = 0;
    bool m_hasMore = false; ///< In any group.
    QList<Answer> m_answers;
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
    for (const QSharedPointer<AbstractPlace> &place : result.result())
        places.append(place.get());
    return places;
}

QString titleOf(const SearchResult &result)
{
    const QString title = QLatin1String(namesOf(result.source()).title);
    return result.handle().hasMoreData() ? QStringLiteral("%1, the first %2").arg(title).arg(result.result().size())
                                         : title;
}

ExitStatus search(const SearchOptions &options, Form form)
{
    std::optional<ExitStatus> interruption;
    QEventLoop loop;
    const Signals signals_({SIGINT, SIGTERM, SIGHUP, SIGQUIT}, [&](int signal) {
        interruption = static_cast<ExitStatus>(Interrupted + signal);
        loop.quit();
    });
    GroupPrinter printer(options, form);
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
