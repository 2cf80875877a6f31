// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "LiveSearch.h"
#include "Signals.h"

#include <QtCore/QEventLoop>

#include <cstdio>

#include <unistd.h>

namespace tool
{

/// Search by lines, for terminals that cannot move the cursor and for input that is no terminal. Each line of standard
/// input is a search, and the results are listed with numbers. A number chooses a result, an empty line chooses the
/// first one, and the end of the input leaves. The list goes to standard output if it is a terminal, else to standard
/// error. A plus sign before the number has the result saved.
class LineSearch
{
public:
    explicit LineSearch(const SearchOptions &options);

    /// Reads lines until a place is chosen (Done) or the input ends.
    ExitStatus run();

    /// The place that was chosen; null when none was.
    [[nodiscard]] ResultList::PlacePointer chosen() const { return m_chosen; }

    /// True when the chosen place is to be saved, not shown.
    [[nodiscard]] bool isToSave() const { return m_isToSave; }

private:
    void takeInput();
    /// Takes complete lines up to one that starts a search.
    void takeLines();
    void take(const QString &line);
    void choose(const ResultList::PlacePointer &result);
    void list();
    void ask(const char *prompt);
    void end(ExitStatus status);

    // Declared before the search, whose threads must not receive signals.
    const Signals m_signals;
    LiveSearch m_search;
    QEventLoop m_loop;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_input; ///< Bytes that are read but not yet taken as lines.
    bool m_isAtEnd = false;
    bool m_isOver = false;
    std::FILE *const m_output;
    ResultList::PlacePointer m_chosen;
    bool m_isToSave = false;
};

} // namespace tool
