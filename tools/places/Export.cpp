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

/// Places in one answer of the service. Not too many: a page of headers is held in memory.
constexpr int PAGE_SIZE = 1000;

/// An order that nothing but a use of a place changes, and that new places take in the order they were added: pages
/// neither overlap nor leave gaps.
SortRule exportOrder()
{
    return SortRule::createSimpleSortRule(SortField::LastUsedTime, SortOrder::Ascending);
}

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

/// The device that compresses an exported file, if its name asks for that. In an archive the file has the name without
/// the archive's ending, and one that tells its format.
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

/// Writes the places one after the other, page by page.
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
        return m_status;
    }

private:
    /// What the writer writes to.
    QIODevice &outOf(QFileDevice &file)
    {
        if (m_compressor)
            return *m_compressor;
        return ::isatty(file.handle()) ? static_cast<QIODevice &>(m_filter) : file;
    }

    /// Writes the places from `offset` on and moves it behind them. False when there are no more. A page can have fewer
    /// places than were asked for.
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
    const std::unique_ptr<ArchiveDevice> m_compressor; ///< Null when nothing is compressed.
    const std::unique_ptr<PlaceWriter> m_writer;
    const QString m_title;
    ProgressBar m_bar;
    int m_count = 0;
    ExitStatus m_status = Done;
};

/// Exports to a file that is open, or could not be opened; `finish` makes it stand.
template <typename File, typename Finish>
ExitStatus exportTo(File &file, const Format &format, const QString &path, Finish finish)
{
    const ExitStatus status = file.isOpen() ? Exporter(file, format, path).run() : Done;
    if (status != Done || (file.isOpen() && finish(file)))
        return status;
    complain(path, file.errorString());
    return Failed;
}

/// True for what cannot be replaced by a new file: standard output, a device, a pipe.
bool isStream(const QString &path)
{
    const QFileInfo file(path);
    return path == QLatin1String("-") || (file.exists() && !file.isFile());
}

} // namespace

ExitStatus exportPlaces(const QString &path, const QString &formatName)
{
    const Format *format = formatByName(formatName);
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
        return exportTo(out, *format, path, [](QFile &file) { return file.flush(); });
    }
    QSaveFile out(path);
    (void)out.open(QIODevice::WriteOnly);
    return exportTo(out, *format, path, [](QSaveFile &file) { return file.commit(); });
}

} // namespace tool
