// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "LiveSearch.h"
#include "Signals.h"

#include <QtCore/QEventLoop>

#include <cstdio>

#include <unistd.h>

namespace tool
{

/// Line-based search, for terminals that cannot move the cursor and for input that is not a terminal. Each line of
/// standard input is a search, and the results are listed with numbers. A number chooses a result, an empty line
/// chooses the first one, a number after a plus sign saves a result, and the end of the input leaves. The list goes to
/// standard output if that is a terminal, else to standard error.
class LineSearch
{
public:
    explicit LineSearch(const SearchOptions &options);

    /// Reads lines until a place is chosen (Done) or the input ends.
    ExitStatus run();

    /// The chosen place; null when there is none.
    [[nodiscard]] ResultList::PlacePointer chosen() const { return m_chosen; }

    /// True when the chosen place is to be saved, not shown.
    [[nodiscard]] bool isToSave() const { return m_isToSave; }

private:
    void takeInput();
    /// Processes complete lines up to one that starts a search.
    void takeLines();
    void take(const QString &line);
    void choose(const ResultList::PlacePointer &result);
    void list();
    void ask(const char *prompt);
    void end(ExitStatus status);

    // Declared before the search, because its threads must not receive signals.
    const Signals m_signals;
    LiveSearch m_search;
    QEventLoop m_loop;
    QSocketNotifier m_notifier{STDIN_FILENO, QSocketNotifier::Read};
    QByteArray m_input; ///< Bytes that are read but not yet split into lines.
    bool m_isAtEnd = false;
    bool m_isOver = false;
    std::FILE *const m_output;
    ResultList::PlacePointer m_chosen;
    bool m_isToSave = false;
};

} // namespace tool
