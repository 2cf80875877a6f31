// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "LineSearch.h"

#include "PlaceRows.h"
#include "TerminalText.h"

#include <places/AbstractPlace.h>

#include <algorithm>

namespace tool
{

using namespace places;

namespace
{

/// A longer input without a line feed counts as a line; the service refuses this term.
constexpr int LONGEST_LINE = 64 * 1024;

} // namespace

LineSearch::LineSearch(const SearchOptions &options)
    : m_signals({SIGINT, SIGTERM, SIGHUP, SIGQUIT},
                [this](int signal) { end(static_cast<ExitStatus>(Interrupted + signal)); })
    , m_search(options,
               [this] {
                   if (m_search.isSearching())
                       return;
                   list();
                   takeLines();
               })
    , m_output(::isatty(STDOUT_FILENO) ? stdout : stderr)
{}

ExitStatus LineSearch::run()
{
    QObject::connect(&m_notifier, &QSocketNotifier::activated, &m_loop, [this] { takeInput(); });
    if (m_search.options().term.isEmpty())
        ask("Search: ");
    else
        take(m_search.options().term);
    return static_cast<ExitStatus>(m_loop.exec());
}

void LineSearch::takeInput()
{
    char bytes[4096];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    m_isAtEnd = count <= 0;
    if (!m_isAtEnd)
        m_input.append(bytes, static_cast<int>(count));
    else if (!m_input.isEmpty())
        m_input.append('\n');
    takeLines();
}

void LineSearch::takeLines()
{
    for (int end = m_input.indexOf('\n'); !m_search.isSearching() && !m_isOver; end = m_input.indexOf('\n')) {
        if (end < 0 && m_input.size() > LONGEST_LINE)
            end = m_input.size();
        if (end < 0)
            break;
        const QString line = QString::fromUtf8(m_input.left(end)).trimmed();
        m_input.remove(0, end + 1);
        if (!::isatty(STDIN_FILENO))
            std::fputc('\n', m_output); // echo like a terminal
        take(line);
    }
    const bool isWaiting = m_search.isSearching() || m_isOver;
    m_notifier.setEnabled(!isWaiting && !m_isAtEnd);
    if (m_isAtEnd && !isWaiting)
        end(Failed);
}

void LineSearch::take(const QString &line)
{
    const QVector<ResultList::PlacePointer> choices = m_search.results().choices();
    bool isNumber = false;
    const int number = line.isEmpty() ? 1 : line.toInt(&isNumber);
    m_isToSave = line.startsWith(QLatin1Char('+'));
    if ((line.isEmpty() || isNumber) && number > 0 && number <= choices.size())
        return choose(choices[number - 1]);
    if (line.isEmpty())
        return ask("Search: ");
    m_search.searchTerm(line);
}

void LineSearch::choose(const ResultList::PlacePointer &result)
{
    switch (kindOf(*result)) {
    case ResultKind::Place:
        m_chosen = result;
        return end(Done);
    case ResultKind::Term:
        return m_search.searchTerm(result->name());
    case ResultKind::Category:
        return m_search.searchCategory(result->name());
    }
}

void LineSearch::list()
{
    if (!m_search.category().isEmpty())
        std::fprintf(m_output, "Category: %s\n", qUtf8Printable(printable(m_search.categoryTitle())));
    RowFormat format{m_search.options().centre, terminalColumns(::fileno(m_output)), false, 1};
    for (const ResultList::Group &group : m_search.results().groups()) {
        const QStringList rows = rowsOf(placesOf(group.result), format);
        format.firstNumber += rows.size();
        if (!rows.isEmpty() || group.error != Error::Success)
            std::fprintf(m_output, "%s\n", qUtf8Printable(titleOf(group.result)));
        if (group.error != Error::Success)
            std::fprintf(m_output, "  %s\n", qUtf8Printable(textOf(group.error, group.result.reason())));
        for (const QString &row : rows)
            std::fprintf(m_output, "%s\n", qUtf8Printable(row));
    }
    const bool isFound = format.firstNumber > 1;
    if (!isFound && m_search.problem().isEmpty())
        std::fprintf(m_output, "nothing found\n");
    ask(isFound ? "Number (+ before it saves), or another search: " : "Search: ");
}

void LineSearch::ask(const char *prompt)
{
    std::fputs(prompt, m_output);
    std::fflush(m_output);
}

void LineSearch::end(ExitStatus status)
{
    m_isOver = true;
    if (status != Done)
        std::fputc('\n', m_output); // ends the line of the prompt
    m_loop.exit(status);
}

} // namespace tool
