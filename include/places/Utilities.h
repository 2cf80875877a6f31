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

/// Helpers without state.
class PLACES_EXPORT Utilities
{
public:
    /// Length of the great circle between two points in metres, by the haversine formula on a sphere of the Earth's
    /// mean radius, 6371009 m. NaN when a latitude or longitude is unknown.
    [[nodiscard]] static double calculateDistanceInMeter(const Coordinates &a, const Coordinates &b);

    /// The UTF-8 bytes of a text.
    [[nodiscard]] static std::string toStdString(const QString &text);

    /// Replaces every occurrence of `from` in `text`. An empty `from` occurs nowhere.
    static void replaceAll(std::string &text, const std::string &from, const std::string &to);

    /// True when every element of `a` occurs somewhere in `b`; order and repetition do not count.
    template <typename List>
    [[nodiscard]] static bool equalsByValue(const List &a, const List &b)
    {
        return std::all_of(a.begin(), a.end(), [&](const auto &element) { return b.contains(element); });
    }

    /// Fills a new place from a link that AbstractPlace::mapUrl() made, or one of its kind on any host: name,
    /// description, address, position, and in a record of points of interest the telephone number, e-mail and web
    /// address. False, and the place stays as it is, for a link without a valid position and without any part of an
    /// address.
    [[nodiscard]] static bool readMapUrl(const QUrl &url, Place &place);

    /// Writes a place as bytes that deserialize() reads on a machine of the same byte order. On success `out` is an
    /// array of `size` bytes that the caller frees with `delete[]`; on failure both stay as they are.
    [[nodiscard]] static bool serialize(char *&out, int &size, const Place &place);

    /// Reads a place back. On success `out` is a new place that the caller owns; on failure it stays as it is.
    [[nodiscard]] static bool deserialize(Place *&out, const char *data, int size);
};

} // namespace vela::platform::places
