// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Export.h"

#include "formats/ArchiveDevice.h"
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

/// Writes text to a terminal and escapes control characters.
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

/// The device that compresses the exported file; null when the file name has no compression extension. The file in a
/// zip archive is named like the archive, without ".zip".
std::unique_ptr<ArchiveDevice> makeCompressor(QFileDevice &file, const Format &format)
{
    const QString path = file.fileName();
    const Compression compression = compressionOf(path);
    if (compression == Compression::None)
        return nullptr;
    const QString name = QFileInfo(withoutCompression(path)).fileName();
    const QString extension = formatByPath(path) ? QString() : QLatin1Char('.') + QLatin1String(format.name);
    return std::make_unique<ArchiveDevice>(file, compression, name + extension);
}

/// Writes the chosen places in sequence.
class Exporter
{
public:
    Exporter(QFileDevice &file, const Format &format, const QString &title)
        : m_filter(file)
        , m_compressor(makeCompressor(file, format))
        , m_writer(format.makeWriter(outOf(file)))
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
        if (m_status == Done && m_compressor)
            check(m_compressor->finish());
        if (const QString note = m_writer->note(); m_status == Done && !note.isEmpty())
            complain(m_title, note);
        return m_status;
    }

    /// Reports the number of places that the format cannot hold; Done when there are none.
    ExitStatus reportLeftOut()
    {
        if (m_leftOutCount == 0)
            return Done;
        complain(m_title, QStringLiteral("places left out: %1").arg(m_leftOutCount));
        return Failed;
    }
    [[nodiscard]] qint64 count() const { return m_count; }

private:
    /// The device that the writer writes to.
    QIODevice &outOf(QFileDevice &file)
    {
        if (m_compressor)
            return *m_compressor;
        return ::isatty(file.handle()) ? static_cast<QIODevice &>(m_filter) : file;
    }

    void writeFound(const PlaceChoice &choice)
    {
        const Error::Type error = choice.forEach({}, [this](const AbstractPlace &place) {
            writePlace(place.id(), false);
            return m_status == Done;
        });
        if (m_status == Done)
            m_status = report(error, QStringLiteral("export"));
    }

    /// A place that was found may have been removed since; it is skipped.
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
        if (m_writer->leftOut().isEmpty()) {
            m_bar.show(0, ++m_count);
            return;
        }
        m_bar.clear();
        complain(QStringLiteral("place %1 \"%2\"").arg(id).arg(place->name()), m_writer->leftOut());
        ++m_leftOutCount;
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
    const std::unique_ptr<ArchiveDevice> m_compressor; ///< Null when the output is not compressed.
    const std::unique_ptr<PlaceWriter> m_writer;
    const QString m_title;
    ProgressBar m_bar;
    qint64 m_count = 0;
    qint64 m_leftOutCount = 0;
    ExitStatus m_status = Done;
};

/// Exports to a file. Reports the error of a file that is not open. `finish` commits the file, even when some places
/// were left out.
template <typename File, typename Finish>
ExitStatus exportTo(File &file, const Format &format, const ExportOptions &options, qint64 &count, Finish finish)
{
    ExitStatus status = Done;
    if (file.isOpen()) {
        Exporter exporter(file, format, options.path);
        status = exporter.run(options.choice);
        count = exporter.count();
        if (status != Done)
            return status;
        status = exporter.reportLeftOut();
    }
    if (file.isOpen() && finish(file))
        return status;
    return fail(options.path, file.errorString());
}

/// True for a path that cannot be replaced by a new file: standard output, a device, a pipe.
bool isStream(const QString &path)
{
    const QFileInfo file(path);
    return path == QLatin1String("-") || (file.exists() && !file.isFile());
}

/// The format with this name; without a name, the format of the file's extension, or GeoJSON when there is no
/// extension. Null for an unknown extension.
const Format *exportFormat(const QString &path, const QString &name)
{
    if (const Format *format = formatByName(name))
        return format;
    const bool hasExtension = path != QLatin1String("-") && !QFileInfo(withoutCompression(path)).suffix().isEmpty();
    return hasExtension ? formatByPath(path) : formatByName(QStringLiteral("geojson"));
}

} // namespace

ExitStatus exportPlaces(const ExportOptions &options, qint64 &count)
{
    const QString &path = options.path;
    const Format *format = exportFormat(path, options.format);
    if (!format || !format->makeWriter) {
        complain(path,
                 QStringLiteral("%1; use the extension of, or --format with, one of: %2")
                     .arg(format ? QStringLiteral("the format %1 cannot be written").arg(QLatin1String(format->name))
                                 : QStringLiteral("unknown file extension"),
                          formatNames(true).join(QStringLiteral(", "))));
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
