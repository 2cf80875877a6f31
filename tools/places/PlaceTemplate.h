// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>

#include <QtCore/QString>
#include <QtCore/QVector>

#include <functional>

namespace vela::platform::places
{
class AbstractPlace;
}

namespace tool
{

/// The form of a row that a script asks for: texts, escapes, and members of a place in braces: "{id}\t{name}".
class PlaceTemplate
{
public:
    /// Parses a template. Returns what is wrong with it, for users; empty on success.
    [[nodiscard]] static QString parse(const QString &text, PlaceTemplate &result);

    /// The row of a place. Unset values are empty, and blanks replace their control characters and line ends.
    /// @param centre distances are measured from here; not valid for none.
    [[nodiscard]] QString row(const vela::platform::places::AbstractPlace &place,
                              const vela::platform::places::Coordinates &centre) const;

    /// The value of a member.
    using Value = std::function<QString(const vela::platform::places::AbstractPlace &place,
                                        const vela::platform::places::Coordinates &centre)>;

private:
    struct Part
    {
        QString text; ///< Written as it is.
        Value value;  ///< Follows the text if it is not empty.
    };

    QVector<Part> m_parts;
};

} // namespace tool
