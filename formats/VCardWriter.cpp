// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "VCardWriter.h"

#include "GeoJsonWriter.h"
#include "Position.h"
#include "VCardFile.h"
#include "VCardReader.h"
#include "Vocabulary.h"

#include <places/Place.h>
#include <places/Tags.h>

#include <rapidjson/document.h>

#include <QtCore/QByteArrayList>
#include <QtCore/QRegularExpression>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// Maximum number of bytes of a line without its line end (RFC 6350).
constexpr int LINE_SIZE = 75;
/// Maximum length of a text, or of a part of an address. It keeps lines below MAX_VCARD_LINE_SIZE.
constexpr int MAX_TEXT = 4000;
constexpr int MAX_PART = 400;
/// Maximum number of lines in VCARD_LINES, and of bytes of all of them.
constexpr int MAX_KEPT_LINES = 400;
constexpr int MAX_KEPT_SIZE = 128 * 1024;

/// The words that begin or end a card, up to their colon.
const QRegularExpression &boundaries()
{
    static const QRegularExpression WORDS(QStringLiteral("(BEGIN|END):(?=VCARD)"),
                                          QRegularExpression::CaseInsensitiveOption);
    return WORDS;
}

/// A text without control characters other than line feeds and tabs, without the words that begin or end a card, and
/// truncated to `most` characters.
QString plainText(const QString &text, int most = MAX_TEXT)
{
    static const QRegularExpression CONTROLS(QStringLiteral("[\\x{0}-\\x{8}\\x{b}-\\x{1f}\\x{7f}-\\x{9f}]"));
    QString plain = text.left(most);
    if (!plain.isEmpty() && plain.at(plain.size() - 1).isHighSurrogate())
        plain.chop(1);
    return plain.remove(CONTROLS).replace(boundaries(), QStringLiteral("\\1 "));
}

/// A text as a value: separators and line feeds are escaped.
QByteArray escaped(const QString &text, int most = MAX_TEXT)
{
    QByteArray value = plainText(text, most).toUtf8();
    return value.replace('\\', "\\\\").replace(',', "\\,").replace('\n', "\\n");
}

/// A part of a value whose parts are separated by semicolons.
QByteArray part(const QString &text)
{
    return escaped(text, MAX_PART).replace(';', "\\;");
}

/// A text as a quoted parameter (RFC 6868).
QByteArray parameter(const QString &text)
{
    QByteArray value = plainText(text, MAX_PART).toUtf8();
    value.replace('^', "^^").replace('\n', "^n").replace('"', "^'");
    return '"' + value + '"';
}

/// A list of texts separated by commas, cut after the last text that fits.
QByteArray listOf(const QStringList &texts)
{
    QByteArrayList values;
    int size = 0;
    for (const QString &text : texts) {
        size += text.size() + 1;
        if (size <= MAX_TEXT)
            values.append(escaped(text));
    }
    return values.join(',');
}

/// A line with its line end; folded when it is too long, but never inside a character.
QByteArray folded(const QByteArray &line)
{
    QByteArray text;
    int start = 0;
    for (int most = LINE_SIZE; line.size() - start > most; most = LINE_SIZE - 1) {
        int end = start + most;
        while (end > start + 1 && (static_cast<unsigned char>(line[end]) & 0xc0U) == 0x80U)
            --end;
        text += line.mid(start, end - start) + "\r\n ";
        start = end;
    }
    return text + line.mid(start) + "\r\n";
}

/// A line for a property with a value.
QByteArray property(const QByteArray &name, const QByteArray &value)
{
    return value.isEmpty() ? QByteArray() : folded(name + ':' + value);
}

QByteArray property(const char *name, const QString &text)
{
    return property(QByteArray(name), escaped(text));
}

QString joined(QStringList texts, const char *separator)
{
    texts.removeAll(QString());
    return texts.join(QLatin1String(separator));
}

/// Room, floor, building and campus as the extended address.
QString extendedAddress(const Address &address)
{
    const QString floor = address.hasValidFloor() ? QString::number(address.floor()) : QString();
    return joined({address.room(), floor, address.building(), address.campus()}, ", ");
}

QByteArray addressLine(const Place &place, const Address &address)
{
    if (address.isEmpty())
        return {};
    QByteArray name = "ADR";
    if (place.hasTag(Tags::Home))
        name += ";TYPE=home";
    else if (place.hasTag(Tags::Work))
        name += ";TYPE=work";
    if (!address.label().isEmpty())
        name += ";LABEL=" + parameter(address.label());
    const QByteArrayList parts = {
        QByteArray(), // Post office box.
        part(extendedAddress(address)),
        part(joined({address.street(), address.houseNumber()}, " ")),
        part(address.city()),
        part(address.region()),
        part(address.postalCode()),
        part(address.country().isEmpty() ? address.isoAlpha2CountryCode() : address.country()),
    };
    return property(name, parts.join(';'));
}

