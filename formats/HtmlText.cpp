// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "HtmlText.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtCore/QStringList>

namespace formats
{

namespace
{

/// Longest reference, from "&" to ";".
constexpr int MAX_REFERENCE_LENGTH = 12;
constexpr uint LAST_CODE_POINT = 0x10FFFF;

QSet<QString> wordsOf(const char *words)
{
    const QStringList list = QString::fromLatin1(words).split(QLatin1Char(' '));
    return {list.begin(), list.end()};
}

/// Elements of HTML that start a line.
const QSet<QString> &lineElements()
{
    static const QSet<QString> NAMES =
        wordsOf("br p div li ul ol dl dt dd tr table h1 h2 h3 h4 h5 h6 hr pre blockquote");
    return NAMES;
}

/// Other HTML elements that occur in descriptions.
const QSet<QString> &otherElements()
{
    static const QSet<QString> NAMES = wordsOf(
        "a abbr address article b big body caption center cite code col em font footer head header html i iframe img "
        "ins "
        "kbd label link meta nav s section small span strike strong style script sub sup tbody td tfoot th thead title "
        "tt u var video");
    return NAMES;
}

/// Characters by the names of their references. LATIN_1 lists the names of U+00A0 to U+00FF in order.
const QHash<QString, uint> &namedCharacters()
{
    static const QHash<QString, uint> CHARACTERS = [] {
        constexpr char LATIN_1[] =
            "nbsp iexcl cent pound curren yen brvbar sect uml copy ordf laquo not shy reg macr deg plusmn sup2 sup3 "
            "acute "
            "micro para middot cedil sup1 ordm raquo frac14 frac12 frac34 iquest Agrave Aacute Acirc Atilde Auml Aring "
            "AElig Ccedil Egrave Eacute Ecirc Euml Igrave Iacute Icirc Iuml ETH Ntilde Ograve Oacute Ocirc Otilde Ouml "
            "times Oslash Ugrave Uacute Ucirc Uuml Yacute THORN szlig agrave aacute acirc atilde auml aring aelig "
            "ccedil "
            "egrave eacute ecirc euml igrave iacute icirc iuml eth ntilde ograve oacute ocirc otilde ouml divide "
            "oslash "
            "ugrave uacute ucirc uuml yacute thorn yuml";
        QHash<QString, uint> characters{
            {QStringLiteral("amp"), '&'},       {QStringLiteral("lt"), '<'},        {QStringLiteral("gt"), '>'},
            {QStringLiteral("quot"), '"'},      {QStringLiteral("apos"), '\''},     {QStringLiteral("OElig"), 0x152},
            {QStringLiteral("oelig"), 0x153},   {QStringLiteral("Scaron"), 0x160},  {QStringLiteral("scaron"), 0x161},
            {QStringLiteral("ndash"), 0x2013},  {QStringLiteral("mdash"), 0x2014},  {QStringLiteral("lsquo"), 0x2018},
            {QStringLiteral("rsquo"), 0x2019},  {QStringLiteral("sbquo"), 0x201A},  {QStringLiteral("ldquo"), 0x201C},
            {QStringLiteral("rdquo"), 0x201D},  {QStringLiteral("bdquo"), 0x201E},  {QStringLiteral("bull"), 0x2022},
            {QStringLiteral("hellip"), 0x2026}, {QStringLiteral("prime"), 0x2032},  {QStringLiteral("Prime"), 0x2033},
            {QStringLiteral("lsaquo"), 0x2039}, {QStringLiteral("rsaquo"), 0x203A}, {QStringLiteral("euro"), 0x20AC},
            {QStringLiteral("trade"), 0x2122},  {QStringLiteral("larr"), 0x2190},   {QStringLiteral("rarr"), 0x2192},
        };
        uint next = 0xA0;
        const QStringList names = QString::fromLatin1(LATIN_1).split(QLatin1Char(' '));
        for (const QString &name : names)
            characters.insert(name, next++);
        return characters;
    }();
    return CHARACTERS;
}

/// The character of a reference without "&" and ";"; 0 for an unknown one.
uint referencedCharacter(const QString &reference)
{
    if (!reference.startsWith(QLatin1Char('#')))
        return namedCharacters().value(reference);
    const bool isHex = reference.midRef(1, 1).compare(QLatin1Char('x'), Qt::CaseInsensitive) == 0;
    const uint code = reference.midRef(isHex ? 2 : 1).toUInt(nullptr, isHex ? 16 : 10);
    const bool isCharacter = code <= LAST_CODE_POINT && !QChar::isSurrogate(code);
    return isCharacter ? code : 0;
}

/// Scans a text once.
class HtmlScanner
{
public:
    explicit HtmlScanner(const QString &text)
        : m_text(text)
    {}

