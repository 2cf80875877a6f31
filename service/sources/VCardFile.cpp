// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "sources/VCardFile.h"

#include "Limits.h"

namespace placesd
{

namespace
{

constexpr char BEGIN[] = "BEGIN:VCARD";
constexpr char END[] = "END:VCARD";
/// More than any line that is not the value of something large, which is read in several pieces then.
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

} // namespace

VCardFaults readVCards(QIODevice &file, const std::function<void(const QByteArray &card)> &take)
{
    VCardFaults faults;
    QByteArray card;
    bool isInCard = false;
    const auto finish = [&](bool isCut) {
        if (!isInCard)
            return;
        isInCard = false;
        const bool isTooLong = card.size() > limits::VCARD_SIZE;
        faults.tooLong += isTooLong ? 1 : 0;
        faults.cut += isCut && !isTooLong ? 1 : 0;
        if (!isTooLong)
            take(isCut ? card + '\n' + END + '\n' : card);
    };
    while (!file.atEnd()) {
        if (file.pos() > limits::VCARD_FILE_SIZE) {
            faults.hasEnded = false;
            break;
        }
        QByteArray line = file.readLine(LINE_PIECE);
        if (const int begin = beginIn(line); begin >= 0) {
            card += line.left(begin);
            finish(true);
            isInCard = true;
            card.clear();
            line.remove(0, begin);
        }
        // Of a card that is too long, only that it is so is kept.
        if (isInCard && card.size() <= limits::VCARD_SIZE)
            card += line;
        if (isEnd(line))
            finish(false);
    }
    finish(true);
    return faults;
}

bool hasProperty(const QByteArray &card, const QByteArray &name)
{
    for (const QByteArray &line : card.split('\n')) {
        const int end = line.indexOf(':');
        const QByteArray property = line.left(end).split(';').first().split('.').last();
        if (end > 0 && property.compare(name, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace placesd
