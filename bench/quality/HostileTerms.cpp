// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "HostileTerms.h"

#include "Slips.h"

#include <algorithm>
#include <functional>

namespace bench
{

namespace
{

constexpr int TERMS = 20; // in a set
constexpr int WORDS = 64;
constexpr int LONGEST_TERM = 4096; // UTF-16 units
constexpr int LONG_WORD = 8;
constexpr char LETTERS[] = "aesnbmkz";

class HostileTerms : private Random
{
public:
    HostileTerms(const KnownPlaces &places, std::uint64_t seed)
        : Random(seed)
    {
        for (const KnownPlace &place : places.all()) {
            for (const QString &word : place.name.split(QLatin1Char(' '))) {
                if (!std::all_of(word.begin(), word.end(), [](QChar each) { return each.isLetter(); }))
                    continue;
                m_words.append(word);
                if (word.size() >= LONG_WORD)
                    m_longWords.append(word);
            }
        }
    }

    std::vector<QuestionSet> sets()
    {
        add("one letter", [this] { return QString(letter()); });
        add("one letter, 64 times apart", [this] { return words([c = QString(letter())] { return c; }, WORDS); });
        add("one letter, 100 times", [this] { return QString(100, letter()); });
        add("two letters in 64 words", [this] { return words([this] { return word().left(2); }, WORDS); });
        add("64 words", [this] { return words([this] { return word(); }, WORDS); });
        add("64 beginnings", [this] { return words([this] { return word().left(3); }, WORDS); });
        add("64 long words, each wrong", [this] { return words([this] { return wrongWord(); }, WORDS); });
        add("3 long words, each wrong", [this] { return words([this] { return wrongWord(); }, 3); });
        add("8 words that are no words", [this] { return words([this] { return noise(10, 'a', 26); }, 8); });
        add("4,096 units, one word", [this] { return noise(LONGEST_TERM, 'a', 26); });
        add("4,096 units, 64 words", [this] { return words([this] { return noise(63, 'a', 26); }, WORDS); });
        add("4,096 units, one-letter words",
            [this] { return words([this] { return noise(1, 'a', 26); }, LONGEST_TERM / 2); });
        add("emoji",
            [this] { return words([this] { return QStringLiteral("\U0001F600") + noise(2, 0xDE00, 64); }, 8); });
        add("mixed scripts", [this] { return noise(3, 0x430, 32) + noise(3, 'a', 26) + noise(3, 0x4E00, 512); });
        add("64 mixed scripts", [this] {
            return words([this] { return noise(2, 0x3B1, 24) + noise(2, 0x627, 20) + noise(4, 0x4E00, 512); }, WORDS);
        });
        add("4,096 units, Chinese", [this] { return noise(LONGEST_TERM, 0x4E00, 512); });
        add("broken surrogates", [this] { return noise(100, 0xD800, 0x800); });
        add("quotes and operators",
            [this] { return QStringLiteral("\"%1\" AND ({name} : %2* OR NEAR(\"%3)").arg(word(), word(), word()); });
        return std::move(m_sets);
    }

private:
    void add(const char *name, const std::function<QString()> &make)
    {
        QuestionSet set{QStringLiteral("hostile: ") + QLatin1String(name), {}};
        for (int i = 0; i < TERMS; ++i)
            set.questions.push_back({make(), {}});
        m_sets.push_back(std::move(set));
    }

    QString words(const std::function<QString()> &make, int count)
    {
        QStringList made;
        for (int i = 0; i < count; ++i)
            made.append(make());
        return made.join(QLatin1Char(' '));
    }

    QChar letter() { return QLatin1Char(LETTERS[below(sizeof LETTERS - 1)]); }
    const QString &word() { return oneOf(m_words); }

    QString wrongWord()
    {
        return withSlip(withSlip(oneOf(m_longWords), Slip::Wrong, false, *this), Slip::Wrong, false, *this);
    }

    /// Random units of a range.
    QString noise(int count, ushort first, std::uint64_t range)
    {
        QString text;
        for (int i = 0; i < count; ++i)
            text += QChar(static_cast<ushort>(first + below(range)));
        return text;
    }

    QStringList m_words;
    QStringList m_longWords;
    std::vector<QuestionSet> m_sets;
};

} // namespace

std::vector<QuestionSet> hostileTerms(const KnownPlaces &places, std::uint64_t seed)
{
    return HostileTerms(places, seed).sets();
}

} // namespace bench
