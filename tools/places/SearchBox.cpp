// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "SearchBox.h"

#include "Commands.h"
#include "Screen.h"
#include "Signals.h"
#include "TerminalText.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTextBoundaryFinder>
#include <QtCore/QVector>

#include <algorithm>
#include <memory>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{

using namespace places;

namespace
{

using PlacePointer = QSharedPointer<AbstractPlace>;

/// A search term among the results: a name without a place. Whoever chooses it wants to search for it.
bool isTerm(const AbstractPlace &place)
{
    return !place.isPersisted() && !place.hasPhysicalLocation() && !place.hasAuxiliaryData();
}

/// What was found in each group, and which of the places is chosen. Results of the search before stay to be seen until
/// those of the new one arrive, but cannot be chosen.
class ResultList
{
public:
    struct Line
    {
        QString text;
        Style style = Style::Plain;
    };

    explicit ResultList(const QList<SearchResultGroup::Type> &groups)
    {
        for (const SearchResultGroup::Type group : groups)
            m_groups.append({group, {}, Error::Success, false});
    }

    void startSearch()
    {
        for (Group &group : m_groups)
            group.isFresh = false;
        m_chosen.reset();
    }

    void take(Error::Type error, const SearchResult &result)
    {
        for (Group &group : m_groups) {
            if (group.group == result.source())
                group = {group.group, result, error, true};
        }
    }

    /// The chosen place: the first one unless the user chose another; null when there is none.
    [[nodiscard]] PlacePointer chosen() const
    {
        const QVector<PlacePointer> places = choices();
        return m_chosen || places.isEmpty() ? m_chosen : places.first();
    }

    /// Chooses the place so many rows further down, or as far as it goes.
    void move(int rows)
    {
        const QVector<PlacePointer> places = choices();
        if (!places.isEmpty())
            m_chosen = places[qBound(0, places.indexOf(chosen()) + rows, places.size() - 1)];
    }

    /// The lines to be seen in a window of so many rows, so that the chosen place is among them.
    [[nodiscard]] QVector<Line> lines(int height)
    {
        QVector<Line> lines;
        int chosenLine = 0;
        for (const Group &group : qAsConst(m_groups))
            addLines(group, lines, chosenLine);
        m_top = qBound(std::max(0, chosenLine - height + 1), m_top, chosenLine);
        if (chosenLine < height)
            m_top = 0; // with the title above
        return lines.mid(m_top, height);
    }

private:
    struct Group
    {
        SearchResultGroup::Type group = SearchResultGroup::None;
        SearchResult result;
        Error::Type error = Error::Success;
        bool isFresh = false;
    };

    [[nodiscard]] QVector<PlacePointer> choices() const
    {
        QVector<PlacePointer> places;
        for (const Group &group : m_groups) {
            if (group.isFresh)
                places += group.result.result().toVector();
        }
        return places;
    }

    void addLines(const Group &group, QVector<Line> &lines, int &chosenLine) const
    {
        const QList<PlacePointer> places = group.result.result();
        if (places.isEmpty() && group.error == Error::Success)
            return;
        lines.append({titleOf(group.result), group.isFresh ? Style::Title : Style::Faint});
        if (group.error != Error::Success)
            lines.append({QStringLiteral("  ") + textOf(group.error), Style::Faint});
        const PlacePointer marked = chosen();
        for (const PlacePointer &place : places) {
            if (place == marked)
                chosenLine = lines.size();
            const Style style = place == marked ? Style::Chosen : Style::Plain;
            lines.append({rowOf(*place), group.isFresh ? style : Style::Faint});
        }
    }

    QVector<Group> m_groups;
    PlacePointer m_chosen; // null until the user moves
    int m_top = 0;
};

/// The line that the user edits, and below it what is found.
class SearchBox
{
public:
    SearchBox(const SearchOptions &options, Screen &screen)
        : m_options(options)
        , m_screen(screen)
        , m_text(options.term)
        , m_results(options.groups)
    {}

    /// Lets the user type. Done when a place was chosen.
    ExitStatus run()
    {
        const QSocketNotifier keys(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&keys, &QSocketNotifier::activated, &m_loop, [this] { takeKeys(); });
        QObject::connect(m_manager.get(), &SearchManager::resultAvailable, &m_loop,
                         [this](Error::Type error, const SearchResult &result, bool last) {
                             m_results.take(error, result);
                             m_isSearching = !last;
                             draw();
                         });
        startSearch();
        draw();
        const auto status = static_cast<ExitStatus>(m_loop.exec());
        // Its end would wait for what the service still owes. Nobody wants that any more.
        QObject::disconnect(m_manager.release(), nullptr, &m_loop, nullptr);
        return status;
    }

