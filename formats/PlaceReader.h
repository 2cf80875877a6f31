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

/// Kind of a member of a file. By default only members of kind Place are imported.
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
    QString where = {};                                        ///< Name for users, such as "feature 3".
    std::unique_ptr<vela::platform::places::Place> place = {}; ///< A new place; null when the member is not a place.
    QString problem = {}; ///< Why the member is not a place; empty for the other kinds.
    MemberKind kind = MemberKind::Place;
    QString id = {};         ///< Id in the file, as text; empty when it has none.
    QStringList losses = {}; ///< Messages about values that are lost. The place is imported without them.
};

/// Receives a member of a file. Returns false to stop reading.
using TakePlace = std::function<bool(ReadPlace read)>;

/// Options of the user for reading a file.
struct ReadOptions
{
    bool areas = false; ///< Lines and areas become places at one of their points.
    /// Property names by column headings of a table; other headings are detected.
    QMap<QString, QString> columns = {};
    /// Called with a message about a detected property of the file, such as its delimiter; may be empty.
    std::function<void(const QString &note)> note = {};
};

/// Reads a file member by member and hands out each one, including those before an error in the file. Returns the error
/// of the file; empty on success and when `take` stops the reading.
using ReadPlaces = QString (*)(Input &input, const ReadOptions &options, const TakePlace &take);

} // namespace formats
