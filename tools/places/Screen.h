// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QTextCodec>

#include <cstdio>
#include <memory>
#include <optional>

namespace tool
{

/// A key that was pressed.
struct Key
{
    enum Type
    {
        Text, ///< A character, in `text`, or a piece of a pasted text.
        Up,
        Down,
        PageUp,
        PageDown,
        Left,
        Right,
        Home,
        End,
        Enter,
        Backspace,
        Delete,
        EraseWord,
        EraseLine,
        Redraw,
        Leave,
        Other,
    };

    Type type = Other;
    QString text;
};

enum class Style
{
    Plain,
    Title,
    Chosen,
    Faint,
};

/// The terminal as something to draw on: that of standard input, drawn on by standard output or, when that goes
/// elsewhere, by standard error. One at a time. The destructor restores the terminal; so does an exception that is not
/// caught. A signal that ends the process has to be handled (Signals) so that this object is destroyed first.
///
/// Pasted text comes as text where the terminal marks it (bracketed paste): control characters in it, such as ends of
/// lines, become one blank, and those at its end are dropped. So a paste never presses Enter, as in a shell. Where the
/// terminal does not mark it, a paste is a burst of keys.
class Screen
{
public:
    Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;
    ~Screen();

    /// False when there is no terminal, or none that can move its cursor. Then nothing else may be called.
    [[nodiscard]] bool isUsable() const { return m_output != nullptr; }

    [[nodiscard]] int rows() const;
    [[nodiscard]] int columns() const;
    /// Asks the terminal for its size, which has changed.
    void resize();

    /// Leaves the terminal to the shell until the process is continued; for SIGTSTP.
    void suspend();

    /// The next key, if one was pressed.
    std::optional<Key> nextKey();

    // These draw where nobody sees it yet:
    void clear();
    /// Writes a text over the whole of a row; it is cut where that ends.
    void write(int row, const QString &text, Style style);
    /// Brings everything to the terminal, with the cursor here.
    void show(int row, int column);
    /// The same, and what stands there is drawn anew.
    void redraw();

private:
    /// The key of a code of the terminal, if it is a whole one.
    std::optional<Key> keyOf(int code);
    std::optional<Key> pastedKeyOf(int code);
    void setPasting(bool isPasting);

    std::FILE *m_output = nullptr;
    std::unique_ptr<QTextDecoder> m_decoder;
    bool m_isPasting = false;
    bool m_isBlankPasted = false; ///< Control characters were pasted; a blank stands for them if text follows.
};

} // namespace tool
