// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QTextCodec>

#include <cstdio>
#include <memory>
#include <optional>

namespace tool
{

/// A pressed key.
struct Key
{
    enum Type
    {
        Text, ///< A character, or a piece of pasted text, in `text`.
        Up,
        Down,
        PageUp,
        PageDown,
        Left,
        Right,
        Home,
        End,
        Enter,
        Save,
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

/// A terminal to draw on. Input is standard input; output is standard output, or standard error when standard output is
/// redirected. One object at a time. The destructor and an uncaught exception restore the terminal. Handle signals that
/// end the process (Signals), so that the object is destroyed first.
///
/// Pasted text is detected where the terminal marks it (bracketed paste). Control characters in it, such as line feeds,
/// become one blank, and are dropped at its end, so a paste never presses Enter. Without the marks a paste is a series
/// of keys.
class Screen
{
public:
    Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;
    ~Screen();

    /// False when there is no terminal, or the terminal cannot move its cursor. Then no other function may be called.
    [[nodiscard]] bool isUsable() const { return m_output != nullptr; }

    [[nodiscard]] int rows() const;
    [[nodiscard]] int columns() const;
    /// Updates the size after the terminal was resized.
    void resize();

    /// For SIGTSTP: leaves the terminal to the shell until the process is continued.
    void suspend();

    /// The next key; std::nullopt when none is pressed.
    std::optional<Key> nextKey();

    // These draw to a buffer:
    void clear();
    /// Writes a text over a whole row. It is cut at the end of the row.
    void write(int row, const QString &text, Style style);
    /// Shows the buffer and puts the cursor here.
    void show(int row, int column);
    /// Shows the buffer and redraws the whole terminal.
    void redraw();

private:
    /// The key for a code of the terminal; std::nullopt when more bytes follow.
    std::optional<Key> keyOf(int code);
    std::optional<Key> pastedKeyOf(int code);
    void setPasting(bool isPasting);

    std::FILE *m_output = nullptr;
    std::unique_ptr<QTextDecoder> m_decoder;
    bool m_isPasting = false;
    bool m_isBlankPasted = false; ///< Control characters were pasted; a blank replaces them when text follows.
};

} // namespace tool
