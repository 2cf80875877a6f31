// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "places/PlaceJson.h"

#include "model/AbstractPlacePrivate.h"
#include "model/JsonMember.h"

#include <algorithm>
#include <cctype>
#include <new>

namespace vela::platform::places::PlaceJson
{

namespace
{

/// Why a document is refused; empty on success.
using Refusal = QString;

/// Decodes UTF-8; a byte order mark is skipped.
Refusal decodeUtf8(const QByteArray &bytes, QString &text)
{
    text = QString::fromUtf8(bytes.constData(), bytes.size());
    // fromUtf8() replaces invalid bytes, so a text with such bytes differs.
    if (text.toUtf8() != bytes.mid(bytes.startsWith(json::BYTE_ORDER_MARK) ? 3 : 0))
        return QStringLiteral("The document is not UTF-8 text.");
    if (text.contains(QChar::Null))
        return QStringLiteral("The document is not JSON: it has a null character in it.");
    return {};
}

/// Length of an escape such as "\u00e9".
constexpr int ESCAPE_LENGTH = 6;

/// The UTF-16 unit of the escape at `position`; -1 when there is no escape.
int escapedUnit(const QString &text, int position)
{
    const QString escape = text.mid(position, ESCAPE_LENGTH);
    if (escape.size() != ESCAPE_LENGTH || escape[1] != QLatin1Char('u'))
        return -1;
    const QString digits = escape.mid(2);
    const auto isHex = [](QChar digit) { return digit.unicode() < 0x80 && std::isxdigit(digit.unicode()); };
    return std::all_of(digits.begin(), digits.end(), isHex) ? digits.toInt(nullptr, 16) : -1;
}

/// Replaces escapes of non-ASCII characters by the characters: the codec would decode them to UTF-8 bytes, but texts of
/// documents are 8-bit. The escape of a null character becomes "?".
QString withoutWideEscapes(const QString &document)
{
    QString text;
    text.reserve(document.size());
    for (int i = 0; i < document.size(); ++i) {
        if (document[i] != QLatin1Char('\\')) {
            text += document[i];
            continue;
        }
        const int unit = escapedUnit(document, i);
        if (unit == 0 || unit >= 0x80) {
            text += unit ? QChar(unit) : QLatin1Char('?');
            i += ESCAPE_LENGTH - 1;
        } else {
            text += document.mid(i, 2);
            ++i;
        }
    }
    return text;
}

/// Creates an empty place of the kind in the entered document.
Refusal makePlace(pps_decoder_t &decoder, std::unique_ptr<AbstractPlace> &place)
{
    bool isComplete = false;
    if (!json::read(decoder, "complete", isComplete))
        return QStringLiteral("The document is not that of a place: it has no \"complete\" that is true or false.");
    if (isComplete)
        place = std::make_unique<Place>();
    else
        place = std::make_unique<PlaceHeader>();
    return {};
}

/// Reads a document to a place; null when it is refused.
Refusal readDocument(const QByteArray &document, Texts texts, std::unique_ptr<AbstractPlace> &place)
{
    QString text;
    if (Refusal refusal = decodeUtf8(document, text); !refusal.isEmpty())
        return refusal;
    text = withoutWideEscapes(text);
    QByteArray bytes = texts == Texts::Latin1 ? json::toEightBit(text) : json::toUtf8(text);
    PPSDecoder decoder;
    if (!decoder.init())
        throw std::bad_alloc();
    if (pps_decoder_parse_json_str(&decoder, bytes.data()) != PPS_OK)
        return QStringLiteral("The document is not JSON, is nested too deep or holds a number that is too large.");
    if (pps_decoder_type(&decoder, nullptr) != PPS_TYPE_OBJECT)
        return QStringLiteral("The document is not a JSON object.");
    const PPSDecoder::PushResourceManager object(decoder, nullptr);
    Refusal refusal = makePlace(*&decoder, place);
    if (refusal.isEmpty())
        AbstractPlacePrivate::privateFromPublic(place.get())->readJSON({*&decoder, texts});
    return refusal;
}

void report(Error::Type *error, QString *reason, Error::Type outcome, const QString &text)
{
    if (error)
        *error = outcome;
    if (reason)
        *reason = text;
}

/// Runs a reader and reports its outcome. Never throws.
template <typename Wanted, typename Read>
std::unique_ptr<Wanted> readAndReport(Error::Type *error, QString *reason, Read readWanted)
{
    try {
        std::unique_ptr<Wanted> place;
        const Refusal refusal = readWanted(place);
        report(error, reason, refusal.isEmpty() ? Error::Success : Error::InvalidArgument, refusal);
        return place;
    } catch (const std::bad_alloc &) {
        report(error, reason, Error::Unspecified, QString());
        return nullptr;
    }
}

} // namespace

QByteArray write(const AbstractPlace &place)
{
    return write(place, Texts::Latin1);
}

QByteArray write(const AbstractPlace &place, Texts texts)
{
    try {
        const AbstractPlacePrivate &data = *AbstractPlacePrivate::privateFromPublic(&place);
        QString text;
        int status = 0;
        if (texts == Texts::Latin1)
            data.toJSON(text, status);
        else
            data.toUnicodeJSON(text);
        return text.toUtf8();
    } catch (const std::bad_alloc &) {
        return {};
    }
}

std::unique_ptr<AbstractPlace> read(const QByteArray &document, Error::Type *error, QString *reason)
{
    return read(document, Texts::Latin1, error, reason);
}

std::unique_ptr<AbstractPlace> read(const QByteArray &document, Texts texts, Error::Type *error, QString *reason)
{
    return readAndReport<AbstractPlace>(error, reason,
                                        [&](auto &place) { return readDocument(document, texts, place); });
}

std::unique_ptr<Place> readPlace(const QByteArray &document, Error::Type *error, QString *reason)
{
    return readPlace(document, Texts::Latin1, error, reason);
}

std::unique_ptr<Place> readPlace(const QByteArray &document, Texts texts, Error::Type *error, QString *reason)
{
    return readAndReport<Place>(error, reason, [&](std::unique_ptr<Place> &place) {
        std::unique_ptr<AbstractPlace> any;
        Refusal refusal = readDocument(document, texts, any);
        if (refusal.isEmpty() && !qobject_cast<Place *>(any.get()))
            return QStringLiteral("The document is that of a place header, not of a full place.");
        place.reset(qobject_cast<Place *>(any.release()));
        return refusal;
    });
}

} // namespace vela::platform::places::PlaceJson
