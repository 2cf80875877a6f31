// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdio>
#include <memory>

namespace formats
{

/// Maximum size of a feature, document, record or token in bytes. It bounds the memory for reading.
constexpr std::size_t MAX_ITEM_SIZE = std::size_t(4) * 1024 * 1024;

/// A file, or standard input for the path "-", read once from beginning to end. A UTF-8 byte order mark is skipped.
class Input
{
public:
    explicit Input(const QString &path);

    /// Why opening or reading failed; empty without an error.
    [[nodiscard]] QString problem() const { return m_problem; }
    /// The first bytes, at most 4096, to detect the format. read() still returns them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns their number; 0 at the end and on an error.
    std::size_t read(char *buffer, std::size_t size);
    /// The part of the file that is read, from 0 to 1; 0 when the size is unknown.
    [[nodiscard]] double progress() const;

private:
    struct Close
    {
        void operator()(std::FILE *file) const;
    };

    std::unique_ptr<std::FILE, Close> m_file;
    QString m_problem;
    QByteArray m_head;
    std::size_t m_position = 0;
    double m_size = 0;
};

/// Decodes UTF-8. False for invalid UTF-8; the text is then undefined.
bool decodeUtf8(const QByteArray &bytes, QString &text);

} // namespace formats
