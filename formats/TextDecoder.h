// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtCore/QString>

#if QT_VERSION_MAJOR < 6
#include <QtCore/QTextCodec>
#else
#include <QtCore/QStringDecoder>
#endif

namespace formats
{

/// Decodes a text piece by piece. A character may be divided between pieces. Qt 5 and Qt 6 have different classes for
/// this.
class TextDecoder
{
public:
    enum Encoding
    {
        Utf8,  ///< A byte order mark is a character of the text.
        Utf16, ///< Starts with a byte order mark, which is skipped.
    };
#if QT_VERSION_MAJOR < 6
    explicit TextDecoder(Encoding encoding)
        : m_codec(QTextCodec::codecForName(encoding == Utf8 ? "UTF-8" : "UTF-16"))
        , m_state(encoding == Utf8 ? QTextCodec::IgnoreHeader : QTextCodec::DefaultConversion)
    {}
    /// Invalid bytes become U+FFFD.
    QString decode(const char *bytes, int size)
    {
        return m_codec->toUnicode(bytes, size, &m_state);
    }

private:
    QTextCodec *const m_codec;
    QTextCodec::ConverterState m_state;
#else
    explicit TextDecoder(Encoding encoding)
        : m_decoder(encoding == Utf8 ? QStringDecoder::Utf8 : QStringDecoder::Utf16,
                    encoding == Utf8 ? QStringDecoder::Flag::ConvertInitialBom : QStringDecoder::Flag::Default)
    {}
    /// Invalid bytes become U+FFFD.
    QString decode(const char *bytes, qsizetype size)
    {
        return m_decoder.decode(QByteArrayView(bytes, size));
    }

private:
    QStringDecoder m_decoder;
#endif
};

} // namespace formats
