// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "SearchBox.h"

#include "Commands.h"
#include "LineEditor.h"
#include "LineSearch.h"
#include "PlaceRows.h"
#include "ResultSaver.h"
#include "Screen.h"
#include "Signals.h"
#include "TerminalText.h"

#include <places/InternalPlaceManager.h>
#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>

#include <QtCore/QEventLoop>
#include <QtCore/QVector>

#include <algorithm>
#include <map>
#include <memory>

#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

using PlacePointer = ResultList::PlacePointer;

/// The line that the user edits, with the results below it.
class SearchBox
{
public:
    SearchBox(const SearchOptions &options, Screen &screen)
        : m_screen(screen)
        , m_search(options, [this] { takeAnswer(); })
        , m_line(options.term)
    {}

    /// Runs until a place is chosen (Done) or the user leaves.
    ExitStatus run()
    {
        const QSocketNotifier keys(STDIN_FILENO, QSocketNotifier::Read);
        QObject::connect(&keys, &QSocketNotifier::activated, &m_loop, [this] { takeKeys(); });
        m_search.searchTerm(m_line.text());
        draw();
        return static_cast<ExitStatus>(m_loop.exec());
    }

    /// The place that was chosen; null when none was.
    [[nodiscard]] PlacePointer chosen() const { return m_chosen; }
    /// True when the chosen place is to be saved, not shown.
    [[nodiscard]] bool isToSave() const { return m_isToSave; }

private:
    void takeSignal(int signal)
    {
        if (signal == SIGTSTP)
            m_screen.suspend();
        else if (signal == SIGWINCH)
            m_screen.resize();
        else
            return end(static_cast<ExitStatus>(Interrupted + signal));
        draw();
    }

    /// Takes all available keys, so that a burst of keys starts one search.
    void takeKeys()
    {
        int waiting = 0;
        if (::ioctl(STDIN_FILENO, FIONREAD, &waiting) != 0 || waiting == 0)
            return end(Failed); // the terminal is closed
        m_notice.clear();
        for (std::optional<Key> key = m_screen.nextKey(); key && !m_isOver; key = m_screen.nextKey())
            take(*key);
        if (m_isOver)
            return;
        if (m_isEdited)
            m_search.searchTerm(m_line.text());
        m_isEdited = false;
        draw();
    }

    void take(const Key &key)
    {
        if (!takeEdit(key) && !takeCursor(key.type))
            takeCommand(key.type);
    }

    /// Changes the line. Earlier results no longer match it.
    bool takeEdit(const Key &key)
    {
        static const std::map<Key::Type, void (LineEditor::*)()> ERASERS{
            {Key::Backspace, &LineEditor::eraseLeft},
            {Key::Delete, &LineEditor::eraseRight},
            {Key::EraseWord, &LineEditor::eraseWord},
            {Key::EraseLine, &LineEditor::eraseToStart},
        };
        const auto eraser = ERASERS.find(key.type);
        if (key.type != Key::Text && eraser == ERASERS.end())
            return false;
        const QString before = m_line.text();
        if (key.type == Key::Text)
            m_line.insert(key.text);
        else if (m_search.category().isEmpty())
            (m_line.*eraser->second)();
        if (m_line.text() != before || !m_search.category().isEmpty())
            invalidate();
        return true;
    }

    /// Moves the cursor in the line.
    bool takeCursor(Key::Type key)
    {
        static const std::map<Key::Type, void (LineEditor::*)()> MOVES{
            {Key::Left, &LineEditor::moveLeft},
            {Key::Right, &LineEditor::moveRight},
            {Key::Home, &LineEditor::moveToStart},
            {Key::End, &LineEditor::moveToEnd},
        };
        const auto move = MOVES.find(key);
        if (move == MOVES.end())
            return false;
        (m_line.*move->second)();
        return true;
    }

    void takeCommand(Key::Type key)
    {
        switch (key) {
        case Key::Up:
            return move(-1);
        case Key::Down:
            return move(1);
        case Key::PageUp:
            return move(-listHeight());
        case Key::PageDown:
            return move(listHeight());
        case Key::Enter:
        case Key::Save:
            m_isToSave = key == Key::Save;
            m_isEnterWaiting = true;
            return choose();
        case Key::Redraw:
            return m_screen.redraw();
        case Key::Leave:
            return m_search.category().isEmpty() ? end(Failed) : invalidate();
        default:
            return;
        }
    }

    /// Searches for the line once all available keys are taken. Drops keys that wait for an answer.
    void invalidate()
    {
        m_search.results().makeStale();
        m_isEdited = true;
        m_isEnterWaiting = false;
        m_waitingRows = 0;
    }

    void move(int rows)
    {
        if (!m_search.results().move(rows))
            m_waitingRows += rows;
    }

    void takeAnswer()
    {
        ResultList &results = m_search.results();
        if (m_waitingRows != 0 && results.isFirstKnown() && results.move(m_waitingRows))
            m_waitingRows = 0;
        if (m_isEnterWaiting)
            choose();
        if (!m_search.isSearching())
            m_isEnterWaiting = false; // nothing is found
        if (!m_isOver)
            draw();
    }

    /// Chooses when the choice is known; otherwise the next answer does.
    void choose()
    {
        const PlacePointer place = m_search.results().chosen();
        if (!place)
            return;
        m_isEnterWaiting = false;
        const ResultKind kind = kindOf(*place);
        if (m_isToSave && kind != ResultKind::Place) {
            m_notice = QStringLiteral("only places can be saved; Enter searches for this");
            return;
        }
        switch (kind) {
        case ResultKind::Place:
            m_chosen = place;
            return end(Done);
        case ResultKind::Term:
            m_line.setText(place->name());
            return m_search.searchTerm(place->name());
        case ResultKind::Category:
            return m_search.searchCategory(place->name());
        }
    }

