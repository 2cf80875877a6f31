// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>
#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

/// Places as JSON documents (RFC 8259), for passing a place to another application.
///
/// A document is UTF-8 text with one JSON object and no line feeds. Its member "complete" is true for a full place,
/// false for a header. It contains only the first location of a place, and neither source, search term, virtual data,
/// bounding box, zoom nor the providers of records.
///
/// Texts in a document are limited to ISO 8859-1. Each other UTF-16 unit (one for a Cyrillic letter, two for an emoji)
/// and the null character become "?", in writing and in reading, also when they are written as escapes.
///
/// The functions are stateless and thread-safe, as far as the places are.
namespace vela::platform::places::PlaceJson
{

/// The document of a full place or a header. Empty only when memory is exhausted.
[[nodiscard]] PLACES_EXPORT QByteArray write(const AbstractPlace &place);

/// The place of a document: a Place or a PlaceHeader. All members except "complete" are optional. A member that is
/// missing, of another type or out of range gets its default, and unknown members are ignored. For repeated names the
/// first member counts, in the properties of a record the last.
///
/// Null with Error::InvalidArgument, and `reason` set to an English sentence, when the text is not UTF-8, is not JSON,
/// is nested deeper than 256 levels, contains a number beyond the range of double, is not an object, or has no boolean
/// "complete". Null with Error::Unspecified when memory is exhausted. Otherwise `error` is Error::Success and `reason`
/// is empty. `error` and `reason` may be null.
[[nodiscard]] PLACES_EXPORT std::unique_ptr<AbstractPlace>
read(const QByteArray &document, Error::Type *error = nullptr, QString *reason = nullptr);

/// Like read(), for full places only: Error::InvalidArgument for the document of a header.
[[nodiscard]] PLACES_EXPORT std::unique_ptr<Place> readPlace(const QByteArray &document, Error::Type *error = nullptr,
                                                             QString *reason = nullptr);

} // namespace vela::platform::places::PlaceJson
