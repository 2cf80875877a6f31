// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "Input.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace formats
{

/// Splits a JSON file into the texts of its members without parsing them. It follows strings and brackets only, so an
/// error in one member does not affect the others. Memory is bounded by the size of a member. A file has one or more
/// JSON texts: in sequence, one per line, or as a JSON text sequence (RFC 8142).
class FeatureScanner
{
public:
    enum class Kind
    {
        Member,     ///< An element of the list "features" of a text.
        Element,    ///< An element of the list "elements" of a text.
        Text,       ///< A text without such a list.
        Collection, ///< A text with such a list, which is left empty here; follows its members.
        End,
    };
    struct Item
    {
        Kind kind = Kind::End;
        QByteArray text = {};          ///< White space outside strings is reduced to single blanks.
        const char *problem = nullptr; ///< Why the text is incomplete.
        std::size_t position = 0;      ///< Offset of the first byte in the file.
        bool isFatal = false;          ///< The rest of the file cannot be read.
    };

    explicit FeatureScanner(Input &input);

    /// Returns the next item; Kind::End after the last one and after a fatal one.
    Item next();
    /// True when texts are separated, so that an error in one does not affect the next.
    [[nodiscard]] bool isSeparated() const { return m_separator != END; }

private:
    /// The copied bytes of a value, up to a problem.
    struct Capture
    {
        void append(const char *bytes, std::size_t size);
        void append(char byte) { append(&byte, 1); }
        void append(const Capture &other);

        QByteArray text;
        const char *problem = nullptr;
    };
    enum class State
    {
        Between, ///< Between two texts.
        InText,  ///< In the object of a text.
        InList,  ///< In its list of members.
        Ended,
    };

    static constexpr int END = -1;

    /// The next byte; END at the end of the input and of a separated text.
    int peek();
    bool fill();
    void skipBlanks();
    void detectSeparator();
    /// Skips the rest of a separated text. False for a file without separators.
    bool skipText();
    /// Copies bytes while `isWanted` returns true.
    template <typename IsWanted>
    void copyWhile(IsWanted isWanted, Capture &out);
    /// Copies a string with its quotation marks.
    void copyString(Capture &out);
    /// Copies a value at this nesting depth. False when the brackets do not match.
    bool copyValue(Capture &out, int depth);

    /// Each continues reading in one state. False when there is no item yet.
    bool start(Item &item);
    bool readText(Item &item);
    bool readMember(Item &item);
    /// Copies a member of the text's object, or enters its list of members.
    bool copyMember(Item &item);
    /// True for the name of a list of members.
    [[nodiscard]] bool isList(const QByteArray &name) const;
    void handOut(Kind kind, Capture &capture, std::size_t position, Item &item);
    bool fail(const char *problem, Item &item);

    Input &m_input;
    char m_buffer[64 * 1024];
    std::size_t m_count = 0;
    std::size_t m_at = 0;
    std::size_t m_before = 0; ///< Offset of the buffer in the file.

    State m_state = State::Between;
    int m_separator = END;  ///< Byte between texts; END when there is none.
    bool m_sawLine = false; ///< A line feed was skipped.
    bool m_isFirst = true;  ///< No text was read yet.
    const char *m_problem = nullptr;

    // The text being read.
    Capture m_text;
    std::size_t m_start = 0;
    Kind m_listKind = Kind::Text;
    bool m_hasGenerator = false; ///< The text has a member "generator".
    bool m_isOtherType = false;  ///< The text has a "type" that is not a collection.
    bool m_isAfterMember = false;
};

} // namespace formats
