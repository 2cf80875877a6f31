// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Screen.h"

#include "Signals.h"
#include "TerminalText.h"

#include <cstring>
#include <exception>
#include <utility>

#define NCURSES_NOMACROS
#include <curses.h>
#include <sys/ioctl.h>
#include <termcap.h>
#include <termios.h>
#include <unistd.h>

namespace tool
{

namespace
{

/// Longest gap between the bytes of one key, in milliseconds. A longer gap after an Escape byte means the Escape key.
constexpr int ESCAPE_DELAY = 50;
/// The same in pasted text, where no key is pressed and the end mark must be recognised.
constexpr int PASTE_ESCAPE_DELAY = 1000;

// Bracketed paste; other terminals ignore these sequences.
constexpr char PASTE_ON[] = "\x1B[?2004h";
constexpr char PASTE_OFF[] = "\x1B[?2004l";
constexpr int PASTE_BEGIN = KEY_MAX + 1;
constexpr int PASTE_END = KEY_MAX + 2;

SCREEN *current = nullptr;
int descriptor = -1; // output of the terminal
std::terminate_handler previousTerminate = nullptr;

/// Writes directly to the terminal. curses has no pending output between two calls.
void send(const char *sequence)
{
    // A closed terminal needs no handling.
    [[maybe_unused]] const ssize_t written = ::write(descriptor, sequence, std::strlen(sequence));
}

void leaveScreen()
{
    send(PASTE_OFF);
    ::endwin();
}

void restoreAndTerminate()
{
    leaveScreen();
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

/// True when terminfo knows the terminal and it can move its cursor.
bool movesCursor()
{
    const QByteArray kind = qgetenv("TERM");
    return ::tgetent(nullptr, kind.constData()) == 1 && ::tgetstr("cm", nullptr) != nullptr;
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

/// Makes Ctrl-S a key: by default it stops the output. Leaving the screen undoes this.
void passFlowControl()
{
    struct termios settings = {};
    if (::tcgetattr(descriptor, &settings) != 0)
        return;
    settings.c_iflag &= ~static_cast<tcflag_t>(IXON);
    ::tcsetattr(descriptor, TCSADRAIN, &settings);
    ::def_prog_mode();
}

/// Keys as sent by terminals that ignore the keypad mode, and the marks of pasted text.
constexpr struct
{
    const char *bytes;
    int code;
} PLAIN_KEYS[] = {
    {"\x1B[A", KEY_UP},       {"\x1B[B", KEY_DOWN},  {"\x1BOA", KEY_UP},    {"\x1BOB", KEY_DOWN},
    {"\x1B[C", KEY_RIGHT},    {"\x1BOC", KEY_RIGHT}, {"\x1B[D", KEY_LEFT},  {"\x1BOD", KEY_LEFT},
    {"\x1B[H", KEY_HOME},     {"\x1BOH", KEY_HOME},  {"\x1B[1~", KEY_HOME}, {"\x1B[F", KEY_END},
    {"\x1BOF", KEY_END},      {"\x1B[4~", KEY_END},  {"\x1B[3~", KEY_DC},   {"\x1B[200~", PASTE_BEGIN},
    {"\x1B[201~", PASTE_END},
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
        {KEY_LEFT, Key::Left},
        {control('B'), Key::Left},
        {KEY_RIGHT, Key::Right},
        {control('F'), Key::Right},
        {KEY_HOME, Key::Home},
        {control('A'), Key::Home},
        {KEY_END, Key::End},
        {control('E'), Key::End},
        {KEY_DC, Key::Delete},
        {KEY_ENTER, Key::Enter},
        {'\r', Key::Enter},
        {'\n', Key::Enter},
        {control('S'), Key::Save},
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

/// True when Escape was pressed alone. Otherwise reads the rest of an unknown key: one byte, or a control sequence
/// (ECMA-48) up to its final byte.
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
    std::FILE *output = ::isatty(STDIN_FILENO) ? outputTerminal() : nullptr;
    if (!output || !movesCursor() || !(current = ::newterm(nullptr, output, stdin)))
        return;
    m_output = output;
    descriptor = ::fileno(output);
    previousTerminate = std::set_terminate(restoreAndTerminate);
    m_decoder.reset(QTextCodec::codecForName("UTF-8")->makeDecoder(QTextCodec::IgnoreHeader));
    ::cbreak();
    ::noecho();
    ::nonl();
    passFlowControl();
    ::keypad(stdscr, true);
    ::nodelay(stdscr, true);
    ::set_escdelay(ESCAPE_DELAY);
    for (const auto &key : PLAIN_KEYS)
        ::define_key(key.bytes, key.code);
    send(PASTE_ON);
}

Screen::~Screen()
{
    if (!isUsable())
        return;
    leaveScreen();
    ::delscreen(current);
    current = nullptr;
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

void Screen::suspend()
{
    leaveScreen();
    stopBySignal(SIGTSTP);
    send(PASTE_ON);
    resize(); // the size may have changed
    redraw();
}

std::optional<Key> Screen::nextKey()
{
    for (int code = ::wgetch(stdscr); code != ERR; code = ::wgetch(stdscr)) {
        if (std::optional<Key> key = m_isPasting ? pastedKeyOf(code) : keyOf(code))
            return key;
    }
    return std::nullopt;
}

std::optional<Key> Screen::keyOf(int code)
{
    if (code == ESCAPE)
        return Key{isAlone() ? Key::Leave : Key::Other, {}};
    if (code == PASTE_BEGIN)
        setPasting(true);
    const Key::Type type = keyType(code);
    if (type != Key::Text)
        return Key{type, {}};
    // The bytes of a UTF-8 character may arrive separately.
    const char byte = static_cast<char>(code);
    const QString text = m_decoder->toUnicode(&byte, 1);
    return text.isEmpty() ? std::nullopt : std::make_optional(Key{Key::Text, text});
}

std::optional<Key> Screen::pastedKeyOf(int code)
{
    if (code == PASTE_END)
        setPasting(false);
    if (code > 0xFF)
        return std::nullopt;
    if (code < ' ' || code == '\x7F') {
        m_isBlankPasted = true;
        return std::nullopt;
    }
    std::optional<Key> key = keyOf(code);
    if (key && std::exchange(m_isBlankPasted, false))
        key->text.prepend(QLatin1Char(' '));
    return key;
}

void Screen::setPasting(bool isPasting)
{
    m_isPasting = isPasting;
    m_isBlankPasted = false;
    ::set_escdelay(isPasting ? PASTE_ESCAPE_DELAY : ESCAPE_DELAY);
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
