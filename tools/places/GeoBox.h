// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>

#include <optional>

namespace tool
{

/// The part of the Earth between two parallels and two meridians, in degrees, with its edges. It goes from west to
/// east, so it crosses the 180th meridian when `west` is the larger one.
struct GeoBox
{
    /// Reads "SOUTH,WEST,NORTH,EAST"; nothing when the text is none.
    static std::optional<GeoBox> parse(const QString &text);

    [[nodiscard]] bool contains(const vela::platform::places::Coordinates &position) const;
    [[nodiscard]] vela::platform::places::Coordinates centre() const;
    /// No point of the box is further from the centre, in metres. Half the Earth's circumference for a box of more than
    /// half the Earth.
    [[nodiscard]] double radius() const;

    double south = 0;
    double west = 0;
    double north = 0;
    double east = 0;

private:
    [[nodiscard]] double width() const { return east >= west ? east - west : east - west + 360; }
};

} // namespace tool
