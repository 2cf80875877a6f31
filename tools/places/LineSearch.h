// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "LiveSearch.h"
#include "Signals.h"

#include <QtCore/QEventLoop>

#include <cstdio>

#include <unistd.h>

namespace tool
{

/// A search by lines, for a terminal that cannot move its cursor and for input that is no terminal. Each line of
/// standard input is searched for, and the results are listed with numbers. A number chooses, an empty line chooses the
/// first result, the end of the input leaves. The list goes to the terminal of standard output, else to standard error.
class LineSearch
{
public:
    explicit LineSearch(const SearchOptions &options);

    /// Reads lines. Done when a place was chosen.
    ExitStatus run();

    /// The place that was chosen; null when none was.
    [[nodiscard]] ResultList::PlacePointer chosen() const { return m_chosen; }

private:
    void takeInput();
    /// Takes the lines that are there, up to one that starts a search.
    void takeLines();
    void take(const QString &line);
    void choose(const ResultList::PlacePointer &result);
    void list();
    void ask(const char *prompt);
    void end(ExitStatus status);

    // Before the search, whose threads must not take signals.
    const Signals m_signals;
    LiveSearch m_search;
    QEventLoop m_loop;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_input; ///< Read, but not taken.
    bool m_isAtEnd = false;
    bool m_isOver = false;
    std::FILE *const m_output;
    ResultList::PlacePointer m_chosen;
};

} // namespace tool
