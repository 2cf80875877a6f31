// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Error.h>
#include <places/Place.h>
#include <places/PlaceHeader.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <memory>

/// Places as JSON documents (RFC 8259): the form in which a place is handed to another application.
///
/// A document is UTF-8 text, one JSON object without line feeds. Its member "complete" tells which of two documents it
/// is: true for a full place, false for a header. It holds the first location of a place only, and neither source,
/// search term, virtual data, bounding box and zoom, nor the providers of records.
///
/// The texts in a document are those of ISO 8859-1. Each unit of UTF-16 that is not (Cyrillic letters take one, emoji
/// two), and the null character, becomes "?", both in what is written and in what is read, however it is spelled.
///
/// The functions have no state and are safe on any thread, as far as the places are.
namespace vela::platform::places::PlaceJson
{

/// The document of a full place or of a header. Empty only when memory does not suffice.
[[nodiscard]] PLACES_EXPORT QByteArray write(const AbstractPlace &place);

/// The place of a document: a Place or a PlaceHeader, as the document says. Every member but "complete" may be missing;
/// one that is missing, of another type, or a number that does not fit is as in a new place, and one that is not known
/// is passed over. Of members of one name the first counts, in the properties of a record the last.
///
/// Null, with `error` set to Error::InvalidArgument and `reason` to a sentence in English, when the text is not UTF-8,
/// is not JSON, is nested deeper than 256 levels, holds a number beyond the range of a double, is not an object, or has
/// no boolean "complete". Null with Error::Unspecified when memory does not suffice. Otherwise `error` is
/// Error::Success and `reason` is empty. Both may be null.
[[nodiscard]] PLACES_EXPORT std::unique_ptr<AbstractPlace>
read(const QByteArray &document, Error::Type *error = nullptr, QString *reason = nullptr);

/// As read(), for those who need a full place: the document of a header is Error::InvalidArgument too.
[[nodiscard]] PLACES_EXPORT std::unique_ptr<Place> readPlace(const QByteArray &document, Error::Type *error = nullptr,
                                                             QString *reason = nullptr);

} // namespace vela::platform::places::PlaceJson
