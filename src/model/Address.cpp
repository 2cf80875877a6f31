// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/Address.h"

#include "model/AddressPrivate.h"
#include "model/DebugParts.h"

#include <QtCore/QLatin1String>

#include <algorithm>

namespace vela::platform::places
{

namespace
{

/// In the order of AddressPrivate::Part.
constexpr const char *KEYS[AddressPrivate::PartCount] = {
    "_label", "_room",   "_floor",   "_building",    "_campus",      "_houseNumber", "_street",
    "_city",  "_region", "_country", "_2_letter_cc", "_3_letter_cc", "_postalCode",
};

/// Shared by all addresses without a floor.
const QString &noFloorText()
{
    static const QString text = QString::number(AddressPrivate::NO_FLOOR);
    return text;
}

/// Index of the part with `key`; PartCount when there is none.
std::size_t partUnder(const QString &key)
{
    const auto found =
        std::find_if(std::begin(KEYS), std::end(KEYS), [&key](const char *part) { return key == QLatin1String(part); });
    return static_cast<std::size_t>(found - std::begin(KEYS));
}

/// Appends a non-empty part, after the separator if the text is not empty.
void appendPart(QString &text, const QString &part, QLatin1String separator)
{
    if (part.isEmpty())
        return;
    if (!text.isEmpty())
        text += separator;
    text += part;
}

} // namespace

AddressPrivate::AddressPrivate()
{
    m_parts[Floor] = noFloorText();
}

QString AddressPrivate::field(const QString &key)
{
    const std::size_t index = partUnder(key);
    return index < PartCount ? m_parts[index] : m_otherFields[key];
}

void AddressPrivate::setField(const QString &key, const QString &value)
{
    const std::size_t index = partUnder(key);
    (index < PartCount ? m_parts[index] : m_otherFields[key]) = value;
}

int AddressPrivate::floor() const
{
    return m_parts[Floor].toInt();
}

void AddressPrivate::setFloor(int floor)
{
    m_parts[Floor] = floor == NO_FLOOR ? noFloorText() : QString::number(floor);
}

void AddressPrivate::setCompactAddressLines(const QString &text)
{
    m_compactLines = text.split(QLatin1Char('\n'));
}

void AddressPrivate::setExtendedAddressLines(const QString &text)
{
    m_extendedLines = text.split(QLatin1Char('\n'));
}

QString AddressPrivate::addressLinesToTextBlob(const QStringList &lines)
{
    QString text;
    for (QString line : lines) {
        line.replace(QLatin1Char('\n'), QLatin1Char(' '));
        if (!text.isEmpty())
            text += QLatin1Char('\n');
        text += line;
    }
    return text;
}

QString AddressPrivate::concatenatedLabel() const
{
    const QLatin1String comma(", ");
    QString text;
    appendPart(text, part(Street), comma);
    appendPart(text, part(City), comma);
    appendPart(text, part(Region), comma);
    appendPart(text, part(PostalCode), part(Region).isEmpty() ? comma : QLatin1String(" "));
    appendPart(text, part(Country), comma);
    return text;
}

QString AddressPrivate::unifiedLabel() const
{
    return part(Label).isEmpty() ? concatenatedLabel() : part(Label);
}

bool AddressPrivate::isEmpty() const
{
    const auto isUnset = [this](const QString &text) { return &text == &m_parts[Floor] || text.isEmpty(); };
    return !hasValidFloor() && std::all_of(m_parts.begin(), m_parts.end(), isUnset);
}

bool AddressPrivate::operator==(const AddressPrivate &other) const
{
    return m_parts == other.m_parts && m_otherFields == other.m_otherFields && m_compactLines == other.m_compactLines
           && m_extendedLines == other.m_extendedLines;
}

Address::Address()
    : d(new AddressPrivate)
{}

Address::Address(const Address &other) = default;
Address::Address(Address &&other) noexcept = default;
Address &Address::operator=(const Address &other) = default;
Address &Address::operator=(Address &&other) noexcept = default;
Address::~Address() = default;

QString Address::label() const
{
    return d->part(AddressPrivate::Label);
}

void Address::setLabel(const QString &label)
{
    d->part(AddressPrivate::Label) = label;
}

QString Address::houseNumber() const
{
    return d->part(AddressPrivate::HouseNumber);
}

void Address::setHouseNumber(const QString &houseNumber)
{
    d->part(AddressPrivate::HouseNumber) = houseNumber;
}

QString Address::street() const
{
    return d->part(AddressPrivate::Street);
}

void Address::setStreet(const QString &street)
{
    d->part(AddressPrivate::Street) = street;
}

QString Address::city() const
{
    return d->part(AddressPrivate::City);
}

void Address::setCity(const QString &city)
{
    d->part(AddressPrivate::City) = city;
}

QString Address::region() const
{
    return d->part(AddressPrivate::Region);
}

void Address::setRegion(const QString &region)
{
    d->part(AddressPrivate::Region) = region;
}

QString Address::country() const
{
    return d->part(AddressPrivate::Country);
}

void Address::setCountry(const QString &country)
{
    d->part(AddressPrivate::Country) = country;
}

QString Address::isoAlpha2CountryCode() const
{
    return d->isoAlpha2CountryCode();
}

void Address::setIsoAlpha2CountryCode(const QString &code)
{
    d->setIsoAlpha2CountryCode(code);
}

QString Address::countryCode() const
{
    return d->isoAlpha3CountryCode();
}

void Address::setCountryCode(const QString &code)
{
    d->setIsoAlpha3CountryCode(code);
}

QString Address::postalCode() const
{
    return d->part(AddressPrivate::PostalCode);
}

void Address::setPostalCode(const QString &postalCode)
{
    d->part(AddressPrivate::PostalCode) = postalCode;
}

QString Address::campus() const
{
    return d->part(AddressPrivate::Campus);
}

void Address::setCampus(const QString &campus)
{
    d->part(AddressPrivate::Campus) = campus;
}

QString Address::building() const
{
    return d->part(AddressPrivate::Building);
}

void Address::setBuilding(const QString &building)
{
    d->part(AddressPrivate::Building) = building;
}

int Address::floor() const
{
    return d->floor();
}

void Address::setFloor(int floor)
{
    d->setFloor(floor);
}

bool Address::hasValidFloor() const
{
    return d->hasValidFloor();
}

QString Address::room() const
{
    return d->part(AddressPrivate::Room);
}

void Address::setRoom(const QString &room)
{
    d->part(AddressPrivate::Room) = room;
}

QStringList Address::compactAddressLines() const
{
    return d->compactAddressLines();
}

void Address::setCompactAddressLines(const QStringList &lines)
{
    d->setCompactAddressLines(lines);
}

QStringList Address::extendedAddressLines() const
{
    return d->extendedAddressLines();
}

void Address::setExtendedAddressLines(const QStringList &lines)
{
    d->setExtendedAddressLines(lines);
}

bool Address::isEmpty() const
{
    return d->isEmpty();
}

bool Address::operator==(const Address &other) const
{
    return *d == *other.d;
}

bool Address::operator!=(const Address &other) const
{
    return !(*this == other);
}

QDebug operator<<(QDebug debug, const Address &address)
{
    const QString label = AddressPrivate::privateFromPublic(&address)->unifiedLabel();
    DebugParts(debug, "Address").addIf(!address.isEmpty(), label);
    return debug;
}

} // namespace vela::platform::places
