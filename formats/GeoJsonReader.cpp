// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "GeoJsonReader.h"

#include "ExactJson.h"
#include "Feature.h"
#include "FeatureScanner.h"
#include "Input.h"
#include "JsonValue.h"
#include "LargeNumbers.h"
#include "OtherMakers.h"

#include <places/Place.h>

#include <rapidjson/error/en.h>

namespace formats
{

using Kind = FeatureScanner::Kind;

namespace
{

constexpr char NO_GEOJSON[] = "neither a GeoJSON FeatureCollection nor a Feature";

/// Reads features in sequence and counts them.
class GeoJsonReader
{
public:
    GeoJsonReader(Input &input, const ReadOptions &options, const TakePlace &take)
        : m_input(input)
        , m_scanner(input)
        , m_options(options)
        , m_take(take)
    {}

    QString read()
    {
        bool goesOn = true;
        while (goesOn && m_problem.isEmpty()) {
            const FeatureScanner::Item item = m_scanner.next();
            const bool isCut = !m_input.problem().isEmpty() && (item.problem || item.kind == Kind::End);
            if (isCut || item.kind == Kind::End)
                return m_input.problem();
            goesOn = item.kind == Kind::Collection ? checkCollection(item) : takeMember(item);
        }
        return m_problem;
    }

private:
    /// Stops reading with an error of the file. Returns false.
    bool refuse(const QString &problem, const FeatureScanner::Item &item)
    {
        m_problem = QStringLiteral("at byte %1: %2").arg(item.position).arg(problem);
        return false;
    }

    /// Parses the text of an item. Returns the error.
    QString parse(const FeatureScanner::Item &item, ExactDocument &value, QStringList &losses) const
    {
        if (item.problem)
            return QLatin1String(item.problem);
        rapidjson::ParseResult result = value.read(item.text.constData());
        if (result.IsError()) {
            const rapidjson::ParseResult again = value.read(withLargeNumbersAsTexts(item.text, losses).constData());
            result = again.IsError() ? result : again;
        }
        return result.IsError()
                   ? QStringLiteral("not JSON: %1").arg(QLatin1String(rapidjson::GetParseError_En(result.Code())))
                   : QString();
    }

    /// Checks the collection that contains the members.
    bool checkCollection(const FeatureScanner::Item &item)
    {
        if (item.problem)
            return true; // too large or too deep to be checked
        ExactDocument collection;
        QStringList losses;
        const QString problem = parse(item, collection, losses);
        if (!problem.isEmpty())
            return refuse(problem, item);
        const QString type = textMember(collection, "type");
        return type.isEmpty() || type == QLatin1String("FeatureCollection") || refuse(QLatin1String(NO_GEOJSON), item);
    }

    bool takeMember(const FeatureScanner::Item &item)
    {
        ReadPlace member;
        ExactDocument value;
        member.problem = parse(item, value, member.losses);
        const bool isText = item.kind == Kind::Text;
        if (item.isFatal || (isText && !member.problem.isEmpty() && !m_scanner.isSeparated() && !item.problem))
            return refuse(member.problem, item);
        if (isText && m_count == 0 && member.problem.isEmpty() && textMember(value, "type") != QLatin1String("Feature"))
            return refuse(QLatin1String(NO_GEOJSON), item);
        if (item.kind == Kind::Element && member.problem.isEmpty() && !toFeature(value))
            return true;
        member.where = QStringLiteral("%1 %2")
                           .arg(item.kind == Kind::Element ? QStringLiteral("element") : QStringLiteral("feature"))
                           .arg(++m_count);
        if (member.problem.isEmpty()) {
            interpretProperties(value);
            readFeature(value, m_options, member);
        }
        return m_take(std::move(member));
    }

    Input &m_input;
    FeatureScanner m_scanner;
    const ReadOptions &m_options;
    const TakePlace &m_take;
    QString m_problem;
    qint64 m_count = 0;
};

} // namespace

QString readGeoJson(Input &input, const ReadOptions &options, const TakePlace &take)
{
    return GeoJsonReader(input, options, take).read();
}

} // namespace formats
