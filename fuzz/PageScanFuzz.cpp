// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "store/PageScan.h"

#include <QtCore/QTemporaryFile>

#include <cstddef>
#include <cstdint>

using placesd::DatabasePages;
using placesd::PageScan;

/// Whatever a database file holds, reading it ends, and a row has no more bytes than its pages could have.
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
    // What overflows is read 16 times at most. On their pages, cells may overlap.
    if (total > 16 * size + 6 * size * pages.usableSize())
        __builtin_trap();
    return 0;
}
