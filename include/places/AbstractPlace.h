// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Address.h>
#include <places/Coordinates.h>
#include <places/Global.h>
#include <places/SearchResultCertainty.h>
#include <vela/system/SecurityPerimeter.h>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QUrl>

#include <memory>

namespace vela::platform::places
{

class AbstractPlacePrivate;

/// Common interface of full places and headers, read-only. Places are QObjects: pass them by pointer, and use each
/// object on one thread at a time.
class PLACES_EXPORT AbstractPlace : public QObject
{
    Q_OBJECT
public:
    static const QString SourceContactService;         ///< "lbs-contact": made from a contact.
    static const QString SourceGeocodeService;         ///< "lbs-geocode": found by address.
    static const QString SourceGeolink;                ///< "lbs-geolink": made from a link.
    static const QString SourceManualInput;            ///< "lbs-manual-input": typed in.
    static const QString SourcePointOfInterestService; ///< "lbs-poi": found at a point-of-interest provider.

    ~AbstractPlace() override;

    /// Number given by the service; -1 when not stored.
    [[nodiscard]] qint64 id() const;
    /// True when the service stores the place.
    [[nodiscard]] bool isPersisted() const;

    /// Name to show; empty when unset.
    [[nodiscard]] QString name() const;
    /// Text for people; empty when unset.
    [[nodiscard]] QString description() const;
    /// Name of the application that added the place; empty when unset.
    [[nodiscard]] QString owner() const;
    /// Where the place comes from: one of the constants above, or any other text.
    [[nodiscard]] QString source() const;
    /// Time of the last use, in seconds since 1970-01-01T00:00:00 UTC; 0 for never.
    [[nodiscard]] quint64 lastUsedTime() const;
    /// True when only the owner may see the place.
    [[nodiscard]] bool isPrivate() const;
    /// Perimeter of the place. It is set when the place is added and never changes.
    [[nodiscard]] vela::system::SecurityPerimeter::Type securityPerimeter() const;
    /// Certainty of the search result.
    [[nodiscard]] SearchResultCertainty::Type certainty() const;

    /// True when a location of the place has a valid position.
    [[nodiscard]] bool hasCoordinates() const;
    /// True when a location of the place has a valid position or an address.
    [[nodiscard]] bool hasPhysicalLocation() const;
    /// True when the place has a record of any type.
    [[nodiscard]] bool hasAuxiliaryData() const;
    /// True when the place has any tag.
    [[nodiscard]] bool hasTag() const;
    /// True when the place has Tags::Favorite.
    [[nodiscard]] bool isFavorite() const;

    /// Main e-mail address; empty when there is none.
    [[nodiscard]] QString primaryEmailAddress() const;
    /// Address or position as one line; empty when both are unknown.
    [[nodiscard]] QString primaryLocation() const;
    /// The first address that is not empty; else an empty one.
    [[nodiscard]] Address primaryAddress() const;
    /// The first position that is valid; else an invalid one.
    [[nodiscard]] Coordinates primaryCoordinates() const;
    /// Main telephone number; empty when there is none.
    [[nodiscard]] QString primaryPhoneNumber() const;
    /// Main web address; empty when there is none.
    [[nodiscard]] QUrl primaryUrl() const;

    /// A link that shows the place on the map web service; empty when the place has no valid position.
    [[nodiscard]] QUrl mapUrl() const;

protected:
    AbstractPlace();
    /// The private part; never null.
    std::unique_ptr<AbstractPlacePrivate> d;

private:
    friend class AbstractPlacePrivate;
    Q_DISABLE_COPY(AbstractPlace)
};

/// For debugging: number, name and position. A place is an object: a pointer to one is written in the same way.
PLACES_EXPORT QDebug operator<<(QDebug debug, const AbstractPlace &place);
PLACES_EXPORT QDebug operator<<(QDebug debug, const AbstractPlace *place);

} // namespace vela::platform::places
