// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Position.h"

#include "Feature.h"
#include "PlusCode.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QVector>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <optional>

namespace formats
{

using namespace vela::platform::places;

namespace
{

constexpr char SCHEME[] = "geo:";
/// Maximum length of a position; it bounds the work.
constexpr int MAX_POSITION_SIZE = 200;

/// A number in the form of RFC 5870: without a plus sign or exponent.
std::optional<double> parseNumber(const QString &text)
{
    static const QRegularExpression NUMBER(QStringLiteral(R"(\A-?[0-9]+(\.[0-9]+)?\z)"));
    return NUMBER.match(text).hasMatch() ? std::optional(text.toDouble()) : std::nullopt;
}

// --------------------------------------------------------------------------------------------- as people write them

/// Replaces the variants of a character that keyboards and text programs produce.
QString plainCharacters(QString text)
{
    static constexpr struct
    {
        char16_t form;
        const char *plain;
    } FORMS[] = {
        {u'\u2212', "-"},    {u'\u2010', "-"},  {u'\u2011', "-"},  {u'\u2013', "-"}, {u'\u00ba', "\xb0"},
        {u'\u02da', "\xb0"}, {u'\u2032', "'"},  {u'\u2019', "'"},  {u'\u00b4', "'"}, {u'\u02b9', "'"},
        {u'\u2033', "\""},   {u'\u201d', "\""}, {u'\u02ba', "\""}, {u'\u00a0', " "}, {u'\u202f', " "},
        {u'\u2009', " "},    {u'\t', " "},
    };
    for (const auto &each : FORMS)
        text.replace(QChar(each.form), QLatin1String(each.plain));
    return text.replace(QLatin1String("''"), QLatin1String("\"")).trimmed().toUpper();
}

/// True when the commas between two digits are decimal commas: something else separates the two coordinates, and no
/// number has a decimal point.
bool hasDecimalCommas(const QString &text)
{
    static const QRegularExpression TIGHT(QStringLiteral("[0-9],[0-9]"));
    static const QRegularExpression DIVIDED(QStringLiteral("[; ]|,(?![0-9])|(?<![0-9]),|.[NSEW]."));
    return !text.contains(QLatin1Char('.')) && TIGHT.match(text).hasMatch() && DIVIDED.match(text).hasMatch();
}

/// A number, or a character: a symbol of a unit (° ' "), a sign, a hemisphere (N S E W) or a comma between coordinates.
struct Token
{
    QChar symbol; ///< Null for a number.
    double number = 0;
    bool isWhole = false;
};

using Tokens = QVector<Token>;

/// The tokens of a text; std::nullopt when it contains anything else.
std::optional<Tokens> tokensOf(const QString &text)
{
    static const QRegularExpression TOKEN(QStringLiteral("\\G *(?:([0-9]+(?:\\.[0-9]+)?)|([NSEW+,;'\"\u00b0-]))"));
    static const QRegularExpression EXPONENT(QStringLiteral("[0-9]E[0-9]"));
    QString plain = plainCharacters(text);
    if (EXPONENT.match(plain).hasMatch())
        return std::nullopt;
    if (hasDecimalCommas(plain))
        plain.replace(QRegularExpression(QStringLiteral("(?<=[0-9]),(?=[0-9])")), QStringLiteral("."));
    Tokens tokens;
    int at = 0;
    for (auto match = TOKEN.match(plain); match.hasMatch(); match = TOKEN.match(plain, at)) {
        at = match.capturedEnd();
        if (const QString number = match.captured(1); !number.isEmpty())
            tokens.append({QChar(), number.toDouble(), !number.contains(QLatin1Char('.'))});
        else
            tokens.append({match.captured(2) == QLatin1String(";") ? QChar(u',') : match.captured(2).at(0)});
    }
    return at == plain.size() ? std::optional(tokens) : std::nullopt;
}

bool isHemisphere(const Token &token)
{
    return !token.symbol.isNull() && QStringLiteral("NSEW").contains(token.symbol);
}

bool is(const Token &token, char16_t symbol)
{
    return token.symbol == QChar(symbol);
}

bool isNumber(const Token &token)
{
    return token.symbol.isNull();
}

bool isSign(const Token &token)
{
    return is(token, u'-') || is(token, u'+');
}

/// True when a token after the tokens of the first coordinate begins the second one.
bool beginsSecond(const Tokens &first, const Token &token)
{
    const auto has = [&first](auto condition) { return std::any_of(first.begin(), first.end(), condition); };
    if (!has(isNumber))
        return false;
    if (isHemisphere(token))
        return isHemisphere(first.first());
    if (isSign(token) || is(token, u','))
        return true;
    return isNumber(token) && !isHemisphere(first.first()) && has(isHemisphere);
}

/// True for tokens that are two decimal numbers and signs, and nothing else.
bool areTwoNumbers(const Tokens &tokens)
{
    return std::count_if(tokens.begin(), tokens.end(), isNumber) == 2 && isNumber(tokens.last())
           && isNumber(tokens[tokens.size() - 2]) && (tokens.size() == 2 || isSign(tokens.first()));
}

/// Splits the tokens into coordinates. Without letters, signs and commas, a second number of degrees begins the second
/// coordinate: "47.24 8.72", "47°14' 8°43'".
QVector<Tokens> coordinatesOf(const Tokens &tokens)
{
    if (areTwoNumbers(tokens))
        return {tokens.mid(0, tokens.size() - 1), {tokens.last()}};
    QVector<Tokens> parts(1);
    for (int i = 0; i < tokens.size(); ++i) {
        const Token &token = tokens[i];
        const bool isDegrees = isNumber(token) && i + 1 < tokens.size() && is(tokens[i + 1], u'\u00b0');
        const bool isSecond = isDegrees && std::any_of(parts.last().begin(), parts.last().end(), [](const Token &each) {
                                  return is(each, u'\u00b0');
                              });
        const bool begins = isSecond || beginsSecond(parts.last(), token);
        if (begins)
            parts.append(Tokens());
        if (!begins || !is(token, u','))
            parts.last().append(token);
    }
    return parts;
}

/// A coordinate in its written form.
struct Coordinate
{
    QChar hemisphere;
    QChar sign;
    Tokens numbers;
    int symbols = 0;      ///< Count of numbers with the symbol of their unit.
    bool isWrong = false; ///< Not a valid coordinate.
};

Coordinate parseCoordinate(const Tokens &tokens)
{
    static const QString UNITS = QStringLiteral("\u00b0'\"");
    Coordinate coordinate;
    for (const Token &token : tokens) {
        const int unit = isNumber(token) ? -1 : UNITS.indexOf(token.symbol);
        if (isNumber(token)) {
            coordinate.numbers.append(token);
        } else if (unit >= 0) {
            coordinate.isWrong |= unit + 1 != coordinate.numbers.size() || unit != coordinate.symbols;
            ++coordinate.symbols;
        } else if (isHemisphere(token)) {
            coordinate.isWrong |= !coordinate.hemisphere.isNull();
            coordinate.hemisphere = token.symbol;
        } else {
            coordinate.isWrong |= !isSign(token) || !coordinate.sign.isNull() || !coordinate.numbers.isEmpty();
            coordinate.sign = token.symbol;
        }
    }
    const int numbers = coordinate.numbers.size();
    const bool needsSymbols = numbers > 1 && coordinate.hemisphere.isNull();
    coordinate.isWrong |= numbers == 0 || numbers > 3 || (needsSymbols && coordinate.symbols < numbers - 1);
    return coordinate;
}

/// Converts a coordinate to degrees. Sets `problem` when its numbers are invalid.
double degreesOf(const Coordinate &coordinate, QString &problem)
{
    static constexpr const char *UNITS[] = {"degrees", "minutes", "seconds"};
    double degrees = 0;
    double size = 1;
    for (int i = 0; i < coordinate.numbers.size(); ++i, size /= 60) {
        const Token &each = coordinate.numbers[i];
        if (i > 0 && each.number >= 60)
            problem = QStringLiteral("%1 %2 are beyond 59").arg(each.number).arg(QLatin1String(UNITS[i]));
        if (i + 1 < coordinate.numbers.size() && !each.isWhole)
            problem = QStringLiteral("%1 must be a whole number when %2 follow")
                          .arg(QLatin1String(UNITS[i]), QLatin1String(UNITS[i + 1]));
        degrees += each.number * size;
    }
    if (!coordinate.sign.isNull() && !coordinate.hemisphere.isNull())
        problem = QStringLiteral("a coordinate has both a sign and a letter; write one of them");
    const bool isNegative = coordinate.sign == QLatin1Char('-') || coordinate.hemisphere == QLatin1Char('S')
                            || coordinate.hemisphere == QLatin1Char('W');
    return isNegative ? -degrees : degrees;
}

bool isOfLongitude(const Coordinate &coordinate)
{
    return coordinate.hemisphere == QLatin1Char('E') || coordinate.hemisphere == QLatin1Char('W');
}

ReadPosition readWritten(const QString &text)
{
    const std::optional<Tokens> tokens = text.size() <= MAX_POSITION_SIZE ? tokensOf(text) : std::nullopt;
    if (!tokens || tokens->isEmpty())
        return {};
    const QVector<Tokens> parts = coordinatesOf(*tokens);
    if (parts.size() != 2)
        return {};
    Coordinate first = parseCoordinate(parts[0]);
    Coordinate second = parseCoordinate(parts[1]);
    if (first.isWrong || second.isWrong)
        return {};
    if (isOfLongitude(first) || (first.hemisphere.isNull() && !second.hemisphere.isNull() && !isOfLongitude(second)))
        std::swap(first, second);
    const bool isOneOfEach = !isOfLongitude(first) && (second.hemisphere.isNull() || isOfLongitude(second));
    ReadPosition read;
    const double latitude = degreesOf(first, read.problem);
    const double longitude = degreesOf(second, read.problem);
    if (!isOneOfEach)
        read.problem =
            QStringLiteral("both coordinates have letters of one axis; write one with N or S and one with E or W");
    else if (read.problem.isEmpty() && std::abs(latitude) > 90)
        read.problem = QStringLiteral("latitude %1 is beyond 90").arg(latitude);
    else if (read.problem.isEmpty() && std::abs(longitude) > 180)
        read.problem = QStringLiteral("longitude %1 is beyond 180").arg(longitude);
    if (read.problem.isEmpty())
        read.position = Coordinates(latitude, longitude);
    return read;
}

// ------------------------------------------------------------------------------------------------------- geo URIs

/// Reads the parameters "NAME=VALUE" after the coordinates. Names and values are case-insensitive.
QString readParameters(const QStringList &parameters, Coordinates &position)
{
    for (const QString &parameter : parameters) {
        const QString name = parameter.section(QLatin1Char('='), 0, 0).toLower();
        const QString value = QUrl::fromPercentEncoding(parameter.section(QLatin1Char('='), 1).toUtf8()).toLower();
        if (name == QLatin1String("crs") && value.isEmpty())
            return QStringLiteral("the reference system has no name");
        if (name == QLatin1String("crs") && value != QLatin1String("wgs84"))
            return QStringLiteral("the reference system %1 is not known; positions are in wgs84").arg(value);
        if (name != QLatin1String("u"))
            continue;
        const std::optional<double> number = parseNumber(value);
        const std::optional<float> metres = number ? toAccuracy(*number) : std::nullopt;
        if (!metres)
            return QStringLiteral("the uncertainty is not a number of metres");
        position.setHorizontalAccuracy(*metres);
    }
    return {};
}

/// The shortest decimal number without an exponent that reads back as the same value.
template <typename Number>
QString decimal(Number number)
{
    char digits[400];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed).ptr;
    return QString::fromLatin1(digits, static_cast<int>(end - digits));
}

} // namespace

