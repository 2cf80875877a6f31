// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace formats
{

/// Members that a place cannot hold: JSON texts by name.
using Foreign = QMap<QString, QByteArray>;

/// Writes JSON members and leaves out unset values. foreign() leaves out names that the object already has.
class JsonWriter
{
public:
    template <typename Body>
    void object(Body body)
    {
        const QSet<QString> outer = std::exchange(m_names, {});
        m_writer.StartObject();
        body();
        m_writer.EndObject();
        m_names = outer;
    }
    template <typename Body>
    void array(Body body)
    {
        m_writer.StartArray();
        body();
        m_writer.EndArray();
    }
    void key(const char *name) { key(QString::fromLatin1(name)); }
    void text(const QString &text)
    {
        const QByteArray bytes = text.toUtf8();
        m_writer.String(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
    }
    void number(double value) { m_writer.Double(value); }
    void null() { m_writer.Null(); }

    void key(const QString &name)
    {
        m_names.insert(name);
        const QByteArray bytes = name.toUtf8();
        m_writer.Key(bytes.constData(), static_cast<rapidjson::SizeType>(bytes.size()));
    }
    void member(const QString &name, const QString &value)
    {
        if (value.isEmpty())
            return;
        key(name);
        text(value);
    }
    void member(const char *name, const QString &value) { member(QString::fromLatin1(name), value); }
    void member(const char *name, qint64 value)
    {
        key(name);
        m_writer.Int64(value);
    }
    void member(const char *name, quint64 value)
    {
        key(name);
        m_writer.Uint64(value);
    }
    void member(const char *name, bool value)
    {
        if (!value && m_omittedWhenEmpty.contains(QLatin1String(name)))
            return;
        key(name);
        m_writer.Bool(value);
    }
    void member(const char *name, double value)
    {
        if (!std::isfinite(value))
            return;
        key(name);
        number(value);
    }
    void member(const char *name, const QStringList &values)
    {
        if (!values.isEmpty())
            list(name, values);
    }
    /// Writes a list, even an empty one unless omitEmpty() names it.
    template <typename Values, typename Write>
    void list(const char *name, const Values &values, Write write)
    {
        if (values.isEmpty() && m_omittedWhenEmpty.contains(QLatin1String(name)))
            return;
        key(name);
        array([&] { std::for_each(values.begin(), values.end(), write); });
    }
    void list(const char *name, const QStringList &values)
    {
        list(name, values, [this](const QString &value) { text(value); });
    }
    void list(const QStringList &values)
    {
        array([&] {
            for (const QString &value : values)
                text(value);
        });
    }
    void foreign(const Foreign &members)
    {
        for (auto member = members.begin(); member != members.end(); ++member) {
            if (m_names.contains(member.key()))
                continue;
            key(member.key());
            m_writer.RawValue(member->constData(), static_cast<std::size_t>(member->size()), rapidjson::kObjectType);
        }
    }
    /// Leaves out empty lists and false values whose names are among these members.
    void omitEmpty(const Foreign &members) { m_omittedWhenEmpty = members; }
    QByteArray result() const { return QByteArray(m_text.GetString(), static_cast<int>(m_text.GetSize())); }

private:
    rapidjson::StringBuffer m_text;
    rapidjson::Writer<rapidjson::StringBuffer> m_writer{m_text};
    QSet<QString> m_names; ///< Names written to the object so far.
    Foreign m_omittedWhenEmpty;
};

} // namespace formats
