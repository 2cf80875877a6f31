// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Place.h>

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>
#include <memory>

namespace formats
{

class Input;

/// What a member of a file is. Only a place at a point is imported without being asked for.
enum class MemberKind
{
    Place,
    Line,
    Area,
    Track,
    Route,
};

/// One member of a file of places.
struct ReadPlace
{
    QString where = {};                                        ///< Its name for users: "feature 3".
    std::unique_ptr<vela::platform::places::Place> place = {}; ///< A new place; null when the member is no place.
    QString problem = {};                                      ///< Why the member is no place; empty for another kind.
    MemberKind kind = MemberKind::Place;
    QString id = {};         ///< Its own id in the file, as text; empty when it has none.
    QStringList losses = {}; ///< Values that could not be kept, a sentence each. The place is imported without them.
};

/// Takes a member of a file; returns false to stop reading.
using TakePlace = std::function<bool(ReadPlace read)>;

/// What the user can say about a file.
struct ReadOptions
{
    bool areas = false; ///< Lines and areas become places at a point inside.
    /// Names of properties by the headings of a table's columns; other headings are looked up as usual.
    QMap<QString, QString> columns = {};
    /// Called with a sentence about what was found out about the file, such as its delimiter; may be empty.
    std::function<void(const QString &note)> note = {};
};

/// Reads a file member by member and hands out each one, also those before an error in the file. Returns the error of
/// the file; empty on success and when `take` stops the reading.
using ReadPlaces = QString (*)(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