QByteArray categories(const Place &place, const Address &address)
{
    // The TYPE of the address stores this tag.
    const QString type = place.hasTag(Tags::Home) ? Tags::Home : Tags::Work;
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i) {
        if (place.tag(i) != type || address.isEmpty())
            tags.append(place.tag(i));
    }
    return property(QByteArray("CATEGORIES"), listOf(tags));
}

/// A member that an import kept as JSON; null when there is none.
rapidjson::Document keptMember(const Place &place, const char *type, const char *name)
{
    rapidjson::Document value;
    for (int i = 0; i < place.auxiliaryDataCount(); ++i) {
        const AuxiliaryData data = place.auxiliaryData(i);
        const QString text = data.property(QLatin1String(name));
        if (data.type() == QLatin1String(type) && !text.isEmpty())
            value.Parse<rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag>(
                text.toUtf8().constData());
    }
    return value;
}

QString stringOf(const rapidjson::Value &value)
{
    return value.IsString() ? QString::fromUtf8(value.GetString(), static_cast<int>(value.GetStringLength()))
                            : QString();
}

/// True for a line that any card may contain and that does not map to a place.
bool isOther(const QString &line)
{
    static const QRegularExpression LINE(
        QStringLiteral(R"(\A(?:[A-Z0-9-]+\.)?([A-Z0-9-]+)(?:;[^:\x{0}-\x{1f}]*)?:\P{Cc}*\z)"),
        QRegularExpression::CaseInsensitiveOption);
    static const QStringList OWN = {QStringLiteral("BEGIN"),      QStringLiteral("END"),      QStringLiteral("VERSION"),
                                    QStringLiteral("FN"),         QStringLiteral("NOTE"),     QStringLiteral("UID"),
                                    QStringLiteral("CATEGORIES"), QStringLiteral("NICKNAME"), QStringLiteral("ADR"),
                                    QStringLiteral("GEO"),        QLatin1String(VCARD_PLACE)};
    const QRegularExpressionMatch match = LINE.match(line);
    return match.hasMatch() && !OWN.contains(match.captured(1).toUpper()) && plainText(line) == line;
}

/// Lines that an import kept.
QStringList keptLines(const Place &place)
{
    const rapidjson::Document list = keptMember(place, vocabulary::FOREIGN_PROPERTIES, VCARD_LINES);
    QStringList lines;
    int size = 0;
    for (rapidjson::SizeType i = 0; list.IsArray() && i < list.Size() && lines.size() < MAX_KEPT_LINES; ++i) {
        const QString line = stringOf(list[i]);
        size += line.toUtf8().size();
        if (size <= MAX_KEPT_SIZE && isOther(line))
            lines.append(line);
    }
    return lines;
}

QByteArray nameLine(const QByteArray &name, const QStringList &kept)
{
    static const QRegularExpression NAME(QStringLiteral("^(?:[^.;:]+\\.)?N[;:]"),
                                         QRegularExpression::CaseInsensitiveOption);
    return kept.indexOf(NAME) < 0 ? property(QByteArray("N"), name + ";;;;") : QByteArray();
}

} // namespace

QByteArray toPlainVCard(const Place &place)
{
    const int shown = shownLocation(place);
    const Location location = place.locationCount() > 0 ? place.location(shown) : Location();
    const QString name = place.name().trimmed().isEmpty() ? place.primaryLocation() : place.name();
    const QStringList kept = keptLines(place);
    QByteArray card = "BEGIN:VCARD\r\nVERSION:4.0\r\n";
    card += folded("FN:" + escaped(name)) + nameLine(part(name), kept);
    card += property(QByteArray("NICKNAME"), listOf(place.aliases()));
    card += property("NOTE", place.description());
    card += property("TEL", place.primaryPhoneNumber());
    card += property("EMAIL", place.primaryEmailAddress());
    card += property(QByteArray("URL"), place.primaryUrl().toEncoded().left(MAX_TEXT));
    card += categories(place, location.address()) + addressLine(place, location.address());
    if (location.coordinates().isValid())
        card += property(QByteArray("GEO"), toGeoUri(location.coordinates()).toLatin1());
    card += property("UID", stringOf(keptMember(place, vocabulary::FOREIGN_MEMBERS, "id")));
    for (const QString &line : kept)
        card += folded(line.toUtf8());
    return card + "END:VCARD\r\n";
}

QByteArray toVCard(const Place &place)
{
    QByteArray card = toPlainVCard(place);
    if (restoresPlace(card, place))
        return card;
    // JSON writes the colon as an escape, so that no folded line looks like the beginning or end of a card.
    QString feature = QString::fromUtf8(toGeoJsonFeature(place));
    feature.replace(boundaries(), QStringLiteral("\\1\\u003a"));
    feature.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char(','), QLatin1String("\\,"));
    const QByteArray line = folded(QByteArray(VCARD_PLACE) + ':' + feature.toUtf8());
    return card.insert(card.size() - static_cast<int>(sizeof "END:VCARD\r\n") + 1, line);
}

} // namespace formats