    void end(ExitStatus status)
    {
        m_isOver = true;
        m_loop.exit(status);
    }

    [[nodiscard]] int listHeight() const { return std::max(1, m_screen.rows() - 2); }

    void draw()
    {
        m_screen.clear();
        const bool isCategory = !m_search.category().isEmpty();
        const QString prompt = isCategory ? QStringLiteral("Category: ") : QStringLiteral("Search: ");
        const LineEditor::View line =
            isCategory ? LineEditor(m_search.categoryTitle()).view(lineWidth(prompt)) : m_line.view(lineWidth(prompt));
        m_screen.write(0, prompt + line.text, Style::Plain);
        drawList();
        m_screen.write(m_screen.rows() - 1, hint(), Style::Faint);
        m_screen.show(0, columnsOf(prompt) + line.cursor);
    }

    [[nodiscard]] int lineWidth(const QString &prompt) const
    {
        return std::max(1, m_screen.columns() - columnsOf(prompt));
    }

    /// Draws the lines that fit, with the chosen place among them.
    void drawList()
    {
        QVector<Line> lines;
        int chosenLine = 0;
        for (const ResultList::Group &group : m_search.results().groups())
            addLines(group, lines, chosenLine);
        const int height = listHeight();
        m_top = qBound(std::max(0, chosenLine - height + 1), m_top, chosenLine);
        if (chosenLine < height)
            m_top = 0; // show the title above it
        int row = 1;
        const auto shown = lines.mid(m_top, height);
        for (const Line &line : shown)
            m_screen.write(row++, line.text, line.style);
    }

    struct Line
    {
        QString text;
        Style style = Style::Plain;
    };

    void addLines(const ResultList::Group &group, QVector<Line> &lines, int &chosenLine) const
    {
        const PlaceList places = placesOf(group.result);
        if (places.isEmpty() && group.error == Error::Success)
            return;
        lines.append({titleOf(group.result), group.isFresh ? Style::Title : Style::Faint});
        if (group.error != Error::Success)
            lines.append({QStringLiteral("  ") + textOf(group.error, group.result.reason()), Style::Faint});
        const PlacePointer chosen = m_search.results().chosen();
        const QStringList rows = rowsOf(places, {m_search.options().centre, m_screen.columns(), false});
        for (int i = 0; i < rows.size(); ++i) {
            const bool isChosen = places[i] == chosen.data();
            if (isChosen)
                chosenLine = lines.size();
            const Style style = isChosen ? Style::Chosen : Style::Plain;
            lines.append({rows[i], group.isFresh ? style : Style::Faint});
        }
    }

    [[nodiscard]] QString hint() const
    {
        if (!m_notice.isEmpty())
            return m_notice;
        if (m_search.isSearching() && m_isEnterWaiting)
            return m_isToSave ? QStringLiteral("searching ... saves when the answer is there")
                              : QStringLiteral("searching ... Enter waits for the answer");
        if (m_search.isSearching())
            return QStringLiteral("searching ...");
        if (!m_search.results().chosen())
            return m_search.problem().isEmpty() ? QStringLiteral("nothing found") : m_search.problem();
        return m_search.category().isEmpty()
                   ? QStringLiteral("Up and Down choose, Enter shows, Ctrl-S saves, Escape leaves")
                   : QStringLiteral("Up and Down choose, Enter shows, Ctrl-S saves, Escape goes back");
    }

    Screen &m_screen;
    // Declared before the search, whose threads must not receive signals.
    const Signals m_signals{{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH, SIGTSTP},
                            [this](int signal) { takeSignal(signal); }};
    LiveSearch m_search;
    QEventLoop m_loop;
    LineEditor m_line;
    bool m_isEdited = false;       ///< Changed since the last search.
    bool m_isEnterWaiting = false; ///< Enter or Ctrl-S was pressed before the choice is known.
    bool m_isToSave = false;       ///< It was Ctrl-S.
    QString m_notice;              ///< Shown until the next key.
    int m_waitingRows = 0;         ///< Moves that wait for a place.
    int m_top = 0;                 ///< First visible line of the list.
    PlacePointer m_chosen;
    bool m_isOver = false;
};

ExitStatus show(const AbstractPlace &chosen, Form form)
{
    Error::Type error = Error::Success;
    // A stored header hands its search term along, which then becomes recent.
    const auto *header = chosen.isPersisted() ? dynamic_cast<const PlaceHeader *>(&chosen) : nullptr;
    const std::unique_ptr<Place> place(header ? PlaceManager().getPlace(header, &error)
                                              : InternalPlaceManager().getPlace(&chosen, &error));
    if (place)
        printPlace(*place, form);
    return report(error, chosen.name());
}

} // namespace

ExitStatus searchAsYouType(const SearchOptions &options, Context &context)
{
    PlacePointer chosen;
    bool isToSave = false;
    ExitStatus status = Done;
    const auto choose = [&](auto &&search) {
        status = search.run();
        chosen = search.chosen();
        isToSave = search.isToSave();
    };
    {
        Screen screen;
        if (screen.isUsable())
            choose(SearchBox(options, screen));
        else
            choose(LineSearch(options));
    }
    context.exitWithoutCleanup = true;
    if (status != Done)
        return status;
    return isToSave ? saveResults({chosen.get()}, context) : show(*chosen, context.form);
}

} // namespace tool
