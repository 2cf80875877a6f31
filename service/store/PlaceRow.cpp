// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/PlaceRow.h"

#include "places/AuxiliaryData.h"

#include <algorithm>

namespace placesd
{

using vela::platform::places::AuxiliaryData;

namespace
{

bool passes(const std::optional<TextTest> &test, const QString &text)
{
    return !test || (*test)(searchKey(text).toStdString());
}

} // namespace

bool PropertyTest::operator()(const QList<AuxiliaryData> &records, const std::function<void()> &requireTime) const
{
    return std::any_of(records.begin(), records.end(), [&](const AuxiliaryData &record) {
        const QMap<QString, QString> properties = record.properties();
        for (auto property = properties.begin(); property != properties.end(); ++property) {
            requireTime();
            if (passes(key, property.key()) && passes(value, property.value()))
                return true;
        }
        return false;
    });
}

} // namespace placesd
