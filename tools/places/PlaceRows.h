// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "formats/GeoJsonWriter.h"

#include <places/Coordinates.h>

#include <QtCore/QStringList>

/// Places as rows of a list.
namespace tool
{

/// What a result of a search is.
enum class ResultKind
{
    Place,
    Term,    ///< A term that was searched for before. Its name is to be searched for.
    Category ///< A suggested category. Places of the category of this name are to be searched for.
};
ResultKind kindOf(const vela::platform::places::AbstractPlace &result);

struct RowFormat
{
    vela::platform::places::Coordinates centre; ///< Rows end with the distance from here, if it is valid.
    int columns = 0;                            ///< Columns of the terminal; 0 when there is no limit.
    bool hasIds = true;                         ///< Rows begin with the number of the place.
};

/// A row for each place: its number, a star for a favourite, its name with a short description behind it, where it is,
/// how far away. When there is little room, addresses lose what names say already, and the ends that all of them share,
/// such as the country. Then both are cut, but addresses keep a third, so that places of one name can be told apart.
QStringList rowsOf(const formats::PlaceList &places, const RowFormat &format);

} // namespace tool
