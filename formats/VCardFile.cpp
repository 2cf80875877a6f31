// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCardFile.h"

#include "LineReader.h"

#include <QtCore/QByteArrayList>

#include <optional>

namespace formats
{

namespace
{

constexpr char BEGIN[] = "BEGIN:VCARD";
constexpr char END[] = "END:VCARD";
/// A longer line is read in pieces.
constexpr int LINE_PIECE = 65536;

bool isEnd(const QByteArray &line)
{
    return line.trimmed().compare(END, Qt::CaseInsensitive) == 0;
}

/// Offset at which a card begins in a line; -1 when none begins. When a card was cut within a line, the next card
/// begins in the same line.
int beginIn(const QByteArray &line)
{
    const QByteArray text = line.trimmed().toUpper();
    return text.endsWith(BEGIN) ? line.toUpper().lastIndexOf(BEGIN) : -1;
}

/// The name of the property in a line, without its group; empty when there is none.
QByteArray propertyOn(const QByteArray &line)
{
    const int end = line.indexOf(':');
    return end > 0 ? line.left(end).split(';').first().split('.').last() : QByteArray();
}

/// True for a line that may be a picture, a sound or a key. These are not read.
bool isAttachment(const QByteArray &line)
{
    static const QList<QByteArray> PROPERTIES = {"PHOTO", "LOGO", "SOUND", "KEY"};
    return PROPERTIES.contains(propertyOn(line).toUpper());
}

/// The part of a card that was read: its lines within the limits.
class Card
{
public:
    explicit Card(qint64 line)
        : m_firstLine(line)
    {}

    /// Adds a line or a piece of a line.
    void add(const QByteArray &piece)
    {
        if (m_isAtLineEnd && !piece.startsWith(' ') && !piece.startsWith('\t'))
            beginLine(piece);
        m_isAtLineEnd = piece.endsWith('\n');
        if (m_isLeftOut)
            return;
        QByteArray &text = m_isPlace ? m_place : m_text;
        text += piece;
        m_isLeftOut = m_isPlace ? static_cast<std::size_t>(m_place.size()) > MAX_ITEM_SIZE
                                : m_lines > MAX_VCARD_LINES || m_text.size() - m_lineStart > MAX_VCARD_LINE_SIZE
                                      || m_text.size() > MAX_VCARD_SIZE;
        if (!m_isLeftOut)
            return;
        m_leftOut += isAttachment(text.mid(m_lineStart)) ? 0 : 1;
        text.truncate(m_lineStart);
    }

    [[nodiscard]] CardText ended(bool isCut) const
    {
        return {m_text + (m_text.endsWith('\n') ? "" : "\n") + END + '\n', m_place, m_firstLine, m_leftOut, isCut};
    }

private:
    void beginLine(const QByteArray &piece)
    {
        static const QByteArray PLACE_START = QByteArray(VCARD_PLACE) + ':';
        m_isPlace = m_place.isEmpty() && piece.startsWith(PLACE_START);
        m_lineStart = m_isPlace ? 0 : m_text.size();
        m_lines += m_isPlace ? 0 : 1;
        m_isLeftOut = false;
    }

    const qint64 m_firstLine;
    QByteArray m_text;
    QByteArray m_place; ///< The line of VCARD_PLACE.
    int m_lineStart = 0;
    int m_lines = 0;
    int m_leftOut = 0;
    bool m_isAtLineEnd = true;
    bool m_isPlace = false;   ///< The current line.
    bool m_isLeftOut = false; ///< The current line.
};

} // namespace

bool splitVCards(Input &file, const std::function<bool(const CardText &card)> &take, qint64 most)
{
    LineReader lines(file);
    std::optional<Card> card;
    const auto finish = [&](bool isCut) {
        const bool goesOn = !card || take(card->ended(isCut));
        card.reset();
        return goesOn;
    };
    qint64 line = 1;
    qint64 position = 0;
    for (QByteArray piece; lines.nextPiece(piece, LINE_PIECE);) {
        if (position > most)
            return finish(true) && false;
        position += piece.size();
        const bool endsLine = piece.endsWith('\n');
        if (const int begin = beginIn(piece); begin >= 0) {
            if (card)
                card->add(piece.left(begin));
            if (!finish(true))
                return true;
            card.emplace(line);
            piece.remove(0, begin);
        }
        if (isEnd(piece)) {
            if (!finish(false))
                return true;
        } else if (card) {
            card->add(piece);
        }
        line += endsLine ? 1 : 0;
    }
    finish(true);
    return true;
}

} // namespace formats
