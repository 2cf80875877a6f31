// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"

#include "formats/JsonWriter.h"

namespace tool
{

void printDone(const Context &context, const char *member, qint64 count, const QString &line)
{
    if (context.form == Form::Table) {
        if (!context.isQuiet)
            printLine(line);
        return;
    }
    formats::JsonWriter out;
    out.object([&] { out.member(member, count); });
    printJson(out.result());
}

} // namespace tool
