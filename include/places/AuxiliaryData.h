// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Global.h>
#include <places/Provider.h>

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace vela::platform::places
{

class AuxiliaryDataPrivate;

/// A record that a source attaches to a place: a contact, a calendar entry, point-of-interest details and so on. All
/// attributes are texts by key; typed views, such as ContactAuxiliaryData, read and write the keys of one type.
class PLACES_EXPORT AuxiliaryData
{
public:
    static const QString TypeCalendar;        ///< "calendar"
    static const QString TypeContact;         ///< "contact"
    static const QString TypePointOfInterest; ///< "poi"
    static const char TypeImage[10];          ///< "lbs-image"
    static const char TypeReview[11];         ///< "lbs-review"
    static const char TypeReservation[16];    ///< "lbs-reservation"

    /// A record without a type.
    AuxiliaryData();
    /// A new record of a type: one of the constants above, or any other text.
    explicit AuxiliaryData(const QString &type);
    /// A record of a type with the id that the service stores it under.
    AuxiliaryData(qint64 id, const QString &type);
    AuxiliaryData(const AuxiliaryData &other);
    /// Moves the value; `other` becomes a record without a type.
    AuxiliaryData(AuxiliaryData &&other) noexcept;
    AuxiliaryData &operator=(const AuxiliaryData &other);
    AuxiliaryData &operator=(AuxiliaryData &&other) noexcept;
    ~AuxiliaryData();

    /// Swaps the values without a copy.
    void swap(AuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryData &left, AuxiliaryData &right) noexcept { left.swap(right); }

    /// Number given by the service; -1 when not stored.
    [[nodiscard]] qint64 id() const;

    /// Identifier of the record at its source; empty when unset.
    [[nodiscard]] QString externalId() const;
    void setExternalId(const QString &externalId);

    /// Type of the record, such as "contact" or "poi"; empty when unset.
    [[nodiscard]] QString type() const;

    /// Source of the record; not valid when there is none.
    [[nodiscard]] Provider provider() const;

    /// True when the record may be stored with its place.
    [[nodiscard]] bool isPersistable() const;

    /// Sets the text of `key`.
    void addProperty(const QString &key, const QString &value);
    /// Removes `key` and its text, if present.
    void removeProperty(const QString &key);
    /// The text of `key`; empty when there is none.
    [[nodiscard]] QString property(const QString &key) const;
    /// All keys and texts, sorted by key.
    [[nodiscard]] QMap<QString, QString> properties() const;

    /// Sets a value; it is stored as text.
    void addQVariantProperty(const QString &key, const QVariant &value);
    /// The text of `key` as a variant; invalid when there is none.
    [[nodiscard]] QVariant qvariantProperty(const QString &key) const;

    /// Sets a list of values, stored as one text: joined by ",", with "," in an element replaced by "|-|".
    void addQVariantListProperty(const QString &key, const QList<QVariant> &list);
    /// The list of `key`, its elements as texts; empty when there is none. An empty text gives one empty element, and
    /// "|-|" in an element becomes ",".
    [[nodiscard]] QList<QVariant> qvariantListProperty(const QString &key) const;

    /// Compares type, external id and properties, but not provider and id.
    bool operator==(const AuxiliaryData &other) const;
    bool operator!=(const AuxiliaryData &other) const;

private:
    friend class AuxiliaryDataPrivate;
    ValuePointer<AuxiliaryDataPrivate> d;
};

/// For debugging: type, numbers and keys, without the texts, which may be private.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AuxiliaryData &data);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::AuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryData)
