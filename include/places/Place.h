// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>
#include <places/AuxiliaryData.h>
#include <places/Location.h>

#include <QtCore/QStringList>

namespace vela::platform::places
{

class PlacePrivate;

/// A place in full: everything that the service stores about it.
class PLACES_EXPORT Place : public AbstractPlace
{
    Q_OBJECT
public:
    /// A new place: not stored, without a name and without locations.
    Place();
    ~Place() override;

    // What is set here is stored by PlaceManager::addPlace() and PlaceManager::updatePlace().
    /// Sets the name that name() returns.
    void setName(const QString &name);
    /// Sets what description() returns.
    void setDescription(const QString &description);
    /// Sets what owner() returns.
    void setOwner(const QString &owner);
    /// Sets what source() returns.
    void setSource(const QString &source);
    /// Sets what isPrivate() returns.
    void setPrivate(bool isPrivate);

    /// Adds a tag: one of Tags, or any other text. False when the place has it already. Tags::MyHome and Tags::MyWork
    /// bring the aliases "Home" and "Work" with them.
    bool addTag(const QString &tag);
    /// Removes a tag and the alias that came with it. False when the place does not have it.
    bool removeTag(const QString &tag);
    using AbstractPlace::hasTag;
    /// True when the place has this tag.
    [[nodiscard]] bool hasTag(const QString &tag) const;
    /// Number of tags.
    [[nodiscard]] int tagCount() const;
    /// Tag at `index`, 0 to tagCount() - 1.
    [[nodiscard]] QString tag(int index) const;

    /// Adds another name of the place, unless it has it already.
    void addAlias(const QString &alias);
    /// Removes another name of the place, if it has it.
    void removeAlias(const QString &alias);
    /// The other names, in the order they were added.
    [[nodiscard]] QStringList aliases() const;

    /// Appends a location. A copy has no zoom. One that says nothing (no address, position or virtual data) is not
    /// stored.
    void addLocation(const Location &location);
    /// Assigns to the location at `index`, 0 to locationCount() - 1, which keeps its zoom.
    void replaceLocation(int index, const Location &location);
    /// Removes the location at `index`; without effect when there is none. Always true.
    bool removeLocation(int index);
    /// Removes the first location that equals `location`. False when there is none.
    bool removeLocation(const Location &location);
    /// Number of locations.
    [[nodiscard]] int locationCount() const;
    /// A copy of the location at `index`, 0 to locationCount() - 1. Being a copy, it has no zoom.
    [[nodiscard]] Location location(int index) const;

    /// Appends a record. One that is not persistable is not stored.
    void addAuxiliaryData(const AuxiliaryData &data);
    /// Assigns to the record at `index`, 0 to auxiliaryDataCount() - 1.
    void replaceAuxiliaryData(int index, const AuxiliaryData &data);
    /// Removes the record at `index`; without effect when there is none. Always true.
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

    /// True when the place has a location; only such a place can be stored.
    [[nodiscard]] bool isValid() const;

    /// How often the place was used.
    [[nodiscard]] int usageCount() const;
    /// Time the place was stored, in seconds since 1970-01-01T00:00:00 UTC; 0 when not stored.
    [[nodiscard]] quint64 creationTime() const;
    /// Time of the last change, in seconds since 1970-01-01T00:00:00 UTC; 0 when not stored.
    [[nodiscard]] quint64 updateTime() const;
    /// Time from which the place is no longer of use, in seconds since 1970-01-01T00:00:00 UTC; 0 for never.
    [[nodiscard]] quint64 expiryTime() const;
    void setExpiredTime(quint64 time);

private:
    friend class PlacePrivate;
    PlacePrivate *privatePart();
    [[nodiscard]] const PlacePrivate *privatePart() const;
};

} // namespace vela::platform::places
