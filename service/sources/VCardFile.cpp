// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/VCardFile.h"

#include "Limits.h"

#include <optional>

namespace placesd
{

namespace
{

constexpr char BEGIN[] = "BEGIN:VCARD";
constexpr char END[] = "END:VCARD";
/// A longer line is read in several pieces.
constexpr qint64 LINE_PIECE = 65536;

bool isEnd(const QByteArray &line)
{
    return line.trimmed().compare(END, Qt::CaseInsensitive) == 0;
}

/// Where in a line a card begins; -1 when none does. Behind a card that was cut within a line the next one's beginning
/// stands on that line.
int beginIn(const QByteArray &line)
{
    const QByteArray text = line.trimmed().toUpper();
    return text.endsWith(BEGIN) ? line.toUpper().lastIndexOf(BEGIN) : -1;
}

/// The name of the property on a line, without its group; empty when there is none.
QByteArray propertyOn(const QByteArray &line)
{
    const int end = line.indexOf(':');
    return end > 0 ? line.left(end).split(';').first().split('.').last() : QByteArray();
}

/// Whether a line may be a picture, a sound or a key, of which nothing is read.
bool isAttachment(const QByteArray &line)
{
    static const QList<QByteArray> PROPERTIES = {"PHOTO", "LOGO", "SOUND", "KEY"};
    return PROPERTIES.contains(propertyOn(line).toUpper());
}

/// A card as far as it was read: its lines within the limits.
class Card
{
public:
    /// Adds a piece of a line, or the whole of it.
    void add(const QByteArray &piece)
    {
        if (m_isAtLineEnd && !piece.startsWith(' ') && !piece.startsWith('\t')) {
            m_lineStart = m_text.size();
            ++m_lines;
            m_isLeftOut = false;
        }
        m_isAtLineEnd = piece.endsWith('\n');
        if (m_isLeftOut)
            return;
        m_text += piece;
        m_isLeftOut = m_lines > limits::VCARD_LINES || m_text.size() - m_lineStart > limits::VCARD_LINE_SIZE
                      || m_text.size() > limits::VCARD_SIZE;
        if (!m_isLeftOut)
            return;
        m_leftOut += isAttachment(m_text.mid(m_lineStart)) ? 0 : 1;
        m_text.truncate(m_lineStart);
    }

    [[nodiscard]] QByteArray ended() const { return m_text + (m_text.endsWith('\n') ? "" : "\n") + END + '\n'; }
    [[nodiscard]] int leftOut() const { return m_leftOut; }

private:
    QByteArray m_text;
    int m_lineStart = 0;
    int m_lines = 0;
    int m_leftOut = 0;
    bool m_isAtLineEnd = true;
    bool m_isLeftOut = false; ///< The current line.
};

} // namespace

VCardFaults readVCards(QIODevice &file, const std::function<void(const QByteArray &card)> &take)
{
    VCardFaults faults;
    std::optional<Card> card;
    const auto finish = [&](bool isCut) {
        if (!card)
            return;
        faults.leftOut += card->leftOut();
        faults.cut += isCut ? 1 : 0;
        take(card->ended());
        card.reset();
    };
    while (!file.atEnd()) {
        if (file.pos() > limits::VCARD_FILE_SIZE) {
            faults.hasEnded = false;
            break;
        }
        QByteArray line = file.readLine(LINE_PIECE);
        if (const int begin = beginIn(line); begin >= 0) {
            if (card)
                card->add(line.left(begin));
            finish(true);
            card.emplace();
            line.remove(0, begin);
        }
        if (isEnd(line))
            finish(false);
        else if (card)
            card->add(line);
    }
    finish(true);
    return faults;
}

bool hasProperty(const QByteArray &card, const QByteArray &name)
{
    for (const QByteArray &line : card.split('\n')) {
        if (propertyOn(line).compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace placesd
