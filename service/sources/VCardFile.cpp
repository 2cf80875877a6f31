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
/// Longer lines are read in pieces.
constexpr qint64 LINE_PIECE = 65536;

bool isEnd(const QByteArray &line)
{
    return line.trimmed().compare(END, Qt::CaseInsensitive) == 0;
}

/// Position of a card's BEGIN in a line; -1 when there is none. After a card that is cut within a line, the BEGIN of
/// the next card can be on the same line.
int beginIn(const QByteArray &line)
{
    const QByteArray text = line.trimmed().toUpper();
    return text.endsWith(BEGIN) ? line.toUpper().lastIndexOf(BEGIN) : -1;
}

/// Name of the property on a line, without its group; empty when there is none.
QByteArray propertyOn(const QByteArray &line)
{
    const int end = line.indexOf(':');
    return end > 0 ? line.left(end).split(';').first().split('.').last() : QByteArray();
}

/// Whether a line may be a picture, a sound or a key, which are skipped.
bool isAttachment(const QByteArray &line)
{
    static const QList<QByteArray> PROPERTIES = {"PHOTO", "LOGO", "SOUND", "KEY"};
    return PROPERTIES.contains(propertyOn(line).toUpper());
}

/// The lines of a card, within the limits.
class Card
{
public:
    /// Adds a line or a piece of one.
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
    bool m_isLeftOut = false; ///< Whether the current line is left out.
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
