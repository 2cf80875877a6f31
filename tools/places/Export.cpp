// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Export.h"

#include "formats/Format.h"
#include "ProgressBar.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceManager.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <memory>

#include <unistd.h>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Passes text on to a terminal, with escapes for what would steer it.
class TerminalFilter : public QIODevice
{
public:
    explicit TerminalFilter(QIODevice &terminal)
        : m_terminal(terminal)
    {
        open(WriteOnly | Unbuffered);
    }

protected:
    qint64 readData(char * /*data*/, qint64 /*size*/) override { return -1; }
    qint64 writeData(const char *data, qint64 size) override
    {
        const QByteArray bytes = printableJson(QByteArray(data, static_cast<int>(size)));
        if (m_terminal.write(bytes) == bytes.size())
            return size;
        setErrorString(m_terminal.errorString());
        return -1;
    }

private:
    QIODevice &m_terminal;
};

/// Writes the chosen places one after the other.
class Exporter
{
public:
    Exporter(QFileDevice &file, const Format &format, const QString &title)
        : m_filter(file)
        , m_writer(format.makeWriter(::isatty(file.handle()) ? static_cast<QIODevice &>(m_filter) : file))
        , m_title(file.fileName().isEmpty() ? QStringLiteral("standard output") : file.fileName())
        , m_bar(title)
    {}

    ExitStatus run(const PlaceChoice &choice)
    {
        check(m_writer->begin());
        if (choice.ids.empty())
            writeFound(choice);
        for (const qint64 id : choice.ids)
            writePlace(id, true);
        if (m_status == Done)
            check(m_writer->end());
        return m_status;
    }

    [[nodiscard]] qint64 count() const { return m_count; }

private:
    void writeFound(const PlaceChoice &choice)
    {
        const Error::Type error = choice.forEach({}, [this](const AbstractPlace &place) {
            writePlace(place.id(), false);
            return m_status == Done;
        });
        if (m_status == Done)
            m_status = report(error, QStringLiteral("export"));
    }

    /// One that was found and is not there any more has been removed since.
    void writePlace(qint64 id, bool isNamed)
    {
        if (m_status != Done)
            return;
        Error::Type error = Error::Success;
        const std::unique_ptr<Place> place(m_manager.getPlace(id, &error));
        if (error == Error::NotFound && !isNamed)
            return;
        m_status = report(error, nameOfPlace(id));
        if (!place || m_status != Done)
            return;
        check(m_writer->write(*place));
        m_bar.show(0, ++m_count);
    }

    void check(const QString &problem)
    {
        if (problem.isEmpty())
            return;
        m_bar.clear();
        complain(m_title, problem);
        m_status = Failed;
    }

    const PlaceManager m_manager;
    TerminalFilter m_filter;
    const std::unique_ptr<PlaceWriter> m_writer;
    const QString m_title;
    ProgressBar m_bar;
    qint64 m_count = 0;
    ExitStatus m_status = Done;
};

/// Exports to a file that is open, or could not be opened; `finish` makes it stand.
template <typename File, typename Finish>
ExitStatus exportTo(File &file, const Format &format, const ExportOptions &options, qint64 &count, Finish finish)
{
    ExitStatus status = Done;
    if (file.isOpen()) {
        Exporter exporter(file, format, options.path);
        status = exporter.run(options.choice);
        count = exporter.count();
    }
    if (status != Done || (file.isOpen() && finish(file)))
        return status;
    return fail(options.path, file.errorString());
}

/// True for what cannot be replaced by a new file: standard output, a device, a pipe.
bool isStream(const QString &path)
{
    const QFileInfo file(path);
    return path == QLatin1String("-") || (file.exists() && !file.isFile());
}

} // namespace

ExitStatus exportPlaces(const ExportOptions &options, qint64 &count)
{
    const QString &path = options.path;
    const Format *format = formatByName(options.format);
    if (!format)
        format = formatByPath(path);
    if (!format)
        format = formatByName(QStringLiteral("geojson"));
    if (!format->makeWriter) {
        complain(path, QStringLiteral("%1 can only be read; see places export --help for what is written")
                           .arg(QLatin1String(format->name)));
        return WrongUse;
    }
    if (isStream(path)) {
        QFile out(path);
        (void)(path == QLatin1String("-") ? out.open(stdout, QIODevice::WriteOnly) : out.open(QIODevice::WriteOnly));
        return exportTo(out, *format, options, count, [](QFile &file) { return file.flush(); });
    }
    QSaveFile out(path);
    (void)out.open(QIODevice::WriteOnly);
    return exportTo(out, *format, options, count, [](QSaveFile &file) { return file.commit(); });
}

} // namespace tool
