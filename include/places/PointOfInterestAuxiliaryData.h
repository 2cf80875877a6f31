// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AuxiliaryData.h>
#include <places/Category.h>
#include <places/DayOfWeek.h>
#include <places/TimeRange.h>

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QUrl>

namespace vela::platform::places
{

class PointOfInterestAuxiliaryDataPrivate;

/// A view of a record of type "poi" as business details of a place. Unknown texts are empty.
class PLACES_EXPORT PointOfInterestAuxiliaryData
{
public:
    /// A new, empty record of type "poi".
    PointOfInterestAuxiliaryData();
    /// A view of a copy of `data`, of any type; isValid() checks the type.
    explicit PointOfInterestAuxiliaryData(const AuxiliaryData &data);
    PointOfInterestAuxiliaryData(const PointOfInterestAuxiliaryData &other);
    /// Moves the value; `other` becomes a new, empty record.
    PointOfInterestAuxiliaryData(PointOfInterestAuxiliaryData &&other) noexcept;
    PointOfInterestAuxiliaryData &operator=(const PointOfInterestAuxiliaryData &other);
    PointOfInterestAuxiliaryData &operator=(PointOfInterestAuxiliaryData &&other) noexcept;
    ~PointOfInterestAuxiliaryData();

    /// Swaps the values without a copy.
    void swap(PointOfInterestAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(PointOfInterestAuxiliaryData &left, PointOfInterestAuxiliaryData &right) noexcept
    {
        left.swap(right);
    }

    /// True when the record is of type "poi".
    [[nodiscard]] bool isValid() const;

    /// Id of the place at its provider.
    [[nodiscard]] QString externalId() const;
    void setExternalId(const QString &externalId);

    /// Name of the place at its provider.
    [[nodiscard]] QString name() const;
    void setName(const QString &name);

    /// Category for display; see categories() for the codes.
    [[nodiscard]] QString category() const;
    void setCategory(const QString &category);

    /// The provider's categories of the place, with the codes of their direct subcategories. Deeper levels are not
    /// stored.
    [[nodiscard]] QList<Category> categories() const;
    void setCategories(const QList<Category> &categories);

    /// Mean rating on the provider's scale, stored with six significant digits; 0 when unknown.
    [[nodiscard]] double rating() const;
    void setRating(double rating);

    /// Number of ratings in rating(); 0 when unknown.
    [[nodiscard]] int ratingCount() const;
    void setRatingCount(int count);

    /// Telephone number.
    [[nodiscard]] QString phoneNumber() const;
    void setPhoneNumber(const QString &phoneNumber);
    /// Fax number.
    [[nodiscard]] QString fax() const;
    void setFax(const QString &fax);
    /// E-mail address.
    [[nodiscard]] QString emailAddress() const;
    void setEmailAddress(const QString &emailAddress);
    /// Web address; empty when unknown.
    [[nodiscard]] QUrl url() const;
    void setUrl(const QUrl &url);

    /// Opening hours by day, in the place's local time; days without hours are missing.
    [[nodiscard]] QMap<DayOfWeek::Type, QList<TimeRange>> openingHours() const;
    void setOpeningHours(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours);

    /// Opening hours as text for display; independent of openingHours().
    [[nodiscard]] QString openingHoursString() const;
    void setOpeningHoursString(const QString &text);

    /// Offset of the place's local time from UTC, in seconds; 2147483647 when unknown.
    [[nodiscard]] int utcOffsetSeconds() const;
    void setUtcOffsetSeconds(int seconds);

    /// Parking, as text for display.
    [[nodiscard]] QString parkingText() const;
    /// Reservations, as text for display.
    [[nodiscard]] QString reservationText() const;
    /// Range of prices, as text for display.
    [[nodiscard]] QString priceRangeText() const;
    /// Accepted means of payment, as text for display.
    [[nodiscard]] QString paymentMethodText() const;

    /// A copy of the record.
    [[nodiscard]] AuxiliaryData auxiliaryData() const;
    operator AuxiliaryData() const;

    /// Compares the records.
    bool operator==(const PointOfInterestAuxiliaryData &other) const;
    bool operator!=(const PointOfInterestAuxiliaryData &other) const;

private:
    friend class PointOfInterestAuxiliaryDataPrivate;
    ValuePointer<PointOfInterestAuxiliaryDataPrivate> d;
};

/// For debugging: name and category.
PLACES_EXPORT QDebug operator<<(QDebug debug, const PointOfInterestAuxiliaryData &details);

} // namespace vela::platform::places

Q_DECLARE_TYPEINFO(vela::platform::places::PointOfInterestAuxiliaryData, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(vela::platform::places::PointOfInterestAuxiliaryData)
