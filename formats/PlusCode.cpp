// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "PlusCode.h"

#include <places/Utilities.h>

#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace formats
{

using namespace vela::platform::places;

namespace
{

const QString DIGITS = QStringLiteral("23456789CFGHJMPQRVWX");
constexpr int BASE = 20;
/// The first digits are pairs, latitude first. Each digit after these pairs selects a cell of a grid in the last area.
constexpr int PAIR_DIGITS = 10;
constexpr int GRID_ROWS = 5;
constexpr int GRID_COLUMNS = 4;
/// Further digits are ignored.
constexpr int MAX_DIGITS = 15;

/// An area; row and column count areas of its own size from 90 degrees south and 180 degrees west.
struct Area
{
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::int64_t rowsPerDegree = 1;
    std::int64_t columnsPerDegree = 1;

    [[nodiscard]] double latitude(double part) const
    {
        return (static_cast<double>(row) + part) / static_cast<double>(rowsPerDegree) - 90;
    }
    [[nodiscard]] double longitude(double part) const
    {
        return (static_cast<double>(column) + part) / static_cast<double>(columnsPerDegree) - 180;
    }
};

/// The area of a code with at least one pair of digits. The first pair is in steps of 20 degrees.
Area areaOf(const QString &digits)
{
    Area area;
    const int count = std::min(digits.size(), MAX_DIGITS);
    const auto value = [&digits](int i) { return std::int64_t(DIGITS.indexOf(digits[i])); };
    for (int i = 0; i + 1 < std::min(count, PAIR_DIGITS); i += 2) {
        area.row = area.row * BASE + value(i);
        area.column = area.column * BASE + value(i + 1);
        area.rowsPerDegree *= i < 4 ? 1 : BASE;
    }
    area.columnsPerDegree = area.rowsPerDegree;
    for (int i = PAIR_DIGITS; i < count; ++i) {
        area.row = area.row * GRID_ROWS + value(i) / GRID_COLUMNS;
        area.column = area.column * GRID_COLUMNS + value(i) % GRID_COLUMNS;
        area.rowsPerDegree *= GRID_ROWS;
        area.columnsPerDegree *= GRID_COLUMNS;
    }
    if (count == 2) {
        // With one pair the area is 20 degrees wide, so areas per degree would not be an integer.
        area.row *= BASE;
        area.column *= BASE;
    }
    return area;
}

Coordinates centreOf(const QString &digits)
{
    const Area area = areaOf(digits);
    const double half = digits.size() == 2 ? BASE / 2.0 : 0.5;
    Coordinates centre(area.latitude(half), area.longitude(half));
    const Coordinates corner(area.latitude(0), area.longitude(0));
    // Rounded up to a decimetre.
    const double radius = std::ceil(Utilities::calculateDistanceInMeter(centre, corner) * 10) / 10;
    centre.setHorizontalAccuracy(static_cast<float>(radius));
    return centre;
}

} // namespace

ReadPosition readPlusCode(const QString &text)
{
    // Zeros before the plus sign replace the digits of a large area; no digits follow the plus sign then.
    static const QRegularExpression FULL(
        QStringLiteral(R"(\A(?=[0-9A-Z]{8}\+)((?:[%1]{2}){1,4})(0*)\+([%1]{2,})?\z)").arg(DIGITS),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression SHORT(QStringLiteral(R"(\A(?:[%1]{2}){2,3}\+[%1]{2,7}(?:[\s,].*)?\z)").arg(DIGITS),
                                          QRegularExpression::CaseInsensitiveOption);
    const QString code = text.trimmed();
    const QRegularExpressionMatch match = FULL.match(code);
    if (match.hasMatch()) {
        const QString digits = (match.captured(1) + match.captured(3)).toUpper();
        const bool isPadded = !match.captured(2).isEmpty();
        const bool isOnEarth = DIGITS.indexOf(digits[0]) < 180 / BASE && DIGITS.indexOf(digits[1]) < 360 / BASE;
        if (isPadded && !match.captured(3).isEmpty())
            return {{}, QStringLiteral("a plus code with zeros must end with its plus sign")};
        if (!isOnEarth)
            return {{}, QStringLiteral("the plus code is beyond the Earth: it begins with %1").arg(digits.left(2))};
        return {centreOf(digits), {}};
    }
    if (SHORT.match(code).hasMatch())
        return {{},
                QStringLiteral("a short plus code is only valid near a place, which it does not name; write the "
                               "full code, such as 8FVC9G8F+6X")};
    return {};
}

} // namespace formats