    QString toText()
    {
        while (m_at < m_text.size()) {
            const QChar c = m_text[m_at];
            const bool isMarkup =
                (c == QLatin1Char('<') && (skipComment() || takeTag())) || (c == QLatin1Char('&') && takeReference());
            if (!isMarkup) {
                m_out += c;
                ++m_at;
            }
            m_isHtml = m_isHtml || isMarkup;
        }
        return m_isHtml ? tidied() : m_text;
    }

private:
    bool skipComment()
    {
        if (m_text.midRef(m_at, 4) != QLatin1String("<!--"))
            return false;
        return skipBehind(QStringLiteral("-->"), m_at + 4);
    }

    /// Moves past the next `end`; false when there is none. A missing `end` is searched only once.
    bool skipBehind(const QString &end, int from)
    {
        if (m_missing.contains(end))
            return false;
        const int found = m_text.indexOf(end, from, Qt::CaseInsensitive);
        if (found < 0)
            m_missing.insert(end);
        else
            m_at = found + end.size();
        return found >= 0;
    }

    bool takeTag()
    {
        const bool isEnd = m_text.midRef(m_at + 1, 1) == QLatin1String("/");
        const int nameStart = m_at + (isEnd ? 2 : 1);
        int nameEnd = nameStart;
        while (nameEnd < m_text.size() && m_text[nameEnd].unicode() < 0x80 && m_text[nameEnd].isLetterOrNumber())
            ++nameEnd;
        const QString name = m_text.mid(nameStart, nameEnd - nameStart).toLower();
        const bool startsLine = lineElements().contains(name);
        if (!startsLine && !otherElements().contains(name))
            return false;
        int end = nameEnd;
        while (end < m_text.size() && m_text[end] != QLatin1Char('>') && m_text[end] != QLatin1Char('<'))
            ++end;
        const bool isTag = end < m_text.size() && m_text[end] == QLatin1Char('>')
                           && QStringLiteral(" \t\r\n/>").contains(m_text[nameEnd]);
        if (!isTag)
            return false;
        m_at = end + 1;
        if (startsLine)
            m_out += QLatin1Char('\n');
        if (!isEnd && (name == QLatin1String("script") || name == QLatin1String("style")))
            skipBehind(QStringLiteral("</%1>").arg(name), m_at);
        return true;
    }

    bool takeReference()
    {
        const int end = m_text.midRef(m_at, MAX_REFERENCE_LENGTH).indexOf(QLatin1Char(';'));
        const uint code = end < 0 ? 0 : referencedCharacter(m_text.mid(m_at + 1, end - 1));
        if (code == 0)
            return false;
        m_out += QString::fromUcs4(&code, 1);
        m_at += end + 1;
        return true;
    }

    /// The output without blanks at the ends of lines and without repeated empty lines.
    QString tidied() const
    {
        QString tidy;
        const QStringList lines = m_out.split(QLatin1Char('\n'));
        for (const QString &line : lines) {
            const QString text = QString(line).replace(QChar(QChar::Nbsp), QLatin1Char(' ')).trimmed();
            const bool isSecondEmpty = text.isEmpty() && (tidy.isEmpty() || tidy.endsWith(QLatin1String("\n\n")));
            if (!isSecondEmpty)
                tidy += text + QLatin1Char('\n');
        }
        return tidy.trimmed();
    }

    const QString &m_text;
    int m_at = 0;
    QString m_out;
    QSet<QString> m_missing;
    bool m_isHtml = false;
};

} // namespace

QString htmlToText(const QString &text)
{
    return HtmlScanner(text).toText();
}

} // namespace formats
