// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Address.h"

#include <QtCore/QMap>

#include <array>
#include <limits>

namespace vela::platform::places
{

/// The parts of an address, as texts by key. Parts with an accessor are in an array, which saves memory in lists of
/// headers; a map has all other keys.
class AddressPrivate
{
public:
    /// The parts in the order of reading and writing.
    enum Part
    {
        Label,
        Room,
        Floor,
        Building,
        Campus,
        HouseNumber,
        Street,
        City,
        Region,
        Country,
        IsoAlpha2CountryCode,
        IsoAlpha3CountryCode,
        PostalCode,
        PartCount
    };

    static constexpr int NO_FLOOR = std::numeric_limits<int>::min();

    AddressPrivate();

    static AddressPrivate *privateFromPublic(Address *address) { return address->d.get(); }
    static const AddressPrivate *privateFromPublic(const Address *address) { return address->d.get(); }

    /// The text of `key`; inserts an empty one if it is missing.
    QString field(const QString &key);
    /// Sets the text of `key`.
    void setField(const QString &key, const QString &value);

    const QString &part(Part part) const { return m_parts[part]; }
    QString &part(Part part) { return m_parts[part]; }

    const QString &isoAlpha2CountryCode() const { return part(IsoAlpha2CountryCode); }
    void setIsoAlpha2CountryCode(const QString &code) { part(IsoAlpha2CountryCode) = code; }
    /// Called countryCode() in the public class.
    const QString &isoAlpha3CountryCode() const { return part(IsoAlpha3CountryCode); }
    void setIsoAlpha3CountryCode(const QString &code) { part(IsoAlpha3CountryCode) = code; }

    /// The number in the floor's text; 0 when it is not a number.
    int floor() const;
    void setFloor(int floor);
    bool hasValidFloor() const { return floor() != NO_FLOOR; }

    const QStringList &compactAddressLines() const { return m_compactLines; }
    QStringList &compactAddressLines() { return m_compactLines; }
    void setCompactAddressLines(const QStringList &lines) { m_compactLines = lines; }
    /// Splits the text into lines.
    void setCompactAddressLines(const QString &text);

    const QStringList &extendedAddressLines() const { return m_extendedLines; }
    QStringList &extendedAddressLines() { return m_extendedLines; }
    void setExtendedAddressLines(const QStringList &lines) { m_extendedLines = lines; }
    /// Splits the text into lines.
    void setExtendedAddressLines(const QString &text);

    /// Joins the lines to one text; line feeds within a line become spaces.
    static QString addressLinesToTextBlob(const QStringList &lines);

    /// "street, city, region postal code, country", without unset parts.
    QString concatenatedLabel() const;
    /// The label, else the concatenated label.
    QString unifiedLabel() const;

    bool isEmpty() const;
    bool operator==(const AddressPrivate &other) const;

private:
    std::array<QString, PartCount> m_parts;
    QMap<QString, QString> m_otherFields;
    QStringList m_compactLines;
    QStringList m_extendedLines;
};

} // namespace vela::platform::places
