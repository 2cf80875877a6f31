// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"
#include "PlaceWriter.h"

#include <QtCore/QByteArray>
#include <QtCore/QStringList>

namespace formats
{

/// A form in which places are exchanged as files.
struct Format
{
    const char *name;       ///< What users call it.
    const char *extensions; ///< Of files, each between blanks.
    ReadPlaces read;
    MakePlaceWriter makeWriter; ///< Null for what is only read.
};

/// The format of this name; null when there is none.
const Format *formatByName(const QString &name);
/// The format that a file's extension stands for, before that of a compression; null when it says nothing.
const Format *formatByPath(const QString &path);
/// The format that the first bytes of a file look like.
const Format &formatByContent(const QByteArray &head);
/// The format of a file, by its name and else by its content. All forms of JSON go by the same names, so that the
/// content tells which it is.
const Format &formatOf(const Input &input);

/// The names of all formats, or of those that can be written.
QStringList formatNames(bool onlyWritable);

} // namespace formats
