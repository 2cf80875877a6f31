// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlaceTemplate.h"

#include "formats/GeoJsonWriter.h"
#include "formats/Vocabulary.h"
#include "TerminalText.h"

#include <places/AbstractPlace.h>

#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QStringList>

#include <cmath>

namespace tool
{

using namespace formats;
using namespace vela::platform::places;

namespace
{

constexpr struct
{
    char letter;
    char character;
} ESCAPES[] = {{'t', '\t'}, {'n', '\n'}, {'\\', '\\'}, {'{', '{'}, {'}', '}'}};

/// The members of a place by their names, in the order in which errors list them.
class Members
{
public:
    static const Members &all()
    {
        static const Members ALL;
        return ALL;
    }

    [[nodiscard]] PlaceTemplate::Value valueOf(const QString &name) const { return m_values.value(name); }
    [[nodiscard]] QString names() const { return m_names.join(QStringLiteral(", ")); }

private:
    using Value = PlaceTemplate::Value;

    Members()
    {
        add(vocabulary::ID,
            [](const auto &place) { return place.isPersisted() ? QString::number(place.id()) : QString(); });
        add(vocabulary::NAME, &AbstractPlace::name);
        add(vocabulary::DESCRIPTION, &AbstractPlace::description);
        addAddress();
        add(vocabulary::PHONE, &AbstractPlace::primaryPhoneNumber);
        add(vocabulary::EMAIL, &AbstractPlace::primaryEmailAddress);
        add(vocabulary::URL, [](const auto &place) { return place.primaryUrl().toString(QUrl::FullyEncoded); });
        add(vocabulary::FAVORITE,
            [](const auto &place) { return place.isFavorite() ? QStringLiteral("true") : QStringLiteral("false"); });
        add(vocabulary::OWNER, &AbstractPlace::owner);
        add(vocabulary::LAST_USED_TIME, [](const auto &place) { return utcTime(place.lastUsedTime()); });
        addPoint();
    }

    void addAddress()
    {
        for (const auto &part : vocabulary::ADDRESS_TEXTS)
            add(part.name, [part](const auto &place) { return (place.primaryAddress().*part.get)(); });
        add(vocabulary::FLOOR, [](const auto &place) {
            const Address address = place.primaryAddress();
            return address.hasValidFloor() ? QString::number(address.floor()) : QString();
        });
        for (const auto &part : vocabulary::ADDRESS_LINES)
            add(part.name,
                [part](const auto &place) { return (place.primaryAddress().*part.get)().join(QStringLiteral(", ")); });
    }

    void addPoint()
    {
        add(vocabulary::POSITION, [](const auto &place) {
            const Coordinates position = place.primaryCoordinates();
            return position.isValid() ? number(position.latitude()) + QLatin1Char(',') + number(position.longitude())
                                      : QString();
        });
        add(vocabulary::LATITUDE, [](const auto &place) { return number(place.primaryCoordinates().latitude()); });
        add(vocabulary::LONGITUDE, [](const auto &place) { return number(place.primaryCoordinates().longitude()); });
        addMember(vocabulary::DISTANCE, [](const AbstractPlace &place, const Coordinates &centre) {
            return number(roundedDistance(centre, place.primaryCoordinates()));
        });
    }

    /// Shortest decimal form; empty for NaN.
    static QString number(double value)
    {
        return std::isnan(value) ? QString() : QString::number(value, 'f', QLocale::FloatingPointShortest);
    }

    template <typename Get>
    void add(const char *name, Get get)
    {
        addMember(name, [get](const AbstractPlace &place, const Coordinates &) { return std::invoke(get, place); });
    }
    void addMember(const char *name, const Value &value)
    {
        m_names.append(QLatin1String(name));
        m_values.insert(QLatin1String(name), value);
    }

    QStringList m_names;
    QHash<QString, Value> m_values;
};

/// Appends the character of an escape; false when there is no such escape.
bool unescape(QChar letter, QString &text)
{
    for (const auto &escape : ESCAPES) {
        if (letter == QLatin1Char(escape.letter)) {
            text += QLatin1Char(escape.character);
            return true;
        }
    }
    return false;
}

} // namespace

QString PlaceTemplate::parse(const QString &text, PlaceTemplate &result)
{
    QVector<Part> parts{Part()};
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] == QLatin1Char('\\')) {
            if (++i == text.size() || !unescape(text[i], parts.last().text))
                return QStringLiteral("unknown escape \"%1\"; there are \\t, \\n, \\\\, \\{ and \\}")
                    .arg(text.mid(i - 1, 2));
        } else if (text[i] == QLatin1Char('{')) {
            const int end = text.indexOf(QLatin1Char('}'), i);
            if (end < 0)
                return QStringLiteral("a \"{\" without its \"}\"; \\{ is the character itself");
            const QString name = text.mid(i + 1, end - i - 1);
            parts.last().value = Members::all().valueOf(name);
            if (!parts.last().value)
                return QStringLiteral("unknown member \"%1\"; there are %2").arg(name, Members::all().names());
            parts.append(Part());
            i = end;
        } else {
            parts.last().text += text[i];
        }
    }
    result.m_parts = parts;
    return {};
}

QString PlaceTemplate::row(const AbstractPlace &place, const Coordinates &centre) const
{
    QString row;
    for (const Part &part : m_parts)
        row += part.text + (part.value ? printable(part.value(place, centre)) : QString());
    return row;
}

} // namespace tool
