// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>

namespace vela::platform::places
{

class PlaceHeaderPrivate;

/// A place as returned by lists and searches: one location, and a summary of the full place. PlaceManager::getPlace()
/// fetches the full place.
class PLACES_EXPORT PlaceHeader : public AbstractPlace
{
    Q_OBJECT
public:
    /// Whether the full place has a tag or record.
    enum Presence : int
    {
        Unknown = 0, ///< 0: the header does not know.
        Present = 1, ///< 1: the full place has it.
        Absent = 2,  ///< 2: the full place does not have it.
    };
    Q_ENUM(Presence)

    PlaceHeader();
    ~PlaceHeader() override;

    using AbstractPlace::hasTag;
    /// Whether the full place has `tag`, as a Presence. Tags other than those of Tags are Unknown when the place has
    /// any tag.
    [[nodiscard]] int hasTag(const QString &tag) const;

    using AbstractPlace::hasAuxiliaryData;
    /// Whether the full place has a record of this type, as a Presence. Types other than contact, calendar and point of
    /// interest are Unknown when the place has any record.
    [[nodiscard]] int hasAuxiliaryData(const QString &type) const;

private:
    friend class PlaceHeaderPrivate;
    PlaceHeaderPrivate *privatePart();
    [[nodiscard]] const PlaceHeaderPrivate *privatePart() const;
};

} // namespace vela::platform::places
