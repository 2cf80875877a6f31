// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "support/Files.h"
#include "support/VCards.h"

#include <QtCore/QDir>
#include <QtCore/QStringList>
#include <QtCore/QTemporaryDir>

/// Files for the sources of a places service: a gazetteer of three towns and the cards of two contacts.
class Sources
{
public:
    Sources()
    {
        QDir(m_folder.path()).mkdir(QStringLiteral("cards"));
        files::write(gazetteer(), R"({"type":"FeatureCollection","features":[)" + town(1, "Z\xC3\xBCrich", 8.55, 47.37)
                                      + "," + town(2, "Zug", 8.52, 47.17) + ","
                                      + town(3, "\xE6\x9D\xB1\xE4\xBA\xAC", 139.7, 35.7) + "]}");
        files::write(path("cards/a.vcf"), card("Zoe", "Bern") + card("Anna", "Zug"));
    }

    [[nodiscard]] QString gazetteer() const { return path("towns.geojson"); }
    /// Arguments for a service with these sources.
    [[nodiscard]] QStringList arguments() const
    {
        return QStringList{QStringLiteral("--gazetteer"), gazetteer()} + contactsIn(path("cards"));
    }

private:
    [[nodiscard]] QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    static QByteArray town(int number, const char *name, double longitude, double latitude)
    {
        return R"({"type":"Feature","id":"town:)" + QByteArray::number(number)
               + R"(","geometry":{"type":"Point","coordinates":[)" + QByteArray::number(longitude) + ","
               + QByteArray::number(latitude) + R"(]},"properties":{"kind":"city","name":")" + name + R"("}})";
    }
    static QByteArray card(const QByteArray &name, const QByteArray &city)
    {
        return files::card("UID:" + name + "\r\nFN:" + name + "\r\nN:;" + name + ";;;\r\nADR;TYPE=HOME:;;Street 1;"
                           + city + ";;;\r\n");
    }

    QTemporaryDir m_folder;
};
