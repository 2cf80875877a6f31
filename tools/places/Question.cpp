// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Question.h"

#include "TerminalText.h"

#include <cstdio>
#include <iostream>
#include <string>

namespace tool
{

bool ask(const QString &question, bool isYes)
{
    std::fprintf(stderr, "%s [%s] ", qUtf8Printable(printable(question)), isYes ? "Y/n" : "y/N");
    std::string line;
    if (!std::getline(std::cin, line)) {
        std::fputc('\n', stderr);
        return false;
    }
    const QString answer = QString::fromStdString(line).trimmed().toLower();
    return answer.isEmpty() ? isYes : answer == QLatin1String("y") || answer == QLatin1String("yes");
}

} // namespace tool
