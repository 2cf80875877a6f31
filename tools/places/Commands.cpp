// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Commands.h"

#include "formats/JsonWriter.h"

namespace tool
{

namespace
{

template <typename Value>
void print(const Context &context, const char *member, const Value &value, const QString &line)
{
    if (context.form == Form::Table) {
        if (!context.isQuiet)
            printLine(line);
        return;
    }
    formats::JsonWriter out;
    out.object([&] { out.member(member, value); });
    printJson(out.result());
}

} // namespace

void printDone(const Context &context, const char *member, qint64 count, const QString &line)
{
    print(context, member, count, line);
}

void printDone(const Context &context, const char *member, const QString &text, const QString &line)
{
    print(context, member, text, line);
}

} // namespace tool
