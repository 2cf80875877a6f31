// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>

#include <optional>

namespace tool
{

/// The area between two parallels and two meridians, in degrees, edges included. It extends from west to east, so it
/// crosses the 180th meridian when `west` is larger than `east`.
struct GeoBox
{
    /// Parses "SOUTH,WEST,NORTH,EAST"; std::nullopt for any other text.
    static std::optional<GeoBox> parse(const QString &text);

    [[nodiscard]] bool contains(const vela::platform::places::Coordinates &position) const;
    [[nodiscard]] vela::platform::places::Coordinates centre() const;
    /// Largest distance of a point in the box from its centre, in metres. Half the Earth's circumference for a box of
    /// more than half the Earth.
    [[nodiscard]] double radius() const;

    double south = 0;
    double west = 0;
    double north = 0;
    double east = 0;

private:
    [[nodiscard]] double width() const { return east >= west ? east - west : east - west + 360; }
};

} // namespace tool
