// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "CsvColumns.h"

#include "Vocabulary.h"

#include <QtCore/QRegularExpression>

namespace formats
{

namespace
{

/// A heading in lower case without blanks and punctuation.
QString simplified(const QString &heading)
{
    static const QRegularExpression FILLERS(QStringLiteral("[\\s_.:,/-]+"));
    return heading.toCaseFolded().remove(FILLERS);
}

/// Column names by their simplified headings.
const QHash<QString, QString> &ownNames()
{
    static const QHash<QString, QString> NAMES = [] {
        QHash<QString, QString> names;
        for (const char *name : {csv::LATITUDE, csv::LONGITUDE, csv::ALTITUDE, csv::COORDINATES, csv::GEOMETRY,
                                 vocabulary::ID, vocabulary::REST})
            names.insert(QLatin1String(name), QLatin1String(name));
        for (auto known = vocabulary::kinds().begin(); known != vocabulary::kinds().end(); ++known)
            names.insert(simplified(known.key()), known.key());
        return names;
    }();
    return NAMES;
}

/// Other simplified headings for a column name, each between blanks.
constexpr struct
{
    const char *name;
    const char *headings;
} OTHER_NAMES[] = {
    {csv::LATITUDE, " lat y breite breitengrad geolat geolatitude latdeg latitudedeg latitud latitudine leveysaste "
                    "breedtegraad breddegrad breddgrad широта 纬度 緯度 "},
    {csv::LONGITUDE, " lon lng long x länge laenge längengrad laengengrad geolon geolng geolong geolongitude londeg "
                     "longitudedeg longitud longitudine pituusaste lengtegraad lengdegrad længdegrad längdgrad долгота "
                     "经度 経度 "},
    {csv::ALTITUDE, " alt ele elevation z höhe hoehe altitud altitudine altitudem elevationm высота 海拔 標高 "},
    {csv::COORDINATES, " coords latlng latlon latlong latitudelongitude geopoint geopoint2d koordinaten coordonnées "
                       "coordenadas coordinate coördinaten координаты 坐标 座標 "},
    {csv::GEOMETRY, " wkt geom thegeom wktgeom geometrie geometria "},
    {vocabulary::NAME, " title titel titre título titulo titolo bezeichnung nom nombre nome naam namn navn nimi "
                       "название имя 名称 名前 "},
    {vocabulary::DESCRIPTION, " desc beschreibung descripción descripcion descrizione beschrijving notes note notiz "
                              "comment comments kommentar описание "},
    {vocabulary::LABEL, " address adresse fulladdress formattedaddress dirección indirizzo adres адрес "},
    {"houseNumber", " hausnummer hausnr addrhousenumber streetnumber "},
    {"street", " strasse straße rue calle straat addrstreet улица "},
    {"postalCode", " plz zip zipcode postcode codepostal códigopostal addrpostcode индекс "},
    {"city", " ort stadt town ville ciudad città plaats stad addrcity город "},
    {"region", " province provincia canton kanton bundesland addrstate "},
    {"country", " land pays país paese addrcountry страна "},
    {"countryCode", " isoa2 countryiso2 iso2 "},
    {vocabulary::PHONE, " telephone telefon tel téléphone teléfono telefono telefoon phonenumber телефон "},
    {vocabulary::EMAIL, " mail emailaddress courriel correo почта "},
    {vocabulary::URL, " website web homepage webseite link uri сайт "},
};

QString otherName(const QString &heading)
{
    for (const auto &other : OTHER_NAMES) {
        if (QString::fromUtf8(other.headings).contains(QLatin1Char(' ') + heading + QLatin1Char(' ')))
            return QLatin1String(other.name);
    }
    return {};
}

} // namespace

bool CsvColumns::isKnown(int column) const
{
    return names[column] != headings[column] || ownNames().contains(simplified(names[column]));
}

QString CsvColumns::description() const
{
    QStringList renamed;
    QStringList others;
    for (int i = 0; i < names.size(); ++i) {
        if (!isKnown(i))
            others.append(headings[i]);
        else if (simplified(names[i]) != simplified(headings[i]))
            renamed.append(QStringLiteral("%1 from %2").arg(names[i], headings[i]));
    }
    QStringList parts;
    if (!renamed.isEmpty())
        parts.append(QStringLiteral("columns: ") + renamed.join(QStringLiteral(", ")));
    if (!others.isEmpty())
        parts.append(QStringLiteral("others kept: ") + others.join(QStringLiteral(", ")));
    return parts.join(QStringLiteral("; "));
}

CsvColumns columnsOf(const QStringList &headings, const QMap<QString, QString> &given)
{
    CsvColumns columns{headings, {}};
    for (const QString &heading : headings)
        columns.names.append(given.value(heading, ownNames().value(simplified(heading))));
    for (int i = 0; i < headings.size(); ++i) {
        if (!columns.names[i].isEmpty())
            continue;
        const QString name = otherName(simplified(headings[i]));
        const bool isSecond = columns.names.contains(name) || name.isEmpty();
        columns.names[i] = isSecond ? headings[i] : name;
    }
    return columns;
}

QString toCsvText(const QString & /*name*/, const QString &text)
{
    return QString(text).replace(QChar::Null, QChar(QChar::ReplacementCharacter));
}

} // namespace formats
