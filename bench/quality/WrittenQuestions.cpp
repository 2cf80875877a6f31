// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "WrittenQuestions.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace bench
{

namespace
{

/// The query in a line, without a place for an invalid line.
SearchQuestion questionOf(const QString &line, const KnownPlaces &places)
{
    const QStringList parts = line.split(QLatin1Char('\t'));
    if (parts.size() < 2 || parts.size() > 3 || parts[0].isEmpty())
        return {};
    SearchQuestion question{parts[0], places.named(parts[1])};
    const QString country = parts.value(2);
    const auto isElsewhere = [&](const KnownPlace *place) {
        return !country.isEmpty() && place->countryCode != country;
    };
    question.meant.erase(std::remove_if(question.meant.begin(), question.meant.end(), isElsewhere),
                         question.meant.end());
    return question;
}

} // namespace

QuestionSet readQuestions(const QString &path, const KnownPlaces &places)
{
    QuestionSet set{QStringLiteral("typed by people"), {}};
    QFile file(path);
    bool isRight = file.open(QIODevice::ReadOnly);
    for (int number = 1; !file.atEnd(); ++number) {
        QString line = QString::fromUtf8(file.readLine());
        while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        set.questions.push_back(questionOf(line, places));
        if (!set.questions.back().meant.empty())
            continue;
        isRight = false;
        std::cerr << qPrintable(path) << ":" << number << ": not a query, or an unknown place: " << qPrintable(line)
                  << "\n";
    }
    if (!isRight) {
        std::cerr << "quality_bench: " << qPrintable(path) << ": cannot be used\n";
        std::exit(EXIT_FAILURE);
    }
    return set;
}

} // namespace bench
