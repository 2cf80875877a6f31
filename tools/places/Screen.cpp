// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Screen.h"

#include "TerminalText.h"

#include <clocale>
#include <cstdio>
#include <exception>

#define NCURSES_NOMACROS
#include <curses.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tool
{

namespace
{

/// How long the bytes of one key may lie apart, in milliseconds. Only then it is clear that Escape was pressed alone.
constexpr int ESCAPE_DELAY = 50;

SCREEN *current = nullptr;
std::terminate_handler previousTerminate = nullptr;

void restore()
{
    if (!current)
        return;
    ::endwin();
    ::delscreen(current);
    current = nullptr;
}

void restoreAndTerminate()
{
    ::endwin();
    previousTerminate();
}

std::FILE *outputTerminal()
{
    for (std::FILE *file : {stdout, stderr}) {
        if (::isatty(::fileno(file)))
            return file;
    }
    return nullptr;
}

attr_t attributesOf(Style style)
{
    switch (style) {
    case Style::Plain:
        return A_NORMAL;
    case Style::Title:
        return A_BOLD;
    case Style::Chosen:
        return A_REVERSE;
    case Style::Faint:
        return A_DIM;
    }
    return A_NORMAL;
}

/// Arrow keys as terminals send them that were not told how to, or do not listen.
constexpr struct
{
    const char *bytes;
    int code;
} PLAIN_KEYS[] = {
    {"\x1B[A", KEY_UP},
    {"\x1B[B", KEY_DOWN},
    {"\x1BOA", KEY_UP},
    {"\x1BOB", KEY_DOWN},
};

constexpr int ESCAPE = 0x1B;

constexpr int control(char letter)
{
    return letter & 0x1F;
}

Key::Type keyType(int code)
{
    static constexpr struct
    {
        int code;
        Key::Type type;
    } KEYS[] = {
        {KEY_UP, Key::Up},
        {control('P'), Key::Up},
        {KEY_DOWN, Key::Down},
        {control('N'), Key::Down},
        {KEY_PPAGE, Key::PageUp},
        {KEY_NPAGE, Key::PageDown},
        {KEY_ENTER, Key::Enter},
        {'\r', Key::Enter},
        {'\n', Key::Enter},
        {KEY_BACKSPACE, Key::Backspace},
        {control('H'), Key::Backspace},
        {'\x7F', Key::Backspace},
        {control('W'), Key::EraseWord},
        {control('U'), Key::EraseLine},
        {control('L'), Key::Redraw},
        {control('D'), Key::Leave},
    };
    for (const auto &key : KEYS) {
        if (key.code == code)
            return key.type;
    }
    return code < ' ' || code > 0xFF ? Key::Other : Key::Text;
}

/// True when Escape was pressed alone. Else it begins a key that the terminal's description does not know, and the rest
/// of that is taken: one byte, or a control sequence (ECMA-48) to its final byte.
bool isAlone()
{
    int next = ::wgetch(stdscr);
    if (next == ERR)
        return true;
    if (next == '[') {
        do {
            next = ::wgetch(stdscr);
        } while (next != ERR && (next < '@' || next > '~'));
    }
    return false;
}

} // namespace

Screen::Screen()
{
    std::FILE *output = outputTerminal();
    if (!::isatty(STDIN_FILENO))
        m_problem = QStringLiteral("standard input is no terminal");
    else if (!output)
        m_problem = QStringLiteral("there is no terminal to write to");
    else if (current = ::newterm(nullptr, output, stdin); !current)
        m_problem = QStringLiteral("the kind of terminal is not known (TERM=%1)").arg(qEnvironmentVariable("TERM"));
    if (!m_problem.isEmpty())
        return;
    previousTerminate = std::set_terminate(restoreAndTerminate);
    m_decoder.reset(QTextCodec::codecForName("UTF-8")->makeDecoder(QTextCodec::IgnoreHeader));
    ::cbreak();
    ::noecho();
    ::nonl();
    ::keypad(stdscr, true);
    ::nodelay(stdscr, true);
    ::set_escdelay(ESCAPE_DELAY);
    for (const auto &key : PLAIN_KEYS)
        ::define_key(key.bytes, key.code);
}

Screen::~Screen()
{
    if (!current)
        return;
    restore();
    std::set_terminate(previousTerminate);
}

int Screen::rows() const
{
    return ::getmaxy(stdscr);
}

int Screen::columns() const
{
    return ::getmaxx(stdscr);
}

void Screen::resize()
{
    struct winsize size = {};
    if (::ioctl(STDIN_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_row > 0 && size.ws_col > 0)
        ::resizeterm(size.ws_row, size.ws_col);
}

std::optional<Key> Screen::nextKey()
{
    for (int code = ::wgetch(stdscr); code != ERR; code = ::wgetch(stdscr)) {
        if (code == ESCAPE)
            return Key{isAlone() ? Key::Leave : Key::Other, {}};
        const Key::Type type = keyType(code);
        if (type != Key::Text)
            return Key{type, {}};
        // The bytes of a character may come one by one.
        const char byte = static_cast<char>(code);
        if (const QString text = m_decoder->toUnicode(&byte, 1); !text.isEmpty())
            return Key{Key::Text, text};
    }
    return std::nullopt;
}

void Screen::clear()
{
    ::werase(stdscr);
}

void Screen::write(int row, const QString &text, Style style)
{
    const std::wstring characters = cell(text, columns()).toStdWString();
    ::wattrset(stdscr, static_cast<int>(attributesOf(style)));
    ::mvwaddnwstr(stdscr, row, 0, characters.c_str(), static_cast<int>(characters.size()));
    ::wattrset(stdscr, A_NORMAL);
}

void Screen::show(int row, int column)
{
    ::wmove(stdscr, row, column);
    ::wrefresh(stdscr);
}

void Screen::redraw()
{
    ::clearok(stdscr, true);
}

} // namespace tool
