// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/PageScan.h"

#include <QtCore/QTemporaryFile>

#include <cstddef>
#include <cstdint>

using placesd::DatabasePages;
using placesd::PageScan;

/// Reading any database file terminates, and a row has at most as many bytes as its pages can contain.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static QTemporaryFile file;
    const auto length = static_cast<qint64>(size);
    if (!file.open() || !file.resize(0) || file.write(reinterpret_cast<const char *>(bytes), length) != length
        || !file.flush())
        return 0;
    DatabasePages pages(file.fileName().toStdString());
    PageScan scan(pages);
    std::size_t total = 0;
    const auto visit = [&total](const PageScan::Row &row) {
        for (const PageScan::Value &value : row.values)
            total += value.bytes.size();
        return !row.has({PageScan::Type::Null});
    };
    for (const PageScan::Number root : {1U, 2U, 4U})
        scan.read(root, visit);
    // Overflow pages are read at most 16 times. Cells on a page may overlap.
    if (total > 16 * size + 6 * size * pages.usableSize())
        __builtin_trap();
    return 0;
}
