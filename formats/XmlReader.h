// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceReader.h"

#include <QtCore/QVector>

namespace formats
{

/// An attribute or nested element of a member of an XML file, with its path of local names below the member ("@lat",
/// "link@href", "Point/coordinates"). An element is added when it ends.
struct XmlField
{
    QString path;
    QString value; ///< Value or text, without white space at its ends.
};

/// The content of a member of an XML file.
struct XmlMember
{
    QVector<XmlField> fields;
    QStringList folders; ///< Names of the folders that contain it, the outermost first.

    /// The first value with this path; empty when there is none.
    [[nodiscard]] QString value(const char *path) const;
};

/// An element that is a member of the file.
struct XmlElement
{
    const char *name; ///< Local name.
    const char *unit; ///< Its name for users.
    /// Sets all of `read` except `where`. Null for an element that never is a place; only its name is read.
    void (*fill)(const XmlMember &member, const ReadOptions &options, ReadPlace &read);
    MemberKind kind = MemberKind::Place; ///< Kind of an element without `fill`.
};

/// Differences between the XML formats.
struct XmlFormat
{
    const char *root; ///< Local name of the root element.
    QVector<XmlElement> elements;
    /// Local name of the elements that group members and have a child "name"; null when there are none.
    const char *folder;
    /// A second namespace to read besides that of the root, and the prefix of its elements in paths.
    const char *extension;
    const char *prefix;
};

/// Reads a document token by token. Memory is limited by the size of a token and of a member. Document types are
/// refused, so a document cannot declare entities. Elements of other namespaces are skipped. Returns the error of the
/// file, as ReadPlaces does.
QString readXml(Input &input, const XmlFormat &format, const ReadOptions &options, const TakePlace &take);

} // namespace formats
