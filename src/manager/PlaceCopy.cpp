// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "manager/PlaceCopy.h"

#include "model/PlaceHeaderPrivate.h"
#include "model/PlacePrivate.h"

namespace vela::platform::places
{

namespace
{

template <typename PlaceType, typename Private>
std::unique_ptr<AbstractPlace> placeOf(const Private &data)
{
    auto place = std::make_unique<PlaceType>();
    *Private::privateFromPublic(place.get()) = data;
    return place;
}

} // namespace

PlaceCopy::PlaceCopy(const AbstractPlace &place)
{
    const AbstractPlacePrivate *data = AbstractPlacePrivate::privateFromPublic(&place);
    if (const auto *full = dynamic_cast<const PlacePrivate *>(data))
        m_data = std::make_shared<PlacePrivate>(*full);
    else if (const auto *header = dynamic_cast<const PlaceHeaderPrivate *>(data))
        m_data = std::make_shared<PlaceHeaderPrivate>(*header);
    const QList<QByteArray> names = place.dynamicPropertyNames();
    for (const QByteArray &name : names)
        m_properties.insert(name, place.property(name.constData()));
}

std::unique_ptr<AbstractPlace> PlaceCopy::toPlace() const
{
    std::unique_ptr<AbstractPlace> place;
    if (const auto *full = dynamic_cast<const PlacePrivate *>(m_data.get()))
        place = placeOf<Place>(*full);
    else if (const auto *header = dynamic_cast<const PlaceHeaderPrivate *>(m_data.get()))
        place = placeOf<PlaceHeader>(*header);
    for (auto property = m_properties.begin(); place && property != m_properties.end(); ++property)
        place->setProperty(property.key().constData(), property.value());
    return place;
}

} // namespace vela::platform::places
