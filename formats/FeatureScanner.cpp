// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "FeatureScanner.h"

#include "Feature.h"

#include <algorithm>
#include <vector>

namespace formats
{

namespace
{

/// Maximum nesting of a file. A member that is nested deeper than MAX_DEPTH is left out.
constexpr int MAX_FILE_DEPTH = 10000;
constexpr char RECORD_SEPARATOR = '\x1E';

constexpr char TOO_DEEP[] = "nested too deep";
constexpr char CUT[] = "not JSON: it ends in the middle of a value";

// Names and values as they are in a file, with quotation marks.
constexpr char FEATURES[] = "\"features\"";
constexpr char ELEMENTS[] = "\"elements\"";
constexpr char GENERATOR[] = "\"generator\"";
constexpr char TYPE[] = "\"type\"";
constexpr char COLLECTION[] = "\"FeatureCollection\"";

bool isBlank(int byte)
{
    return byte == ' ' || byte == '\t' || byte == '\n' || byte == '\r';
}

bool isBracket(int byte)
{
    return byte == '{' || byte == '}' || byte == '[' || byte == ']';
}

} // namespace

void FeatureScanner::Capture::append(const char *bytes, std::size_t size)
{
    if (!problem && static_cast<std::size_t>(text.size()) + size > MAX_ITEM_SIZE)
        problem = "too large";
    if (!problem)
        text.append(bytes, static_cast<int>(size));
}

void FeatureScanner::Capture::append(const Capture &other)
{
    if (other.problem)
        problem = other.problem;
    append(other.text.constData(), static_cast<std::size_t>(other.text.size()));
}

FeatureScanner::FeatureScanner(Input &input)
    : m_input(input)
{
    detectSeparator();
}

FeatureScanner::Item FeatureScanner::next()
{
    Item item;
    bool isReady = false;
    while (!isReady) {
        switch (m_state) {
        case State::Between:
            isReady = start(item);
            break;
        case State::InText:
            isReady = readText(item);
            break;
        case State::InList:
            isReady = readMember(item);
            break;
        case State::Ended:
            isReady = true;
        }
    }
    return item;
}

// ----------------------------------------------------------------------------------------------------------- bytes

bool FeatureScanner::fill()
{
    m_before += m_count;
    m_at = 0;
    m_count = m_input.read(m_buffer, sizeof m_buffer);
    return m_count > 0;
}

int FeatureScanner::peek()
{
    if (m_at == m_count && !fill())
        return END;
    const int byte = static_cast<unsigned char>(m_buffer[m_at]);
    return byte == m_separator ? END : byte;
}

void FeatureScanner::skipBlanks()
{
    for (int byte = peek(); isBlank(byte); byte = peek()) {
        m_sawLine = m_sawLine || byte == '\n';
        ++m_at;
    }
}

/// Detects a JSON text sequence by its first byte, and one text per line by a line that ends an object before a line
/// that starts one.
void FeatureScanner::detectSeparator()
{
    const QByteArray head = m_input.head().trimmed();
    const int line = head.indexOf('\n');
    if (head.startsWith(RECORD_SEPARATOR))
        m_separator = RECORD_SEPARATOR;
    else if (head.startsWith('{') && head.left(std::max(line, 0)).trimmed().endsWith('}')
             && head.mid(line).trimmed().startsWith('{'))
        m_separator = '\n';
}

bool FeatureScanner::skipText()
{
    if (m_separator == END)
        return false;
    while (m_at < m_count || fill()) {
        const char *end = std::find(m_buffer + m_at, m_buffer + m_count, static_cast<char>(m_separator));
        m_at = static_cast<std::size_t>(end - m_buffer);
        if (m_at < m_count)
            break;
    }
    return true;
}

template <typename IsWanted>
void FeatureScanner::copyWhile(IsWanted isWanted, Capture &out)
{
    while (peek() != END) {
        std::size_t end = m_at;
        while (end < m_count && static_cast<unsigned char>(m_buffer[end]) != m_separator && isWanted(m_buffer[end]))
            ++end;
        if (end == m_at)
            return;
        out.append(m_buffer + m_at, end - m_at);
        m_at = end;
    }
}

// ---------------------------------------------------------------------------------------------------------- values

void FeatureScanner::copyString(Capture &out)
{
    out.append('"');
    ++m_at;
    for (int byte = peek(); byte != END && byte != '"'; byte = peek()) {
        if (byte == '\\') {
            out.append('\\');
            ++m_at;
            if (peek() == END)
                return;
            out.append(m_buffer[m_at++]);
        }
        copyWhile([](char c) { return c != '"' && c != '\\'; }, out);
    }
    if (peek() == END)
        return;
    out.append('"');
    ++m_at;
}

bool FeatureScanner::copyValue(Capture &out, int depth)
{
    std::vector<char> open;
    do {
        const int byte = peek();
        if (byte == '"') {
            copyString(out);
        } else if (isBlank(byte)) {
            skipBlanks();
            out.append(' ');
        } else if (byte == '{' || byte == '[') {
            open.push_back(byte == '{' ? '}' : ']');
            out.append(m_buffer[m_at++]);
            if (depth + static_cast<int>(open.size()) > MAX_DEPTH)
                out.problem = TOO_DEEP;
        } else if (isBracket(byte)) {
            if (open.empty() || open.back() != byte) {
                m_problem = "not JSON: a bracket does not match";
                return false;
            }
            open.pop_back();
            out.append(m_buffer[m_at++]);
        } else {
            const bool isAlone = open.empty();
            copyWhile([isAlone](char c) { return c != '"' && !isBracket(c) && !isBlank(c) && !(isAlone && c == ','); },
                      out);
        }
        if (peek() == END && !open.empty())
            m_problem = CUT;
        else if (depth + static_cast<int>(open.size()) > MAX_FILE_DEPTH)
            m_problem = TOO_DEEP;
        if (m_problem)
            return false;
    } while (!open.empty());
    return true;
}

// ----------------------------------------------------------------------------------------------------------- texts

bool FeatureScanner::start(Item &item)
{
    m_sawLine = false;
    do {
        while (peek() == END && (m_at < m_count || fill()))
            ++m_at;
        skipBlanks();
    } while (peek() == END && (m_at < m_count || fill()));
    if (peek() == END) {
        m_state = State::Ended;
        return true;
    }
    m_text = {};
    m_start = m_before + m_at;
    m_listKind = Kind::Text;
    m_hasGenerator = false;
    m_isOtherType = false;
    if (peek() == '{') {
        m_text.append('{');
        ++m_at;
        m_sawLine = false;
        m_state = State::InText;
        return false;
    }
    if (isBracket(peek()) && peek() != '[')
        return fail("not JSON: a bracket does not match", item);
    if (!copyValue(m_text, 0))
        return fail(m_problem, item);
    if (m_text.text.isEmpty()) // a comma between texts
        return fail("not JSON: a value is missing", item);
    handOut(Kind::Text, m_text, m_start, item);
    return true;
}

bool FeatureScanner::readText(Item &item)
{
    skipBlanks();
    const int byte = peek();
    if (byte == END)
        return fail(CUT, item);
    if (byte == '"')
        return copyMember(item);
    m_text.append(m_buffer[m_at++]);
    if (byte != '}')
        return false;
    m_state = State::Between;
    const bool isLine = m_isFirst && m_listKind == Kind::Text && !m_sawLine;
    handOut(m_listKind == Kind::Text ? Kind::Text : Kind::Collection, m_text, m_start, item);
    if (isLine && m_separator == END && (peek() == '\n' || peek() == '\r'))
        m_separator = '\n';
    m_isFirst = false;
    return true;
}

bool FeatureScanner::isList(const QByteArray &name) const
{
    return !m_isOtherType && (name == FEATURES || (name == ELEMENTS && m_hasGenerator));
}

bool FeatureScanner::copyMember(Item &item)
{
    Capture name;
    copyString(name);
    m_text.append(name);
    skipBlanks();
    if (peek() != ':')
        return false; // parsing the text reports the error
    m_text.append(':');
    ++m_at;
    skipBlanks();
    if (peek() == '[' && isList(name.text)) {
        m_text.append('[');
        ++m_at;
        m_listKind = name.text == FEATURES ? Kind::Member : Kind::Element;
        m_isAfterMember = false;
        m_state = State::InList;
        return false;
    }
    Capture value;
    if (!copyValue(value, 1))
        return fail(m_problem, item);
    m_text.append(value);
    m_hasGenerator = m_hasGenerator || name.text == GENERATOR;
    if (name.text == TYPE)
        m_isOtherType = value.text != COLLECTION;
    return false;
}

bool FeatureScanner::readMember(Item &item)
{
    skipBlanks();
    if (peek() == ']') {
        m_text.append(']');
        ++m_at;
        m_state = State::InText;
        return false;
    }
    if (m_isAfterMember) {
        if (peek() != ',')
            return fail(peek() == END ? CUT : "not JSON: a comma is missing between members", item);
        ++m_at;
        skipBlanks();
    }
    if (peek() == END)
        return fail(CUT, item);
    Capture member;
    const std::size_t position = m_before + m_at;
    if (!copyValue(member, 0))
        return fail(m_problem, item);
    if (member.text.isEmpty() && !member.problem)
        return fail("not JSON: a value is missing", item);
    m_isAfterMember = true;
    handOut(m_listKind, member, position, item);
    return true;
}

void FeatureScanner::handOut(Kind kind, Capture &capture, std::size_t position, Item &item)
{
    item.kind = kind;
    item.text.swap(capture.text);
    item.problem = capture.problem;
    item.position = position;
}

bool FeatureScanner::fail(const char *problem, Item &item)
{
    item = {Kind::Text, {}, problem, m_before + m_at, !skipText()};
    m_problem = nullptr;
    m_state = item.isFatal ? State::Ended : State::Between;
    return true;
}

} // namespace formats