ReadPosition readPosition(const QString &text)
{
    ReadPosition read = readPlusCode(text);
    return read.position.isValid() || !read.problem.isEmpty() ? read : readWritten(text);
}

Coordinates readDecimalPosition(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(','));
    std::optional<double> numbers[3];
    if (parts.size() < 2 || parts.size() > 3)
        return {};
    for (int i = 0; i < parts.size(); ++i) {
        numbers[i] = parseNumber(parts[i]);
        if (!numbers[i])
            return {};
    }
    Coordinates position(*numbers[0], *numbers[1]);
    if (numbers[2])
        position.setAltitude(*numbers[2]);
    return position;
}

bool isGeoUri(const QString &text)
{
    return text.startsWith(QLatin1String(SCHEME), Qt::CaseInsensitive);
}

ReadPosition readGeoUri(const QString &uri)
{
    const QString whole = uri.mid(static_cast<int>(std::strlen(SCHEME))).section(QLatin1Char('#'), 0, 0);
    QStringList parts = whole.section(QLatin1Char('?'), 0, 0).split(QLatin1Char(';'));
    Coordinates position = readDecimalPosition(QUrl::fromPercentEncoding(parts.takeFirst().toUtf8()));
    // The reference system defines the meaning of the numbers, so its error comes first.
    QString problem = readParameters(parts, position);
    if (problem.isEmpty() && !position.isValid())
        problem = QStringLiteral("its coordinates are not on the Earth; write geo:LATITUDE,LONGITUDE in degrees");
    return {problem.isEmpty() ? position : Coordinates(), problem};
}

QString toGeoUri(const Coordinates &position)
{
    QString uri =
        QLatin1String(SCHEME) + decimal(position.latitude()) + QLatin1Char(',') + decimal(position.longitude());
    if (std::isfinite(position.altitude()))
        uri += QLatin1Char(',') + decimal(position.altitude());
    if (toAccuracy(static_cast<double>(position.horizontalAccuracy())))
        uri += QStringLiteral(";u=") + decimal(position.horizontalAccuracy());
    return uri;
}

} // namespace formats
