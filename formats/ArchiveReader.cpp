// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "ArchiveReader.h"

#include "FileBytes.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <string_view>

#include <locale.h>

namespace formats
{

namespace
{

using namespace std::string_view_literals;

constexpr std::string_view ZIP[] = {"PK\x03\x04"sv, "PK\x05\x06"sv};
constexpr std::string_view COMPRESSED[] = {
    "BZh91AY&SY"sv, "BZh11AY&SY"sv, "BZh21AY&SY"sv, "BZh31AY&SY"sv, "BZh41AY&SY"sv,
    "BZh51AY&SY"sv, "BZh61AY&SY"sv, "BZh71AY&SY"sv, "BZh81AY&SY"sv, "\x28\xB5\x2F\xFD"sv,
};

template <std::size_t COUNT>
bool startsWithOne(const QByteArray &head, const std::string_view (&signatures)[COUNT])
{
    const std::string_view text(head.constData(), static_cast<std::size_t>(head.size()));
    return std::any_of(std::begin(signatures), std::end(signatures),
                       [text](std::string_view signature) { return text.substr(0, signature.size()) == signature; });
}

/// Switches the thread's locale to UTF-8. libarchive drops file names that the locale cannot represent.
class Utf8Scope
{
public:
    Utf8Scope()
        : m_locale(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
        , m_former(m_locale ? ::uselocale(m_locale) : nullptr)
    {}
    ~Utf8Scope()
    {
        if (!m_locale)
            return;
        ::uselocale(m_former);
        ::freelocale(m_locale);
    }
    Utf8Scope(const Utf8Scope &) = delete;
    Utf8Scope &operator=(const Utf8Scope &) = delete;

private:
    const locale_t m_locale;
    const locale_t m_former;
};

} // namespace

bool ArchiveReader::isArchive(const QByteArray &head)
{
    return startsWithOne(head, ZIP) || startsWithOne(head, COMPRESSED);
}

void ArchiveReader::Free::operator()(::archive *archive) const
{
    archive_read_free(archive);
}

ArchiveReader::ArchiveReader(FileBytes &source, const Rank &rank)
    : m_source(source)
    , m_isZip(startsWithOne(source.head(), ZIP))
{
    if (!open())
        fail();
    else if (m_isZip)
        findMember(rank);
    else if (!nextEntry())
        m_archive.reset(); // empty data
}

bool ArchiveReader::open()
{
    m_archive.reset(archive_read_new());
    ::archive *archive = m_archive.get();
    if (!archive)
        return false;
    if (m_isZip) {
        // The seekable reader would keep the whole central directory in memory.
        archive_read_support_format_zip_streamable(archive);
    } else {
        archive_read_support_filter_bzip2(archive);
        archive_read_support_filter_zstd(archive);
        archive_read_support_format_raw(archive);
        archive_read_support_format_empty(archive);
    }
    const auto readSource = [](::archive * /*archive*/, void *self, const void **bytes) -> la_ssize_t {
        ArchiveReader &reader = *static_cast<ArchiveReader *>(self);
        *bytes = reader.m_buffer;
        return static_cast<la_ssize_t>(reader.m_source.read(reader.m_buffer, sizeof reader.m_buffer));
    };
    return archive_read_open(archive, this, nullptr, readSource, nullptr) == ARCHIVE_OK;
}

archive_entry *ArchiveReader::nextEntry()
{
    archive_entry *entry = nullptr;
    const int outcome = archive_read_next_header(m_archive.get(), &entry);
    if (outcome != ARCHIVE_EOF && outcome < ARCHIVE_WARN)
        fail();
    return outcome == ARCHIVE_EOF || outcome < ARCHIVE_WARN ? nullptr : entry;
}

void ArchiveReader::findMember(const Rank &rank)
{
    const int best = findRank(rank, m_source.canRewind() ? BEST_RANK : 1);
    if (best > 0 && m_member.isEmpty())
        m_problem.clear(); // damage after the chosen file
    if (!m_problem.isEmpty())
        return;
    if (best == 0) {
        m_problem = QStringLiteral("no file in the zip archive has the extension of a known format");
    } else if (m_member.isEmpty()) {
        m_source.rewind();
        if (open())
            findRank(rank, best);
        else
            fail();
    }
}

int ArchiveReader::findRank(const Rank &rank, int atLeast)
{
    const Utf8Scope utf8;
    int best = 0;
    while (archive_entry *entry = nextEntry()) {
        const QString name = QString::fromUtf8(archive_entry_pathname(entry));
        const bool isFile = archive_entry_filetype(entry) == AE_IFREG;
        best = std::max(best, isFile ? rank(name) : 0);
        if (best < atLeast || best == 0)
            continue;
        m_member = name;
        if (archive_entry_is_data_encrypted(entry))
            m_problem =
                QStringLiteral("%1 in the zip archive is encrypted; take it out of the archive first").arg(name);
        break;
    }
    return best;
}

std::size_t ArchiveReader::read(char *buffer, std::size_t size)
{
    if (!m_archive || !m_problem.isEmpty())
        return 0;
    const la_ssize_t count = archive_read_data(m_archive.get(), buffer, size);
    if (count < 0)
        fail();
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

void ArchiveReader::fail()
{
    const char *reason = m_archive ? archive_error_string(m_archive.get()) : nullptr;
    m_problem = m_source.problem();
    if (m_problem.isEmpty())
        m_problem = QStringLiteral("the %1 is damaged or cut: %2")
                        .arg(m_isZip ? QStringLiteral("zip archive") : QStringLiteral("compressed file"),
                             reason ? QString::fromUtf8(reason) : QStringLiteral("it cannot be read"));
}

} // namespace formats
