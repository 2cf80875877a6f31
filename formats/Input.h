// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <cstddef>
#include <cstdio>
#include <memory>

namespace formats
{

/// Most bytes that one feature, document, record or token of a file may take. It bounds the memory that reading needs.
constexpr std::size_t MAX_ITEM_SIZE = std::size_t(4) * 1024 * 1024;

/// A file, or standard input under the name "-", read once from beginning to end. A UTF-8 byte order mark is passed
/// over.
class Input
{
public:
    explicit Input(const QString &path);

    /// Why there is nothing to read, or why reading ended early; empty when nothing is wrong.
    [[nodiscard]] QString problem() const { return m_problem; }
    /// The first bytes, at most 4096, to tell the format by; reading still begins with them.
    [[nodiscard]] const QByteArray &head() const { return m_head; }
    /// Reads up to `size` bytes. Returns how many; 0 at the end and on a fault.
    std::size_t read(char *buffer, std::size_t size);
    /// How much of the file is read, from 0 to 1; 0 when nobody knows how long it is.
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

/// Text of UTF-8 bytes. False, and the text is of no use, when they are none.
bool decodeUtf8(const QByteArray &bytes, QString &text);

} // namespace formats
