// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Address.h"

#include <QtCore/QMap>

#include <array>
#include <limits>

namespace vela::platform::places
{

/// The parts of an address, each a text under a key. The parts that have an accessor stand in a fixed array, which a
/// list of a thousand headers can afford; a map takes whatever else is set by key.
class AddressPrivate
{
public:
    /// The parts, in the order in which they are written and read.
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

    /// The text under `key`, which is there, empty, from then on.
    QString field(const QString &key);
    /// Inserts or replaces the text under `key`.
    void setField(const QString &key, const QString &value);

    const QString &part(Part part) const { return m_parts[part]; }
    QString &part(Part part) { return m_parts[part]; }

    const QString &isoAlpha2CountryCode() const { return part(IsoAlpha2CountryCode); }
    void setIsoAlpha2CountryCode(const QString &code) { part(IsoAlpha2CountryCode) = code; }
    /// What the public class calls countryCode().
    const QString &isoAlpha3CountryCode() const { return part(IsoAlpha3CountryCode); }
    void setIsoAlpha3CountryCode(const QString &code) { part(IsoAlpha3CountryCode) = code; }

    /// The floor's text as a number; 0 for a text that is none.
    int floor() const;
    void setFloor(int floor);
    bool hasValidFloor() const { return floor() != NO_FLOOR; }

    const QStringList &compactAddressLines() const { return m_compactLines; }
    QStringList &compactAddressLines() { return m_compactLines; }
    void setCompactAddressLines(const QStringList &lines) { m_compactLines = lines; }
    /// One line for each line of the text.
    void setCompactAddressLines(const QString &text);

    const QStringList &extendedAddressLines() const { return m_extendedLines; }
    QStringList &extendedAddressLines() { return m_extendedLines; }
    void setExtendedAddressLines(const QStringList &lines) { m_extendedLines = lines; }
    /// One line for each line of the text.
    void setExtendedAddressLines(const QString &text);

    /// The lines as one text; a line feed within a line becomes a space.
    static QString addressLinesToTextBlob(const QStringList &lines);

    /// "street, city, region postal code, country", without the parts that are not set.
    QString concatenatedLabel() const;
    /// The label when there is one, else the concatenated label.
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
