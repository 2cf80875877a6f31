// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/AbstractPlacePrivate.h"
#include "places/Location.h"
#include "places/PlaceHeader.h"

namespace vela::platform::places
{

class Place;
class PlacePrivate;

class PlaceHeaderPrivate : public AbstractPlacePrivate
{
public:
    /// Bits of the data mask: properties of the full place. The bits of tags are in a table in the source.
    enum MaskBit : qint64
    {
        HasPhysicalLocation = 0x1,
        HasCoordinates = 0x4,
        HasAuxiliaryData = 0x20,
        HasCalendarData = 0x40,
        HasContactData = 0x80,
        HasPointOfInterestData = 0x100,
        HasAnyTag = 0x800
    };

    bool operator==(const AbstractPlacePrivate &other) const override;
    bool operator!=(const AbstractPlacePrivate &other) const override;
    bool hasCoordinates() const override { return m_dataMask & HasCoordinates; }
    bool hasPhysicalLocation() const override { return m_dataMask & HasPhysicalLocation; }
    bool hasAuxiliaryData() const override { return m_dataMask & HasAuxiliaryData; }
    bool hasTag() const override { return m_dataMask & HasAnyTag; }
    bool isFavorite() const override;
    QString primaryEmailAddress() const override { return m_primaryEmailAddress; }
    QString primaryLocation() const override;
    Address primaryAddress() const override { return m_location.address(); }
    Coordinates primaryCoordinates() const override { return m_location.coordinates(); }
    QString primaryPhoneNumber() const override { return m_primaryPhoneNumber; }
    QUrl primaryUrl() const override { return m_primaryUrl; }
    QUrl mapUrl() const override;
    bool fromJSON(pps_decoder_t &decoder, int flags) override;
    bool toJSON(QString &out, int &status) const override;

    static PlaceHeaderPrivate *privateFromPublic(PlaceHeader *header) { return header->privatePart(); }
    static const PlaceHeaderPrivate *privateFromPublic(const PlaceHeader *header) { return header->privatePart(); }

    int hasTag(const QString &tag) const;
    int hasAuxiliaryData(const QString &type) const;

    const QString &externalId() const { return m_externalId; }
    const QString &auxiliaryDataType() const { return m_auxiliaryDataType; }
    qint64 dataMask() const { return m_dataMask; }

    void setData(qint64 id, const QString &name, const QString &description, const QString &owner,
                 const QString &source, quint64 lastUsedTime, qint64 dataMask, const QString &primaryEmailAddress,
                 const QString &primaryPhoneNumber, const QUrl &primaryUrl, const QString &externalId,
                 const QString &auxiliaryDataType, const Location &location, const QString &searchTerm, bool isPrivate,
                 vela::system::SecurityPerimeter::Type securityPerimeter, SearchResultCertainty::Type certainty);

    /// Sets mask, primary values and location from a full place.
    void setData(const PlacePrivate &place);

    /// Sets or clears the bit of a tag, if there is one; the bit for "any tag" is never cleared.
    void setTagBit(const QString &tag, bool present);

    /// Makes this the header of a contact's place, which is not stored.
    void resetIdFromContact(int first, int second, const QString &third);

    /// Requests the header of a full place from the service. The caller owns it; null on failure.
    [[nodiscard]] static PlaceHeader *createPublicHeader(Place &place);

    QString m_externalId;
    QString m_auxiliaryDataType;
    qint64 m_dataMask = 0;
    QString m_primaryEmailAddress;
    QString m_primaryPhoneNumber;
    QUrl m_primaryUrl;
    Location m_location;

private:
    static qint64 maskOf(const PlacePrivate &place);
};

} // namespace vela::platform::places
