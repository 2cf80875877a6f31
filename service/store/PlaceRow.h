// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/Coordinates.h"
#include "store/Facets.h"
#include "text/TermTest.h"
#include "text/TextKeys.h"

#include <vela/system/SecurityPerimeter.h>

#include <QtCore/QList>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace vela::platform::places
{
class AuxiliaryData;
}

namespace placesd
{

/// Tests whether a place has a facet: by text, or by number where numbers are known.
struct FacetTest
{
    FacetKind kind;
    TextTest text;
    std::shared_ptr<const std::vector<qint64>> numbers; ///< Sorted numbers of all stored facets whose text passes the
                                                        ///< test.
};

/// Tests whether a record of a place has a property whose key and value, without case and accents, both pass.
struct PropertyTest
{
    std::optional<TextTest> key;   ///< Unset: any key.
    std::optional<TextTest> value; ///< Unset: any value.

    /// @param requireTime called before each property, to check the deadline; may throw.
    [[nodiscard]] bool operator()(const QList<vela::platform::places::AuxiliaryData> &records,
                                  const std::function<void()> &requireTime) const;
};

/// The values of a place that a find uses. Texts are UTF-8, valid until the next row is read. Times are seconds since
/// 1970-01-01T00:00:00 UTC.
class PlaceRow
{
public:
    PlaceRow() = default;
    PlaceRow(const PlaceRow &) = delete;
    PlaceRow &operator=(const PlaceRow &) = delete;
    virtual ~PlaceRow() = default;

    [[nodiscard]] virtual qint64 id() const = 0;
    [[nodiscard]] virtual bool isStored() const = 0;
    [[nodiscard]] virtual std::string_view nameKey() const = 0; ///< Index key.
    [[nodiscard]] virtual std::string_view sortKey() const = 0; ///< Without case.
    [[nodiscard]] virtual vela::system::SecurityPerimeter::Type perimeter() const = 0;
    [[nodiscard]] virtual int persistenceMask() const = 0;
    [[nodiscard]] virtual qint64 usageCount() const = 0;
    [[nodiscard]] virtual qint64 lastUsedTime() const = 0;
    [[nodiscard]] virtual qint64 creationTime() const = 0;
    [[nodiscard]] virtual qint64 updateTime() const = 0;
    /// Position of the first location that has one; else invalid.
    [[nodiscard]] virtual vela::platform::places::Coordinates position() const = 0;
    [[nodiscard]] virtual bool passes(const FacetTest &test) const = 0;
    [[nodiscard]] virtual bool passes(const PropertyTest &test) const = 0;
    [[nodiscard]] virtual bool passes(const TermTest &test) const = 0;
};

} // namespace placesd
