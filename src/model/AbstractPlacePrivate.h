// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PlaceId.h"
#include "places/AbstractPlace.h"
#include "places/Location.h"

#include <memory>
#include <pps.h>

namespace vela::platform::places
{

class AbstractPlacePrivate
{
public:
    virtual ~AbstractPlacePrivate();

    /// Compares the values of the place, not the times and users of storing and use.
    virtual bool operator==(const AbstractPlacePrivate &other) const;
    virtual bool operator!=(const AbstractPlacePrivate &other) const;

    virtual bool hasCoordinates() const = 0;
    virtual bool hasPhysicalLocation() const = 0;
    virtual bool hasAuxiliaryData() const = 0;
    virtual bool hasTag() const = 0;
    virtual bool isFavorite() const = 0;
    virtual QString primaryEmailAddress() const = 0;
    virtual QString primaryLocation() const = 0;
    virtual Address primaryAddress() const = 0;
    virtual Coordinates primaryCoordinates() const = 0;
    virtual QString primaryPhoneNumber() const = 0;
    virtual QUrl primaryUrl() const = 0;
    virtual QUrl mapUrl() const = 0;
    /// Sets all values from a JSON document; the decoder must have entered the top-level object. A value that is
    /// missing or of another type gets its default; without an object all values do. `flags` are ignored. Always true.
    virtual bool fromJSON(pps_decoder_t &decoder, int flags) = 0;
    /// Writes the JSON document of the place, in ISO 8859-1, and sets `status` to 1. False, without a change of `out`,
    /// only when memory is exhausted.
    virtual bool toJSON(QString &out, int &status) const = 0;

    static AbstractPlacePrivate *privateFromPublic(AbstractPlace *place) { return place->d.get(); }
    static const AbstractPlacePrivate *privateFromPublic(const AbstractPlace *place) { return place->d.get(); }
    /// The private part of a const place, for changes by a reply: the id of a removed place, and a search term that was
    /// sent.
    static AbstractPlacePrivate *mutablePrivate(const AbstractPlace &place) { return place.d.get(); }

    std::unique_ptr<PlaceId> globalId() const { return std::make_unique<PlaceId>(*this); }

    bool isPersisted() const { return m_id != PlaceId::UNDEFINED_PERSISTED_ID; }
    qint64 id() const { return m_id; }
    void setId(qint64 id) { m_id = id; }
    const QString &name() const { return m_name; }
    void setName(const QString &name) { m_name = name; }
    const QString &description() const { return m_description; }
    void setDescription(const QString &description) { m_description = description; }
    const QString &owner() const { return m_owner; }
    void setOwner(const QString &owner) { m_owner = owner; }
    const QString &source() const { return m_source; }
    void setSource(const QString &source) { m_source = source; }
    /// The term of the search that found the place, until it is sent to the service.
    const QString &searchTerm() const { return m_searchTerm; }
    void setSearchTerm(const QString &term) { m_searchTerm = term; }
    /// Returns the search term and clears it: it is sent to the service once.
    QString takeSearchTerm();
    quint64 lastUsedTime() const { return m_lastUsedTime; }
    void setLastUsedTime(quint64 time) { m_lastUsedTime = time; }
    bool isPrivate() const { return m_isPrivate; }
    void setPrivate(bool isPrivate) { m_isPrivate = isPrivate; }
    vela::system::SecurityPerimeter::Type securityPerimeter() const { return m_securityPerimeter; }
    SearchResultCertainty::Type certainty() const { return m_certainty; }
    void setCertainty(SearchResultCertainty::Type certainty) { m_certainty = certainty; }

    qint64 m_id = PlaceId::UNDEFINED_PERSISTED_ID;
    QString m_name;
    QString m_description;
    QString m_owner;
    QString m_source;
    QString m_searchTerm;
    quint64 m_lastUsedTime = 0;
    bool m_isPrivate = false;
    vela::system::SecurityPerimeter::Type m_securityPerimeter = vela::system::SecurityPerimeter::Default;
    SearchResultCertainty::Type m_certainty = SearchResultCertainty::Unknown;

protected:
    // Members that full places and headers have in common in JSON.
    void encodeJSONCommonData(pps_encoder_t &encoder, int &status) const;
    bool decodeJSONCommonData(pps_decoder_t &decoder);
    void encodeJSONLocation(pps_encoder_t &encoder, const Location &location) const;
    /// False, without a change of the location, when the document has none.
    bool decodeJSONLocation(pps_decoder_t &decoder, Location &location);
};

} // namespace vela::platform::places
