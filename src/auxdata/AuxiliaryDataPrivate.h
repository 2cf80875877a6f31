// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "places/AuxiliaryData.h"

namespace vela::platform::places
{

class AuxiliaryDataPrivate
{
public:
    /// Compares everything but the id.
    bool operator==(const AuxiliaryDataPrivate &other) const;

    static AuxiliaryDataPrivate *fromPublic(AuxiliaryData &data) { return data.d.get(); }
    static const AuxiliaryDataPrivate *fromPublic(const AuxiliaryData &data) { return data.d.get(); }

    void setId(qint64 value) { id = value; }
    void setProvider(const Provider &value) { provider = value; }
    void setPersistable(bool value) { persistable = value; }

    QVariant qvariantProperty(const QString &key) const;

    /// The text under `key`, or under the key framed by semicolons in records of older writers; empty when neither
    /// exists.
    QString legacyProperty(const QString &key) const;
    /// The same as a variant; invalid when neither exists.
    QVariant legacyQvariantProperty(const QString &key) const;

    /// Joins a list of values to one text.
    static QString escapeList(const QList<QVariant> &list);
    static QList<QVariant> unescapeList(const QString &text);

    qint64 id = -1;
    QString externalId;
    QString type;
    bool persistable = true;
    Provider provider;
    QMap<QString, QString> properties;
};

} // namespace vela::platform::places
