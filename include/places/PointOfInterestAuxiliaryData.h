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

/// A record of type "poi" seen as the business details of a place. A text that is not known is empty.
class PLACES_EXPORT PointOfInterestAuxiliaryData
{
public:
    /// A new, empty record of type "poi".
    PointOfInterestAuxiliaryData();
    /// A view of a copy of `data`, whatever its type; isValid() tells whether the type is right.
    explicit PointOfInterestAuxiliaryData(const AuxiliaryData &data);
    PointOfInterestAuxiliaryData(const PointOfInterestAuxiliaryData &other);
    /// Takes the value of `other`, which is a new, empty record from then on.
    PointOfInterestAuxiliaryData(PointOfInterestAuxiliaryData &&other) noexcept;
    PointOfInterestAuxiliaryData &operator=(const PointOfInterestAuxiliaryData &other);
    PointOfInterestAuxiliaryData &operator=(PointOfInterestAuxiliaryData &&other) noexcept;
    ~PointOfInterestAuxiliaryData();

    /// Exchanges the values without a copy.
    void swap(PointOfInterestAuxiliaryData &other) noexcept { d.swap(other.d); }
    friend void swap(PointOfInterestAuxiliaryData &left, PointOfInterestAuxiliaryData &right) noexcept
    {
        left.swap(right);
    }

    /// True when the record is of type "poi".
    [[nodiscard]] bool isValid() const;

    /// Identifier of the place at its provider.
    [[nodiscard]] QString externalId() const;
    void setExternalId(const QString &externalId);

    /// Name of the place at its provider.
    [[nodiscard]] QString name() const;
    void setName(const QString &name);

    /// Category as a text to show; see categories() for the codes.
    [[nodiscard]] QString category() const;
    void setCategory(const QString &category);

    /// The provider's categories of the place, with the codes of the categories directly below each. Children of
    /// children are not kept.
    [[nodiscard]] QList<Category> categories() const;
    void setCategories(const QList<Category> &categories);

    /// Mean rating on the provider's own scale, kept to six significant digits; 0 when unknown.
    [[nodiscard]] double rating() const;
    void setRating(double rating);

    /// Number of ratings behind rating(); 0 when unknown.
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

    /// Opening hours by day, in the place's local time; a day without hours has no entry.
    [[nodiscard]] QMap<DayOfWeek::Type, QList<TimeRange>> openingHours() const;
    void setOpeningHours(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours);

    /// Opening hours as a text to show, independent of openingHours().
    [[nodiscard]] QString openingHoursString() const;
    void setOpeningHoursString(const QString &text);

    /// Seconds that the place's local time is ahead of UTC; 2147483647 when unknown.
    [[nodiscard]] int utcOffsetSeconds() const;
    void setUtcOffsetSeconds(int seconds);

    /// Where to park, as a text to show.
    [[nodiscard]] QString parkingText() const;
    /// Whether and how to reserve, as a text to show.
    [[nodiscard]] QString reservationText() const;
    /// Range of prices, as a text to show.
    [[nodiscard]] QString priceRangeText() const;
    /// Accepted means of payment, as a text to show.
    [[nodiscard]] QString paymentMethodText() const;

    /// A copy of the record behind this view.
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
