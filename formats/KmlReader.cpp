// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "KmlReader.h"

#include "HtmlText.h"
#include "KmlGeometry.h"
#include "KmlText.h"
#include "TextFeature.h"
#include "Vocabulary.h"
#include "XmlReader.h"
#include "XmlText.h"

#include <places/Place.h>

namespace formats
{

using namespace vela::platform::places;

namespace
{

/// A named value in the ExtendedData of a placemark.
struct Data
{
    QString name;
    QString value;
};

QVector<Data> dataOf(const XmlMember &placemark)
{
    static const QString DATA = QStringLiteral("ExtendedData/Data");
    static const QString SIMPLE_DATA = QStringLiteral("ExtendedData/SchemaData/SimpleData");
    QVector<Data> all;
    QString name;
    for (const XmlField &field : placemark.fields) {
        if (field.path == DATA + QStringLiteral("@name") || field.path == SIMPLE_DATA + QStringLiteral("@name"))
            name = field.value;
        else if (!name.isEmpty() && (field.path == SIMPLE_DATA || field.path == DATA + QStringLiteral("/value")))
            all.append({name, field.value});
        if (field.path == DATA || field.path == SIMPLE_DATA)
            name.clear();
    }
    return all;
}

TextFeature featureOf(const XmlMember &placemark)
{
    const QVector<Data> data = dataOf(placemark);
    TextFeature feature(toKmlText);
    QString rest;
    for (const Data &each : data) {
        if (each.name == QLatin1String(vocabulary::REST) && feature.setRest(each.value))
            rest = each.value;
    }
    feature.setId(placemark.value("@id"));
    feature.set(QLatin1String(vocabulary::DESCRIPTION), htmlToText(placemark.value("description")));
    for (const auto &child : KML_CHILDREN)
        feature.set(QLatin1String(child.property), placemark.value(child.element));
    for (const Data &each : data) {
        if (each.name != QLatin1String(vocabulary::REST) || each.value != rest)
            feature.set(each.name, each.value);
    }
    return feature;
}

/// Adds the names of folders as tags unless the place already has them.
void addFolders(const QStringList &folders, Place &place)
{
    QStringList tags;
    for (int i = 0; i < place.tagCount(); ++i)
        tags.append(toXmlText({}, place.tag(i)));
    for (const QString &folder : folders) {
        if (!folder.isEmpty() && !tags.contains(folder))
            place.addTag(folder);
    }
}

void readPlacemark(const XmlMember &placemark, const ReadOptions &options, ReadPlace &read)
{
    const KmlGeometry geometry = readKmlGeometry(placemark);
    read.problem = geometry.problem;
    if (!read.problem.isEmpty())
        return;
    TextFeature feature = featureOf(placemark);
    feature.setGeometry(geometry.json);
    feature.setPosition(geometry.position.value(0), geometry.position.value(1), geometry.position.value(2));
    feature.read(options, read);
    if (read.kind == MemberKind::Line && geometry.isTrack)
        read.kind = MemberKind::Track;
    if (read.place)
        addFolders(placemark.folders, *read.place);
}

void readNetworkLink(const XmlMember &link, const ReadOptions & /*options*/, ReadPlace &read)
{
    const QString address = link.value("Link/href");
    read.problem = QStringLiteral("links to other files are not followed; import the linked file: %1")
                       .arg(address.isEmpty() ? link.value("Url/href") : address);
}

} // namespace

QString readKml(Input &input, const ReadOptions &options, const TakePlace &take)
{
    static const XmlFormat KML{
        "kml",
        {{"Placemark", "placemark", readPlacemark}, {"NetworkLink", "network link", readNetworkLink}},
        "Folder",
        "http://www.google.com/kml/ext/2.2",
        "gx"};
    return readXml(input, KML, options, take);
}

} // namespace formats
