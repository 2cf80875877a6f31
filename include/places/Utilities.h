// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <places/Coordinates.h>
#include <places/Global.h>

#include <QtCore/QString>
#include <QtCore/QUrl>

#include <algorithm>
#include <string>

namespace vela::platform::places
{

class Place;

/// Stateless helpers.
class PLACES_EXPORT Utilities
{
public:
    /// Great-circle distance between two points in metres, by the haversine formula on a sphere with the Earth's mean
    /// radius, 6371009 m. NaN when a latitude or longitude is unknown.
    [[nodiscard]] static double calculateDistanceInMeter(const Coordinates &a, const Coordinates &b);

    /// The text in UTF-8.
    [[nodiscard]] static std::string toStdString(const QString &text);

    /// Replaces all occurrences of `from` in `text`. No effect when `from` is empty.
    static void replaceAll(std::string &text, const std::string &from, const std::string &to);

    /// True when every element of `a` occurs in `b`; order and number do not matter.
    template <typename List>
    [[nodiscard]] static bool equalsByValue(const List &a, const List &b)
    {
        return std::all_of(a.begin(), a.end(), [&](const auto &element) { return b.contains(element); });
    }

    /// Fills a new place from a link of AbstractPlace::mapUrl() or a similar link on any host: name, description,
    /// address, position, and in a record of points of interest the telephone number, e-mail and web address. False,
    /// without changes, for a link without a valid position and without any part of an address.
    [[nodiscard]] static bool readMapUrl(const QUrl &url, Place &place);

    /// Writes a place as bytes for deserialize() on a machine of the same byte order. On success `out` is an array of
    /// `size` bytes that the caller frees with `delete[]`; on failure both are unchanged.
    [[nodiscard]] static bool serialize(char *&out, int &size, const Place &place);

    /// Reads a place. On success `out` is a new place owned by the caller; on failure it is unchanged.
    [[nodiscard]] static bool deserialize(Place *&out, const char *data, int size);
};

} // namespace vela::platform::places
