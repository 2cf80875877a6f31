// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PlaceWriter.h"

#include <QtCore/QByteArray>

namespace formats
{

/// A format in which the text of a place does not depend on other places.
struct TextForm
{
    QByteArray (*toText)(const vela::platform::places::Place &place);
    const char *opening;
    const char *separator;
    const char *ending; ///< Left out when there is no opening and no place.
};

/// Writes a file in such a format.
class TextWriter : public PlaceWriter
{
public:
    TextWriter(QIODevice &out, const TextForm &form)
        : m_out(out)
        , m_form(form)
    {}

    QString begin() override { return writeAll(m_out, m_form.opening); }
    QString write(const vela::platform::places::Place &place) override
    {
        const QByteArray before = m_isEmpty ? QByteArray() : QByteArray(m_form.separator);
        m_isEmpty = false;
        return writeAll(m_out, before + m_form.toText(place));
    }
    QString end() override
    {
        const bool isNothing = m_isEmpty && m_form.opening[0] == '\0';
        return isNothing ? QString() : writeAll(m_out, m_form.ending);
    }

private:
    QIODevice &m_out;
    const TextForm &m_form;
    bool m_isEmpty = true;
};

} // namespace formats
