// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/PointOfInterestAuxiliaryData.h"

namespace vela::platform::places
{

class PointOfInterestAuxiliaryDataPrivate
{
public:
    PointOfInterestAuxiliaryDataPrivate();
    explicit PointOfInterestAuxiliaryDataPrivate(const AuxiliaryData &data);

    AuxiliaryData &auxiliaryDataRef() { return m_data; }
    const AuxiliaryData &auxiliaryDataRef() const { return m_data; }
    AuxiliaryData auxiliaryData() const { return m_data; }

    QString externalId() const { return m_data.externalId(); }
    void setExternalId(const QString &externalId) { m_data.setExternalId(externalId); }

    QString stringProperty(const QString &key) const { return m_data.property(key); }
    void setStringProperty(const QString &key, const QString &value) { m_data.addProperty(key, value); }
    /// Like stringProperty(), with the legacy form of the key as the fallback.
    QString legacyProperty(const QString &key) const;

    int utcOffsetSeconds() const;
    QMap<DayOfWeek::Type, QList<TimeRange>> openingHours() const;
    void setOpeningHours(const QMap<DayOfWeek::Type, QList<TimeRange>> &hours);
    QList<Category> categories() const;
    void setCategories(const QList<Category> &categories);

private:
    AuxiliaryData m_data;
};

} // namespace vela::platform::places
