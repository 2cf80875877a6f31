// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Slips.h"

#include <utility>

namespace bench
{

namespace
{

constexpr char LETTERS[] = "abcdefghijklmnopqrstuvwxyz";

QChar someLetter(Random &random)
{
    return QLatin1Char(LETTERS[random.below(sizeof LETTERS - 1)]);
}

/// Index after the last possible letter of a typing error.
int endOf(const QString &word, Slip slip)
{
    switch (slip) {
    case Slip::Swapped:
    case Slip::Missing:
        return word.size() - 1;
    case Slip::Wrong:
        return word.size();
    case Slip::Extra:
        break;
    }
    return word.size() + 1;
}

} // namespace

QString withSlip(const QString &word, Slip slip, bool isFirst, Random &random)
{
    const int at = isFirst ? 0 : 1 + static_cast<int>(random.below(static_cast<std::uint64_t>(endOf(word, slip) - 1)));
    QString typed = word;
    switch (slip) {
    case Slip::Swapped:
        std::swap(typed.begin()[at], typed.begin()[at + 1]);
        break;
    case Slip::Missing:
        typed.remove(at, 1);
        break;
    case Slip::Wrong:
        typed[at] = someLetter(random);
        break;
    case Slip::Extra:
        typed.insert(at, someLetter(random));
        break;
    }
    return typed;
}

} // namespace bench
