// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/AuxiliaryData.h>
#include <places/Location.h>

#include <QtCore/QStringList>

namespace vela::platform::places
{

class PlacePrivate;

/// A full place with all values that the service stores.
class PLACES_EXPORT Place : public AbstractPlace
{
    Q_OBJECT
public:
    /// A new place: not stored, without a name and without locations.
    Place();
    ~Place() override;

    // PlaceManager::addPlace() and PlaceManager::updatePlace() store these values.
    /// Sets name().
    void setName(const QString &name);
    /// Sets description().
    void setDescription(const QString &description);
    /// Sets owner().
    void setOwner(const QString &owner);
    /// Sets source().
    void setSource(const QString &source);
    /// Sets isPrivate().
    void setPrivate(bool isPrivate);

    /// Adds a tag: one of Tags, or any other text. False when the place has it already. Tags::MyHome and Tags::MyWork
    /// also add the aliases "Home" and "Work".
    bool addTag(const QString &tag);
    /// Removes a tag and its alias. False when the place does not have it.
    bool removeTag(const QString &tag);
    using AbstractPlace::hasTag;
    /// True when the place has this tag.
    [[nodiscard]] bool hasTag(const QString &tag) const;
    /// Number of tags.
    [[nodiscard]] int tagCount() const;
    /// Tag at `index`, 0 to tagCount() - 1.
    [[nodiscard]] QString tag(int index) const;

    /// Adds an alias, unless the place has it already.
    void addAlias(const QString &alias);
    /// Removes an alias, if the place has it.
    void removeAlias(const QString &alias);
    /// The aliases, in the order of their addition.
    [[nodiscard]] QStringList aliases() const;

    /// Appends a copy of a location, without its zoom. An empty location (no address, position or virtual data) is not
    /// stored.
    void addLocation(const Location &location);
    /// Assigns to the location at `index`, 0 to locationCount() - 1; its zoom is unchanged.
    void replaceLocation(int index, const Location &location);
    /// Removes the location at `index`; no effect when there is none. Always true.
    bool removeLocation(int index);
    /// Removes the first location that equals `location`. False when there is none.
    bool removeLocation(const Location &location);
    /// Number of locations.
    [[nodiscard]] int locationCount() const;
    /// A copy of the location at `index`, 0 to locationCount() - 1, without its zoom.
    [[nodiscard]] Location location(int index) const;

    /// Appends a record. One that is not persistable is not stored.
    void addAuxiliaryData(const AuxiliaryData &data);
    /// Assigns to the record at `index`, 0 to auxiliaryDataCount() - 1.
    void replaceAuxiliaryData(int index, const AuxiliaryData &data);
    /// Removes the record at `index`; no effect when there is none. Always true.
    bool removeAuxiliaryData(int index);
    /// Removes the first record that equals `data`. False when there is none.
    bool removeAuxiliaryData(const AuxiliaryData &data);
    /// Number of records.
    [[nodiscard]] int auxiliaryDataCount() const;
    /// A copy of the record at `index`, 0 to auxiliaryDataCount() - 1.
    [[nodiscard]] AuxiliaryData auxiliaryData(int index) const;
    using AbstractPlace::hasAuxiliaryData;
    /// True when the place has a record of this type.
    [[nodiscard]] bool hasAuxiliaryData(const QString &type) const;

    /// True when the place has a location; other places cannot be stored.
    [[nodiscard]] bool isValid() const;

    /// Number of uses.
    [[nodiscard]] int usageCount() const;
    /// Time the place was stored, in seconds since 1970-01-01T00:00:00 UTC; 0 when not stored.
    [[nodiscard]] quint64 creationTime() const;
    /// Time of the last change, in seconds since 1970-01-01T00:00:00 UTC; 0 when not stored.
    [[nodiscard]] quint64 updateTime() const;
    /// Expiry time, in seconds since 1970-01-01T00:00:00 UTC; 0 for never.
    [[nodiscard]] quint64 expiryTime() const;
    void setExpiredTime(quint64 time);

private:
    friend class PlacePrivate;
    PlacePrivate *privatePart();
    [[nodiscard]] const PlacePrivate *privatePart() const;
};

} // namespace vela::platform::places
