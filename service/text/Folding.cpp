// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "text/Folding.h"

#include "text/TextKeys.h"

#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uscript.h>

#include <algorithm>
#include <memory>

namespace placesd
{

namespace
{

/// Maximum number of consecutive combining marks: the longest run in a Stream-Safe text (Unicode Standard Annex #15,
/// 13). Sorting the marks of a run takes quadratic time.
constexpr int MARKS_IN_A_ROW = 30;

/// Drops excess marks of a run; no language has so many.
icu::UnicodeString toIcu(const QString &text)
{
    const icu::UnicodeString all(reinterpret_cast<const char16_t *>(text.utf16()), static_cast<int32_t>(text.size()));
    icu::UnicodeString bounded;
    int marks = 0;
    for (int32_t i = 0; i < all.length(); i = all.moveIndex32(i, 1)) {
        const UChar32 code = all.char32At(i);
        marks = u_getCombiningClass(code) == 0 ? 0 : marks + 1;
        if (marks <= MARKS_IN_A_ROW)
            bounded.append(code);
    }
    return bounded;
}

QString fromIcu(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

/// Combining marks that are accents: the blocks "Combining Diacritical Marks", with Extended and Supplement, the vowel
/// signs of Arabic, and the points of Hebrew.
bool isAccent(UChar32 code)
{
    return (code >= 0x0300 && code <= 0x036F) || (code >= 0x1AB0 && code <= 0x1AFF)
           || (code >= 0x1DC0 && code <= 0x1DFF) || (code >= 0x064B && code <= 0x065F) || code == 0x0670
           || (code >= 0x0591 && code <= 0x05BD);
}

UScriptCode scriptOf(UChar32 code)
{
    UErrorCode status = U_ZERO_ERROR;
    return uscript_getScript(code, &status);
}

template <typename Test>
bool hasLetter(const icu::UnicodeString &text, Test isWanted)
{
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const UChar32 code = text.char32At(i);
        if (u_isalpha(code) && isWanted(code))
            return true;
    }
    return false;
}

/// Null when ICU's data lack the rules; texts are then found in their own script only.
std::unique_ptr<icu::Transliterator> transliterator(const char *rules)
{
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<icu::Transliterator>(icu::Transliterator::createInstance(rules, UTRANS_FORWARD, status));
}

/// @tparam INSTANCE returns a normalizer shared by all threads; null when ICU's data lack it.
template <const icu::Normalizer2 *(*INSTANCE)(UErrorCode &)>
icu::UnicodeString normalized(const icu::UnicodeString &text)
{
    UErrorCode status = U_ZERO_ERROR;
    static const icu::Normalizer2 *const normalizer = [] {
        UErrorCode unused = U_ZERO_ERROR;
        return INSTANCE(unused);
    }();
    icu::UnicodeString result = normalizer ? normalizer->normalize(text, status) : text;
    return U_SUCCESS(status) ? result : text;
}

} // namespace

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

QString caseFolded(const QString &text)
{
    QString folded =
        isAscii(text) ? text.toLower() : fromIcu(normalized<icu::Normalizer2::getNFKCCasefoldInstance>(toIcu(text)));
    return folded.replace(QLatin1Char(KEY_END), QLatin1Char(' '));
}

QString withoutAccents(const QString &text)
{
    if (isAscii(text))
        return text;
    static const auto toAscii = transliterator("[:Latin:] Latin-ASCII");
    const icu::UnicodeString decomposed = normalized<icu::Normalizer2::getNFDInstance>(toIcu(text));
    icu::UnicodeString plain;
    for (int32_t i = 0; i < decomposed.length(); i = decomposed.moveIndex32(i, 1)) {
        if (const UChar32 code = decomposed.char32At(i); !isAccent(code))
            plain.append(code);
    }
    if (toAscii && hasLetter(plain, [](UChar32 code) { return code >= 0x80 && scriptOf(code) == USCRIPT_LATIN; }))
        toAscii->transliterate(plain);
    // The remaining marks may compose with other letters now.
    return fromIcu(normalized<icu::Normalizer2::getNFCInstance>(plain)).toLower();
}

QString inLatin(const QString &text)
{
    static const auto toLatin =
        transliterator("Russian-Latin/BGN; Greek-Latin/UNGEGN; Any-Latin; [:Latin:] Latin-ASCII");
    icu::UnicodeString latin = toIcu(text);
    if (isAscii(text) || !toLatin || !hasLetter(latin, [](UChar32 code) { return scriptOf(code) != USCRIPT_LATIN; }))
        return {};
    toLatin->transliterate(latin);
    return withoutAccents(caseFolded(fromIcu(latin)));
}

} // namespace placesd
