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

/// All that a place says, apart from the object, which belongs to one thread. It never changes, so copies share it on
/// any threads.
class PlaceCopy
{
public:
    explicit PlaceCopy(const AbstractPlace &place);

    /// A full place or a header that says the same. It lives in the calling thread.
    [[nodiscard]] std::unique_ptr<AbstractPlace> toPlace() const;

private:
    std::shared_ptr<const AbstractPlacePrivate> m_data;
    QMap<QByteArray, QVariant> m_properties; ///< What an application attached to the object.
};

} // namespace vela::platform::places
