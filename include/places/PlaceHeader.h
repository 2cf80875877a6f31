// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/AbstractPlace.h>

namespace vela::platform::places
{

class PlaceHeaderPrivate;

/// A place in short, as listings and searches return it: one location, and a summary of what the full place has.
/// PlaceManager::getPlace() fetches the full place.
class PLACES_EXPORT PlaceHeader : public AbstractPlace
{
    Q_OBJECT
public:
    /// What a header knows of the full place.
    enum Presence : int
    {
        Unknown = 0, ///< 0: the header cannot tell.
        Present = 1, ///< 1: the full place has it.
        Absent = 2,  ///< 2: the full place does not have it.
    };
    Q_ENUM(Presence)

    PlaceHeader();
    ~PlaceHeader() override;

    using AbstractPlace::hasTag;
    /// Whether the full place carries `tag`, as a Presence. Tags other than those of Tags are Unknown as soon as the
    /// place has any tag.
    [[nodiscard]] int hasTag(const QString &tag) const;

    using AbstractPlace::hasAuxiliaryData;
    /// Whether the full place has a record of this type, as a Presence. Types other than contact, calendar and point of
    /// interest are Unknown as soon as the place has any record.
    [[nodiscard]] int hasAuxiliaryData(const QString &type) const;

private:
    friend class PlaceHeaderPrivate;
    PlaceHeaderPrivate *privatePart();
    [[nodiscard]] const PlaceHeaderPrivate *privatePart() const;
};

} // namespace vela::platform::places
