// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QHash>
#include <QtCore/QTemporaryFile>
#include <QtCore/QVector>

#include <functional>

namespace formats
{

/// Texts in a temporary file, grouped by folder. Memory grows only with the number of folders.
class FolderSpool
{
public:
    /// Maximum number of folders.
    static constexpr int MAX_FOLDERS = 10000;

    /// True when the folder exists or can be added.
    [[nodiscard]] bool hasRoom(const QString &folder) const;
    /// Adds a text to a folder; returns the error.
    [[nodiscard]] QString add(const QString &folder, const QByteArray &text);

    /// The folders in the order of their first texts.
    [[nodiscard]] const QVector<QString> &folders() const { return m_names; }
    /// Calls `take` for the texts of a folder in their order until it returns an error. Returns the error.
    [[nodiscard]] QString read(const QString &folder, const std::function<QString(const QByteArray &text)> &take);

private:
    /// Positions of the folder's first and last text in the file, -1 for none. A header precedes each text.
    struct Chain
    {
        qint64 first = -1;
        qint64 last = -1;
    };
    struct Header
    {
        qint64 next; ///< Position of the next text of the folder; -1 for none.
        qint64 size; ///< Bytes of the text.
    };

    bool write(qint64 position, const void *bytes, qint64 size);
    bool read(qint64 position, void *bytes, qint64 size);

    QTemporaryFile m_file;
    qint64 m_end = 0;
    QHash<QString, Chain> m_chains;
    QVector<QString> m_names;
};

} // namespace formats
