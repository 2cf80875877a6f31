// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/GeoJsonWriter.h"

#include <places/Coordinates.h>

#include <QtCore/QStringList>

/// Places as rows of a list.
namespace tool
{

/// Kind of a search result.
enum class ResultKind
{
    Place,
    Term,    ///< A recent search term. To search for its name.
    Category ///< A suggested category. To search for places of this category.
};
ResultKind kindOf(const vela::platform::places::AbstractPlace &result);

struct RowFormat
{
    vela::platform::places::Coordinates centre; ///< Rows end with distance and direction from here if it is valid.
    int columns = 0;                            ///< Width of the terminal in columns; 0 for no limit.
    bool hasIds = true;                         ///< Rows contain the number of the place.
    int firstNumber = 0;                        ///< Rows begin with numbers from this one on; 0 for none.
};

/// One row per place: number, star for a favourite, name with a short description, address, and the distance from the
/// centre or else the position. When there is little room, the position is left out, and addresses lose parts that the
/// name contains and last parts that all rows share, such as the country. Then names and addresses are cut; addresses
/// keep a third, to tell places of the same name apart.
QStringList rowsOf(const formats::PlaceList &places, const RowFormat &format);

/// Latitude and longitude in degrees, to about a metre.
QString pointText(const vela::platform::places::Coordinates &point);

} // namespace tool
