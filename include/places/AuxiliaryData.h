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

/// An extra record that a source attaches to a place: a contact, a calendar entry, point-of-interest details and so on.
/// Every attribute is a text under a key; the typed views (ContactAuxiliaryData and its like) read and write the keys
/// of one type.
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
    /// A record of a type that the service stores under `id`.
    AuxiliaryData(qint64 id, const QString &type);
    AuxiliaryData(const AuxiliaryData &other);
    /// Takes the value of `other`, which is a record without a type from then on.
    AuxiliaryData(AuxiliaryData &&other) noexcept;
    AuxiliaryData &operator=(const AuxiliaryData &other);
    AuxiliaryData &operator=(AuxiliaryData &&other) noexcept;
    ~AuxiliaryData();

    /// Exchanges the values without a copy.
    void swap(AuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(AuxiliaryData &left, AuxiliaryData &right) noexcept { left.swap(right); }

    /// Number given by the service; -1 when not stored.
    [[nodiscard]] qint64 id() const;

    /// Identifier of the record at its source; empty when unset.
    [[nodiscard]] QString externalId() const;
    void setExternalId(const QString &externalId);

    /// Type of the record, such as "contact" or "poi"; empty when unset.
    [[nodiscard]] QString type() const;

    /// Source of the record; not valid when it has none.
    [[nodiscard]] Provider provider() const;

    /// True when the record may be stored with its place.
    [[nodiscard]] bool isPersistable() const;

    /// Inserts or replaces the text under `key`.
    void addProperty(const QString &key, const QString &value);
    /// Removes the text under `key`, if there is one.
    void removeProperty(const QString &key);
    /// The text under `key`; empty when there is none.
    [[nodiscard]] QString property(const QString &key) const;
    /// All keys and texts, in the order of the keys.
    [[nodiscard]] QMap<QString, QString> properties() const;

    /// Inserts or replaces a value; only its text survives.
    void addQVariantProperty(const QString &key, const QVariant &value);
    /// The text under `key` as a variant; invalid when there is none.
    [[nodiscard]] QVariant qvariantProperty(const QString &key) const;

    /// Inserts or replaces a list of values, kept as one text: joined by ",", a "," in an element written "|-|".
    void addQVariantListProperty(const QString &key, const QList<QVariant> &list);
    /// The list under `key`, its elements as texts; empty when there is none. An empty text is one empty element, and
    /// an element that held "|-|" comes back with ",".
    [[nodiscard]] QList<QVariant> qvariantListProperty(const QString &key) const;

    /// Compares type, external id and properties: what the record says, not where it comes from or is stored.
    bool operator==(const AuxiliaryData &other) const;
    bool operator!=(const AuxiliaryData &other) const;

private:
    friend class AuxiliaryDataPrivate;
    ValuePointer<AuxiliaryDataPrivate> d;
};

/// For debugging: type, numbers and keys; the texts under the keys may be private.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AuxiliaryData &data);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::AuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::AuxiliaryData)
