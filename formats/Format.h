// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"
#include "PlaceWriter.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

/// A file format for places.
struct Format
{
    const char *name;       ///< Name for users.
    const char *extensions; ///< File name extensions, each between blanks.
    ReadPlaces read;
    MakePlaceWriter makeWriter; ///< Null for a format that can only be read.
};

/// The format with this name; null when there is none.
const Format *formatByName(const QString &name);
/// The format of a file's extension, without a compression extension such as ".gz"; null when the extension is unknown.
const Format *formatByPath(const QString &path);
/// The format of a file by its first bytes.
const Format &formatByContent(const QByteArray &head);
/// The format of a file by its extension, or by its content when the extension is unknown. The JSON formats share their
/// extensions, so they are always detected by content.
const Format &formatOf(const Input &input);

/// The names of all formats, or of those that can be written.
QStringList formatNames(bool onlyWritable);

} // namespace formats
