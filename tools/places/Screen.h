// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>
#include <QtCore/QTextCodec>

#include <memory>
#include <optional>

namespace tool
{

/// A key that was pressed.
struct Key
{
    enum Type
    {
        Text, ///< A character, in `text`.
        Up,
        Down,
        PageUp,
        PageDown,
        Enter,
        Backspace,
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
/// elsewhere, by standard error. One at a time. Its end brings the terminal back to how it was; so does an exception
/// that nobody catches. Whoever may be ended by a signal sees to it (Signals) that this object is destroyed first.
class Screen
{
public:
    Screen();
    Screen(const Screen &) = delete;
    Screen &operator=(const Screen &) = delete;
    ~Screen();

    /// Why there is nothing to draw on; empty when there is. Then nothing else may be called.
    [[nodiscard]] QString problem() const { return m_problem; }

    [[nodiscard]] int rows() const;
    [[nodiscard]] int columns() const;
    /// Asks the terminal for its size, which has changed.
    void resize();

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
    QString m_problem;
    std::unique_ptr<QTextDecoder> m_decoder;
};

} // namespace tool
