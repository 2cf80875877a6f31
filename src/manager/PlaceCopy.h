// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QVariant>

#include <memory>

namespace vela::platform::places
{

class AbstractPlace;
class AbstractPlacePrivate;

/// An immutable copy of a place without its QObject, which belongs to one thread. Copies share it across threads.
class PlaceCopy
{
public:
    explicit PlaceCopy(const AbstractPlace &place);

    /// A full place or a header with the same values. It belongs to the calling thread.
    [[nodiscard]] std::unique_ptr<AbstractPlace> toPlace() const;

private:
    std::shared_ptr<const AbstractPlacePrivate> m_data;
    QMap<QByteArray, QVariant> m_properties; ///< Dynamic properties that an application set on the object.
};

} // namespace vela::platform::places