    /// The place that was chosen; null when none was.
    [[nodiscard]] PlacePointer chosen() const { return m_chosen; }

private:
    void takeSignal(int signal)
    {
        if (signal != SIGWINCH)
            return end(static_cast<ExitStatus>(Interrupted + signal));
        m_screen.resize();
        draw();
    }

    /// Takes all keys that are there, so that a burst of them becomes one search.
    void takeKeys()
    {
        int waiting = 0;
        if (::ioctl(STDIN_FILENO, FIONREAD, &waiting) != 0 || waiting == 0)
            return end(Failed); // the terminal is gone
        const QString before = m_text;
        for (std::optional<Key> key = m_screen.nextKey(); key && !m_isOver; key = m_screen.nextKey())
            take(*key);
        if (m_isOver)
            return;
        if (m_text != before)
            startSearch();
        draw();
    }

    void take(const Key &key)
    {
        switch (key.type) {
        case Key::Text:
            m_text += key.text;
            break;
        case Key::Backspace:
            eraseCharacter();
            break;
        case Key::EraseWord:
            while (m_text.endsWith(QLatin1Char(' ')))
                m_text.chop(1);
            m_text.truncate(m_text.lastIndexOf(QLatin1Char(' ')) + 1);
            break;
        case Key::EraseLine:
            m_text.clear();
            break;
        case Key::Up:
            m_results.move(-1);
            break;
        case Key::Down:
            m_results.move(1);
            break;
        case Key::PageUp:
            m_results.move(-listHeight());
            break;
        case Key::PageDown:
            m_results.move(listHeight());
            break;
        case Key::Enter:
            choose();
            break;
        case Key::Redraw:
            m_screen.redraw();
            break;
        case Key::Leave:
            end(Failed);
            break;
        case Key::Other:
            break;
        }
    }

    /// Erases what the user sees as one character, accents and all.
    void eraseCharacter()
    {
        QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, m_text);
        finder.toEnd();
        m_text.truncate(std::max(0, finder.toPreviousBoundary()));
    }

    void choose()
    {
        const PlacePointer place = m_results.chosen();
        if (!place)
            return;
        if (isTerm(*place)) {
            m_text = place->name();
            return;
        }
        m_chosen = place;
        end(Done);
    }

    void end(ExitStatus status)
    {
        m_isOver = true;
        m_loop.exit(status);
    }

    void startSearch()
    {
        m_isSearching = true;
        m_results.startSearch();
        tool::startSearch(*m_manager, m_options, m_text, ++m_searchId);
    }

    [[nodiscard]] int listHeight() const { return std::max(1, m_screen.rows() - 2); }

    void draw()
    {
        m_screen.clear();
        const QString prompt = QStringLiteral("Search: ");
        QString shown = printable(m_text);
        while (columnsOf(prompt + shown) >= m_screen.columns() && !shown.isEmpty())
            shown.remove(0, 1);
        m_screen.write(0, prompt + shown, Style::Plain);
        int row = 1;
        for (const ResultList::Line &line : m_results.lines(listHeight()))
            m_screen.write(row++, line.text, line.style);
        m_screen.write(m_screen.rows() - 1, hint(), Style::Faint);
        m_screen.show(0, columnsOf(prompt + shown));
    }

    [[nodiscard]] QString hint() const
    {
        if (m_isSearching)
            return QStringLiteral("searching ...");
        return m_results.chosen() ? QStringLiteral("Up and Down choose, Enter shows, Escape leaves")
                                  : QStringLiteral("nothing found");
    }

    const SearchOptions &m_options;
    Screen &m_screen;
    // Before the manager, whose threads are not to take signals.
    const Signals m_signals{{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH}, [this](int signal) { takeSignal(signal); }};
    std::unique_ptr<SearchManager> m_manager = std::make_unique<SearchManager>();
    QEventLoop m_loop;
    QString m_text;
    ResultList m_results;
    PlacePointer m_chosen;
    bool m_isOver = false;
    int m_searchId = 0;
    bool m_isSearching = false;
};

ExitStatus show(const AbstractPlace &chosen, Form form)
{
    Error::Type error = Error::Success;
    const std::unique_ptr<Place> place(InternalPlaceManager().getPlace(&chosen, &error));
    if (place)
        printPlace(*place, form);
    return report(error, chosen.name());
}

} // namespace

ExitStatus searchAsYouType(const SearchOptions &options, Context &context)
{
    PlacePointer chosen;
    ExitStatus status = Done;
    {
        Screen screen;
        if (!screen.problem().isEmpty()) {
            complain(QStringLiteral("--as-you-type"), screen.problem());
            return WrongUse;
        }
        SearchBox box(options, screen);
        status = box.run();
        chosen = box.chosen();
    }
    context.leaveAtOnce = true;
    return status == Done ? show(*chosen, context.form) : status;
}

} // namespace tool
