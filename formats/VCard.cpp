// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCard.h"

#include "Position.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QSet>

#include <algorithm>
#include <kcontacts/vcardconverter.h>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Position of the next separator outside quotation marks and, in texts without quotation marks, not escaped; the
/// text's size when there is none.
int nextSeparator(const QByteArray &text, char separator, int from, bool isQuotable)
{
    bool isQuoted = false;
    for (int i = from; i < text.size(); ++i) {
        isQuoted ^= isQuotable && text[i] == '"';
        if (text[i] == '\\' && !isQuotable)
            ++i;
        else if (text[i] == separator && !isQuoted)
            return i;
    }
    return text.size();
}

/// Splits a text at separators. The parts stay escaped and quoted.
QByteArrayList split(const QByteArray &text, char separator, bool isQuotable)
{
    QByteArrayList parts;
    for (int start = 0; start <= text.size();) {
        const int end = nextSeparator(text, separator, start, isQuotable);
        parts.append(text.mid(start, end - start));
        start = end + 1;
    }
    return parts;
}

QByteArray unquoted(const QByteArray &value)
{
    return value.size() > 1 && value.startsWith('"') && value.endsWith('"') ? value.mid(1, value.size() - 2) : value;
}

VCardLine lineOf(const QByteArray &text)
{
    const int end = nextSeparator(text, ':', 0, true);
    QByteArrayList parts = split(text.left(end), ';', true);
    VCardLine line{parts.takeFirst().split('.').last().trimmed().toUpper(), {}, text.mid(end + 1), text};
    for (const QByteArray &part : qAsConst(parts)) {
        const int equals = part.indexOf('=');
        line.parameters.insert(part.left(std::max(equals, 0)).toUpper(), unquoted(part.mid(equals + 1)));
    }
    return line;
}

/// Decodes a label. Line feeds and quotation marks have two escaped forms.
QString labelOf(const QByteArray &value)
{
    QByteArray text = value;
    text.replace("\\n", "^n").replace("\\N", "^n").replace("\\,", ",").replace("\\;", ";");
    QByteArray label;
    for (int i = 0; i < text.size(); ++i) {
        const char next = text[i] == '^' && i + 1 < text.size() ? text[i + 1] : '\0';
        const char decoded = next == 'n' ? '\n' : next == '\'' ? '"' : next == '^' ? '^' : '\0';
        label += decoded ? decoded : text[i];
        i += decoded ? 1 : 0;
    }
    return QString::fromUtf8(label);
}

/// A position in the form of any vCard version.
Coordinates positionOf(const QByteArray &value)
{
    const QString text = unescaped(value).trimmed();
    if (isGeoUri(text))
        return readGeoUri(text).position;
    const Coordinates position = readDecimalPosition(QString(text).replace(QLatin1Char(';'), QLatin1Char(',')));
    return position.isValid() ? position : Coordinates();
}

CardAddressKind kindOf(const KContacts::Address &address)
{
    if (address.type() & KContacts::Address::Work)
        return CardAddressKind::Work;
    return address.type() & KContacts::Address::Home ? CardAddressKind::Home : CardAddressKind::Other;
}

Address addressOf(const KContacts::Address &card)
{
    Address address;
    address.setLabel(card.label());
    address.setRoom(card.extended());
    address.setStreet(card.street().isEmpty() ? card.postOfficeBox() : card.street());
    address.setCity(card.locality());
    address.setRegion(card.region());
    address.setPostalCode(card.postalCode());
    address.setCountry(card.country().trimmed());
    return address;
}

} // namespace

QString unescaped(const QByteArray &value)
{
    QByteArray text;
    for (int i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            text += value[i];
            continue;
        }
        ++i;
        text += value[i] == 'n' || value[i] == 'N' ? '\n' : value[i];
    }
    return QString::fromUtf8(text);
}

VCard::VCard(const QByteArray &text)
    : m_contact(KContacts::VCardConverter().parseVCard(text))
{
    QByteArray unfolded = text;
    for (const char *fold : {"\r\n ", "\r\n\t", "\n ", "\n\t"})
        unfolded.replace(fold, "");
    const auto lines = unfolded.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray whole = line.endsWith('\r') ? line.chopped(1) : line;
        VCardLine read = lineOf(whole);
        if (!read.name.isEmpty() && read.name != "BEGIN" && read.name != "END")
            m_lines.append(std::move(read));
    }
}

QString VCard::name() const
{
    for (const QString &name : {m_contact.realName(), m_contact.organization(), m_contact.nickName()}) {
        // Escaping a semicolon in a text is optional.
        QString text = QString(name).replace(QLatin1String("\\;"), QLatin1String(";")).trimmed();
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QString VCard::note() const
{
    return m_contact.note().replace(QLatin1String("\\;"), QLatin1String(";"));
}

QString VCard::uid() const
{
    for (const VCardLine &line : m_lines) {
        if (line.name == "UID")
            return unescaped(line.value);
    }
    return {};
}

QStringList VCard::texts(const char *property) const
{
    QStringList texts;
    QSet<QString> known;
    for (const VCardLine &line : m_lines) {
        if (line.name != property)
            continue;
        const auto values = split(line.value, ',', false);
        for (const QByteArray &value : values) {
            const QString text = unescaped(value);
            if (text.trimmed().isEmpty() || known.contains(text))
                continue;
            known.insert(text);
            texts.append(text);
        }
    }
    return texts;
}

Coordinates VCard::position() const
{
    for (const VCardLine &line : m_lines) {
        if (line.name == "GEO")
            return positionOf(line.value);
    }
    return {};
}

QVector<CardAddress> VCard::addresses() const
{
    // KContacts stores positions as floats and reads some wrongly, so they are parsed from the lines. The lines are in
    // the order of its addresses.
    QVector<const VCardLine *> lines;
    for (const VCardLine &line : m_lines) {
        if (line.name == "ADR")
            lines.append(&line);
    }
    QVector<CardAddress> all;
    const KContacts::Address::List cards = m_contact.addresses();
    for (int i = 0; i < cards.size(); ++i) {
        CardAddress one{kindOf(cards[i]), {}};
        Address address = addressOf(cards[i]);
        if (i < lines.size()) {
            if (const QByteArray label = lines[i]->parameters.value("LABEL"); !label.isEmpty())
                address.setLabel(labelOf(label));
            one.location.setCoordinates(positionOf(lines[i]->parameters.value("GEO")));
        }
        one.location.setAddress(address);
        if (!address.isEmpty() || one.location.coordinates().isValid())
            all.append(one);
    }
    const Coordinates own = position();
    if (all.isEmpty() && own.isValid())
        all.append(CardAddress());
    if (all.size() == 1 && !all[0].location.coordinates().isValid())
        all[0].location.setCoordinates(own);
    return all;
}

} // namespace formats
