// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "Export.h"

#include "formats/ArchiveDevice.h"
#include "formats/Format.h"
#include "ProgressBar.h"
#include "TerminalText.h"

#include <places/Place.h>
#include <places/PlaceHeader.h>
#include <places/PlaceManager.h>
#include <places/SearchHandle.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>

#include <memory>
#include <vector>

#include <unistd.h>

namespace tool
{

using namespace formats;
using namespace places;

namespace
{

/// Places in one answer of the service: a page of headers is held in memory.
constexpr int PAGE_SIZE = 1000;

/// By last use, then by id. Only a use moves a place, so pages neither overlap nor leave gaps.
SortRule exportOrder()
{
    return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Ascending);
}

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

/// The device that compresses the exported file; null for a file name without the extension of a compression. The file
/// in a zip archive has the archive's name without ".zip".
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

/// Writes places one after the other, page by page.
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

    ExitStatus run()
    {
        check(m_writer->begin());
        bool isLast = false;
        for (int offset = 0; !isLast && m_status == Done;)
            isLast = !writePage(offset);
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

private:
    /// The device that the writer writes to.
    QIODevice &outOf(QFileDevice &file)
    {
        if (m_compressor)
            return *m_compressor;
        return ::isatty(file.handle()) ? static_cast<QIODevice &>(m_filter) : file;
    }

    /// Writes the places of one page and moves `offset` behind it. False when there are no more. A page can have fewer
    /// places than requested.
    bool writePage(int &offset)
    {
        Error::Type error = Error::Success;
        SearchHandle handle;
        std::vector<std::unique_ptr<PlaceHeader>> page;
        for (PlaceHeader *header : m_manager.findPlaces(QString(), &error, &handle, exportOrder(), offset, PAGE_SIZE))
            page.emplace_back(header);
        m_status = report(error, QStringLiteral("export"));
        for (const auto &header : page) {
            if (m_status == Done && header->isPersisted())
                writePlace(header->id());
        }
        offset += static_cast<int>(page.size());
        return handle.hasMoreData() && !page.empty();
    }

    void writePlace(qint64 id)
    {
        Error::Type error = Error::Success;
        const std::unique_ptr<Place> place(m_manager.getPlace(id, &error));
        if (error == Error::NotFound)
            return; // removed since its page was fetched
        m_status = report(error, QStringLiteral("place %1").arg(id));
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
    const std::unique_ptr<ArchiveDevice> m_compressor; ///< Null when nothing is compressed.
    const std::unique_ptr<PlaceWriter> m_writer;
    const QString m_title;
    ProgressBar m_bar;
    int m_count = 0;
    int m_leftOutCount = 0;
    ExitStatus m_status = Done;
};

/// Exports to a file that is open or failed to open; `finish` commits the file, also when places were left out.
template <typename File, typename Finish>
ExitStatus exportTo(File &file, const Format &format, const QString &path, Finish finish)
{
    ExitStatus status = Done;
    if (file.isOpen()) {
        Exporter exporter(file, format, path);
        status = exporter.run();
        if (status != Done)
            return status;
        status = exporter.reportLeftOut();
    }
    if (file.isOpen() && finish(file))
        return status;
    complain(path, file.errorString());
    return Failed;
}

/// True for a path that cannot be replaced by a new file: standard output, a device, a pipe.
bool isStream(const QString &path)
{
    const QFileInfo file(path);
    return path == QLatin1String("-") || (file.exists() && !file.isFile());
}

/// The format with this name, else the format of the file's extension; GeoJSON without an extension. Null for an
/// unknown extension.
const Format *exportFormat(const QString &path, const QString &name)
{
    if (const Format *format = formatByName(name))
        return format;
    const bool hasExtension = path != QLatin1String("-") && !QFileInfo(withoutCompression(path)).suffix().isEmpty();
    return hasExtension ? formatByPath(path) : formatByName(QStringLiteral("geojson"));
}

} // namespace

ExitStatus exportPlaces(const QString &path, const QString &formatName)
{
    const Format *format = exportFormat(path, formatName);
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
        return exportTo(out, *format, path, [](QFile &file) { return file.flush(); });
    }
    QSaveFile out(path);
    (void)out.open(QIODevice::WriteOnly);
    return exportTo(out, *format, path, [](QSaveFile &file) { return file.commit(); });
}

} // namespace tool
