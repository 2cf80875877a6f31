// Copyright 2026 the Vela Places authors. SPDX-License-Identifier: Apache-2.0

#include "support/Placesd.h"

#include <QtCore/QByteArray>

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// Peak memory of the client during import and export, for many places relative to few. Files are processed one place at
// a time, so their size must not matter. This process stays small, because Linux counts a child as at least as large as
// its parent.

namespace
{

constexpr int FEW = 1000; // one page of an export
constexpr int MANY = 5000;
constexpr double LIMIT = 1.25;
constexpr int TEXT_SIZE = 2000; // the files of two such texts have 2 and 10 MB

struct FileFormat
{
    const char *extension;
    const char *opening;
    const char *beforeText;
    const char *afterText;
    const char *separator;
    const char *ending;
};

constexpr FileFormat FORMATS[] = {
    {"geojson", R"({"type":"FeatureCollection","features":[)",
     R"({"type":"Feature","geometry":{"type":"Point","coordinates":[7,46]},"properties":{"name":"A","description":")",
     "\"}}", ",", "]}"},
    {"jsonl", "",
     R"({"complete":true,"name":"A","location":{"coordinates":{"latitude":46,"longitude":7}},"description":")", "\"}\n",
     "", ""},
    {"gpx", "<gpx>", R"(<wpt lat="46" lon="7"><name>A</name><desc>)", "</desc></wpt>", "\n", "</gpx>"},
    {"csv", "name,latitude,longitude,description\n", "A,46,7,", "\n", "", ""},
};

/// Ends the benchmark when a step fails.
void require(bool isDone, const char *step)
{
    if (isDone)
        return;
    std::fprintf(stderr, "memory_bench: %s failed\n", step);
    std::exit(EXIT_FAILURE);
}

void writeFile(const QByteArray &path, const FileFormat &format, int count)
{
    std::FILE *file = std::fopen(path.constData(), "we");
    require(file, "writing a file");
    std::fputs(format.opening, file);
    for (int i = 0; i < count; ++i) {
        std::fprintf(file, "%s%s%0*d%s", i > 0 ? format.separator : "", format.beforeText, TEXT_SIZE, i,
                     format.afterText);
    }
    std::fputs(format.ending, file);
    require(std::fclose(file) == 0, "writing a file");
}

/// Peak resident memory of a run of the client, in MiB.
double peakOf(const char *command, const QByteArray &path, const char *option = nullptr)
{
    const char *arguments[] = {(PROGRAMS "/places"), "--no-start", command, path.constData(), option, nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    // posix_spawn() does not change the arguments.
    const int error = ::posix_spawn(&child, arguments[0], &actions, nullptr, const_cast<char **>(arguments), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    struct rusage usage = {};
    require(error == 0 && ::wait4(child, &status, 0, &usage) == child && status == 0, command);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

struct Peaks
{
    double import = 0;
    double export_ = 0;
};

/// Imports a file into a new store, then exports the store.
Peaks peaksOf(const FileFormat &format, int count)
{
    const Placesd service;
    const QByteArray path = service.path("in.").toLocal8Bit() + format.extension;
    writeFile(path, format, count);
    Peaks peaks;
    peaks.import = peakOf("import", path, "--duplicate"); // all have the same name and position
    peaks.export_ = peakOf("export", service.path("out.geojson").toLocal8Bit());
    return peaks;
}

void print(const char *what, const char *format, double many, double few)
{
    std::printf("%-38s %-7s %8.1f MiB %8.1f MiB %7.2f %7.2f%s\n", what, format, many, few, many / few, LIMIT,
                many / few > LIMIT ? "  above" : "");
}

} // namespace

int main()
{
    std::printf("%-46s %12d %12d %7s %7s\n", "most memory, by the number of places", MANY, FEW, "ratio", "limit");
    Peaks many;
    Peaks few;
    for (const FileFormat &format : FORMATS) {
        many = peaksOf(format, MANY);
        few = peaksOf(format, FEW);
        print("import", format.extension, many.import, few.import);
    }
    print("export", "geojson", many.export_, few.export_);
    return 0;
}
