// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/AbstractPlacePrivate.h"
#include "places/Place.h"

#include <QtCore/QList>

namespace vela::platform::places
{

class PlacePrivate : public AbstractPlacePrivate
{
public:
    /// Bits of the persistence mask: reasons why the service keeps the place.
    enum PersistenceBit
    {
        InRecentBucket = 1, ///< Picked recently.
        ExplicitlySaved = 2 ///< Saved.
    };
    static constexpr int RECENT_AND_SAVED = InRecentBucket | ExplicitlySaved;

    bool operator==(const AbstractPlacePrivate &other) const override;
    bool operator!=(const AbstractPlacePrivate &other) const override;
    bool hasCoordinates() const override;
    bool hasPhysicalLocation() const override;
    bool hasAuxiliaryData() const override;
    bool hasTag() const override;
    bool isFavorite() const override;
    QString primaryEmailAddress() const override;
    QString primaryLocation() const override;
    Address primaryAddress() const override;
    Coordinates primaryCoordinates() const override;
    QString primaryPhoneNumber() const override;
    QUrl primaryUrl() const override;
    QUrl mapUrl() const override;
    bool fromJSON(pps_decoder_t &decoder, int flags) override;
    bool toJSON(QString &out, int &status) const override;

    static PlacePrivate *privateFromPublic(Place *place) { return place->privatePart(); }
    static const PlacePrivate *privateFromPublic(const Place *place) { return place->privatePart(); }

    /// Fills a place from a link of mapUrl() or a similar link.
    static void decodePlaceFromMapUrl(const QUrl &url, Place &place);
    /// The value of a query item, with "+" as a space. Empty when there is none.
    static QString decodeQuery(const QUrl &url, const QString &key);

    bool addTag(const QString &tag);
    /// Adds a tag unless the place has it.
    void appendTag(const QString &tag);
    bool removeTag(const QString &tag);
    bool hasTag(const QString &tag) const { return m_tags.contains(tag); }
    const QStringList &tags() const { return m_tags; }
    void addAlias(const QString &alias);
    void removeAlias(const QString &alias) { m_aliases.removeAll(alias); }
    const QStringList &aliases() const { return m_aliases; }

    void addLocation(const Location &location) { m_locations.append(location); }
    void replaceLocation(int index, const Location &location) { m_locations[index] = location; }
    bool removeLocation(int index);
    bool removeLocation(const Location &location) { return m_locations.removeOne(location); }
    const QList<Location> &locations() const { return m_locations; }

    void addAuxiliaryData(const AuxiliaryData &data) { m_auxiliaryData.append(data); }
    void replaceAuxiliaryData(int index, const AuxiliaryData &data) { m_auxiliaryData[index] = data; }
    bool removeAuxiliaryData(int index);
    bool removeAuxiliaryData(const AuxiliaryData &data) { return m_auxiliaryData.removeOne(data); }
    const QList<AuxiliaryData> &auxiliaryData() const { return m_auxiliaryData; }
    /// The record at `index`, for writing.
    AuxiliaryData &auxiliaryData(int index) { return m_auxiliaryData[index]; }
    bool hasAuxiliaryData(const QString &type) const;

    int usageCount() const { return m_usageCount; }
    void setUsageCount(int count) { m_usageCount = count; }
    void incrementUsageCount() { ++m_usageCount; }
    quint64 createdTime() const { return m_createdTime; }
    void setCreatedTime(quint64 time) { m_createdTime = time; }
    quint64 updatedTime() const { return m_updatedTime; }
    void setUpdatedTime(quint64 time) { m_updatedTime = time; }
    quint64 expiredTime() const { return m_expiredTime; }
    void setExpiredTime(quint64 time) { m_expiredTime = time; }
    int priority() const { return m_priority; }
    void setPriority(int priority) { m_priority = priority; }
    int persistenceMask() const { return m_persistenceMask; }
    void setPersistenceMask(int mask) { m_persistenceMask = mask; }
    bool isExplicitlySaved() const { return m_persistenceMask & ExplicitlySaved; }
    bool isInRecentBucket() const { return m_persistenceMask & InRecentBucket; }
    /// True for a recent search term, which is no place.
    bool isRecentSearchTerm() const { return hasTag(QStringLiteral("_search-term_")); }

    /// False, without a change, for a stored place: its perimeter is constant.
    bool setSecurityPerimeter(vela::system::SecurityPerimeter::Type perimeter);

    /// Makes a stored place a new one: clears ids, times and uses.
    void clearPersistedStates();

    int m_usageCount = 0;
    QList<Location> m_locations;
    QList<AuxiliaryData> m_auxiliaryData;
    QStringList m_tags;
    QStringList m_aliases;
    quint64 m_createdTime = 0;
    quint64 m_updatedTime = 0;
    quint64 m_expiredTime = 0;
    int m_priority = 1000;
    int m_persistenceMask = ExplicitlySaved;

private:
    enum class PrimaryField
    {
        EmailAddress = 1,
        PhoneNumber = 2,
        Url = 3
    };
    static QString fieldValue(const AuxiliaryData &data, PrimaryField field);
    QString primaryAuxiliaryValue(PrimaryField field) const;
};

} // namespace vela::platform::places
